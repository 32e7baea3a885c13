#pragma once

#include "SidesByVertex.h"

#include <cstddef>
#include <cstdint>
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
class VertexLists;

/// \brief The sides of all elements, with those of the same vertices together, a part at a time.
///
/// All sides of a large mesh take 64 bytes for each tetrahedron, a third of what the mesh does. So
/// they are collected in some parts, by their smallest vertices, two of these at a time.
///
/// Elements of no known kind or with a repeated vertex have no sides here.
class ElementSides
{
public:
    /// \brief Vertices in ascending order, as positions in the list of all; behind them -1.
    using Key = SidesByVertex::Key;

    /// \brief Rising or not is which of the two ways round the side runs, seen out of the element.
    using Side = SidesByVertex::Side;
    using Run = SidesByVertex::Run;

    /// \brief Positions of vertices, the end not included.
    struct Part
    {
        int begin = 0;
        int end = 0;
        std::uint16_t mark = 1; ///< a bit that no other part has

        bool contains(int vertex) const { return begin <= vertex && vertex < end; }
    };

    /// From so many sides on, 16 MiB of them, their memory counts.
    static constexpr std::size_t ManySides = 1U << 20U;

    /// \param view must outlive this object
    /// \param many more sides than these are collected in parts
    explicit ElementSides(const CaseView& view, std::size_t many = ManySides);

    /// \brief All vertices, in parts that are the smallest vertices of about as many sides each.
    const std::vector<Part>& parts() const { return parts_; }

    /// \brief The position in parts() of the one that sides of these vertices are in.
    std::size_t partOf(const Key& key) const;

    /// \brief From now on the sides are those whose smallest vertex is in \p part.
    ///
    /// The next part is collected beside it, on another core: to go through all in their order is
    /// quickest.
    /// \param part one of parts()
    void collect(const Part& part);

    const Geo::MeshEntity& elementOf(const Side& side) const { return *elements_[side.element()]; }

    /// \brief What the element of \p side stands on, or null.
    const Geo::ModelEntity* regionOf(const Side& side) const
    {
        return regions_[static_cast<std::size_t>(regionOfElement_[side.element()])];
    }

    /// \brief The sides with these vertices, by id of their elements.
    /// \param key whose smallest vertex is in the part
    Run find(const Key& key) const { return current().find(key); }

    /// \brief Calls \p action with the key and the run of sides that have it, for each of which
    /// \p vertex is the smallest, in the order of the keys.
    /// \param vertex in the part
    template <typename Action>
    void forEachRun(int vertex, Action action) const
    {
        current().forEachRun(vertex, action);
    }

    /// \brief Collects one part after the other, and calls \p action with every key and its run.
    template <typename Action>
    void forEachRunOfAllParts(Action action)
    {
        for (const Part& part : parts_) {
            collect(part);
            current().forEachRun(action);
        }
    }

    /// \brief The vertices of an edge or face of up to four vertices as a key.
    static Key keyOf(std::span<const int> vertices);

private:
    void findRegions();
    void countSides();
    void makeParts(std::size_t many);
    void markElements();
    SidesByVertex collected(const Part& part) const;
    const SidesByVertex& current() const { return sides_[part_ - firstPart_]; }

    template <typename Action>
    void forEachSideOf(std::size_t element, Action action) const;

    int dimension_;
    const VertexLists& lists_;
    std::vector<SidesByVertex> sides_; ///< of the parts from firstPart_ on
    std::size_t firstPart_ = 0;
    std::size_t part_ = 0; ///< the one that was asked for last
    const std::vector<Geo::MeshEntity*>& elements_;
    std::vector<const Geo::ModelEntity*> regions_; ///< as elements in a row stand on them
    std::vector<int> regionOfElement_;             ///< positions in regions_
    std::vector<int> counts_;                      ///< of sides, by their smallest vertices
    std::vector<Part> parts_;
    std::vector<std::uint16_t>
        marks_; ///< of the parts where an element has sides; or none for one part
};

} // namespace Ovra::GeoTool
