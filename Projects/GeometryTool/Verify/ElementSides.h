#pragma once

#include "Buckets.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;

/// \brief The sides of all elements, with those of the same vertices together, a part at a time.
///
/// All sides of a large mesh take 64 bytes for each tetrahedron, a third of what the mesh does. So
/// they are collected in a few parts, by their smallest vertices.
///
/// Elements of no known kind or with a repeated vertex have no sides here. The sides are put
/// together by their smallest vertex and sorted there, with all that tells them apart in one place:
/// whatever else is asked of an element is a cache miss. A sort of all sides took twice the memory
/// and a multiple of the time.
class ElementSides
{
public:
    /// \brief Vertices in ascending order, as positions in the list of all; behind them -1.
    using Key = std::array<int, 4>;

    /// \brief In 16 bytes, as there are several for each element.
    class Side
    {
    public:
        Side() = default;
        Side(const std::array<int, 3>& others, std::size_t element, bool rising)
            : others_(others)
            , elementAndSense_(2 * static_cast<unsigned>(element) + (rising ? 1 : 0))
        {
        }

        /// \brief What stands in the key behind the smallest vertex.
        const std::array<int, 3>& others() const { return others_; }

        /// \brief The position of the element in the list of all.
        std::size_t element() const { return elementAndSense_ / 2; }

        /// \brief Which of the two ways round the side runs, seen out of the element.
        bool isRising() const { return elementAndSense_ % 2 == 1; }

        /// \brief By key, and then by element.
        bool operator<(const Side& other) const
        {
            return others_ != other.others_ ? others_ < other.others_
                                            : elementAndSense_ < other.elementAndSense_;
        }

    private:
        std::array<int, 3> others_;
        unsigned elementAndSense_; // positions are of int
    };

    using Run = std::span<const Side>;

    /// \brief Positions of vertices, the end not included.
    struct Range
    {
        int begin = 0;
        int end = 0;

        bool contains(int vertex) const { return begin <= vertex && vertex < end; }
    };

    /// \param view must outlive this object
    explicit ElementSides(const CaseView& view);

    /// From so many sides on, 16 MiB of them, their memory counts.
    static constexpr std::size_t ManySides = 1U << 20U;

    /// \brief All vertices, in parts that are the smallest vertices of about as many sides each.
    /// \param many more sides than these are collected in parts
    std::vector<Range> parts(std::size_t many = ManySides) const;

    /// \brief From now on the sides are those whose smallest vertex is in \p part.
    void collect(const Range& part);

    const Geo::MeshEntity& elementOf(const Side& side) const { return *elements_[side.element()]; }

    /// \brief What the element of \p side stands on, or null.
    const Geo::ModelEntity* regionOf(const Side& side) const { return regions_[side.element()]; }

    /// \brief The sides with these vertices, by id of their elements.
    /// \param key whose smallest vertex is in the part
    Run find(const Key& key) const;

    /// \brief Calls \p action with the key and the run of sides that have it, for each of which
    /// \p vertex is the smallest, in the order of the keys.
    /// \param vertex in the part
    template <typename Action>
    void forEachRun(int vertex, Action action) const
    {
        const Run sides = sidesAt(vertex);
        for (std::size_t begin = 0; begin < sides.size();) {
            std::size_t end = begin + 1;
            while (end < sides.size() && sides[end].others() == sides[begin].others()) {
                ++end;
            }
            const auto& [a, b, c] = sides[begin].others();
            action(Key{vertex, a, b, c}, sides.subspan(begin, end - begin));
            begin = end;
        }
    }

    /// \brief Collects one part after the other, and calls \p action with every key and its run.
    template <typename Action>
    void forEachRunOfAllParts(Action action)
    {
        for (const Range& part : parts()) {
            collect(part);
            for (int vertex = part.begin; vertex < part.end; ++vertex) {
                forEachRun(vertex, action);
            }
        }
    }

    /// \brief The vertices of an edge or face of up to four vertices as a key.
    static Key keyOf(std::span<const int> vertices);

private:
    Run sidesAt(int vertex) const { return sides_[static_cast<std::size_t>(vertex - part_.begin)]; }

    template <typename Action>
    void forEachSide(Action action) const;

    const CaseView& view_;
    Range part_;
    Buckets<Side> sides_; ///< by the smallest vertex, from the first of the part on
    const std::vector<Geo::MeshEntity*>& elements_;
    std::vector<const Geo::ModelEntity*> regions_; ///< of the elements
};

} // namespace Ovra::GeoTool
