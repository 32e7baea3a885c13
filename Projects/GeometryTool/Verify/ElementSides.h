#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief The sides of all elements, with those of the same vertices together.
///
/// Elements of no known kind or with a repeated vertex have no sides here.
class ElementSides
{
public:
    /// \brief Vertex ids in ascending order; behind them 0.
    using Key = std::array<int, 4>;

    struct Side
    {
        Key key;
        const Geo::MeshEntity* element;
        bool rising; ///< which of the two ways round the side runs, seen out of the element
    };

    using Run = std::span<const Side>;

    explicit ElementSides(const CaseView& view);

    /// \brief The sides with these vertices, by id of their elements.
    Run find(const Key& key) const;

    /// \brief Calls \p action with each run of sides that have the same vertices.
    template <typename Action>
    void forEachRun(Action action) const
    {
        for (std::size_t begin = 0; begin < sides_.size();) {
            std::size_t end = begin + 1;
            while (end < sides_.size() && sides_[end].key == sides_[begin].key) {
                ++end;
            }
            action(Run(sides_).subspan(begin, end - begin));
            begin = end;
        }
    }

    /// \brief The vertices of an edge or face of up to four vertices as a key.
    static Key keyOf(const Geo::MeshEntity& face);

private:
    void addSides(const Geo::MeshEntity& element);

    std::vector<Side> sides_;
};

} // namespace Ovra::GeoTool
