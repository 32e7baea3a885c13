#pragma once

#include "NeighbourSets.h"

#include <QHash>
#include <QList>

#include <limits>

namespace Ovra::Geo
{

class MeshEntity;

/// \brief What the elements of one dimension of a mesh share while Mesh has them set their upward
///        lists, one after the other, when the lists of the vertices are complete. Not for hosts.
///
/// Elements on the same vertices have the same neighbours. Where those are many, which no sound
/// mesh has, one list is made and shared: a list for each would take time and memory by the product
/// of the numbers of elements and neighbours, of which a short stream can name many. Where elements
/// are not on the same vertices and yet each has very many neighbours, limits hold the lists off.
///
/// MeshEntity finds the object of the thread by current(), so that an element's own
/// setUpwardAdjacencies() needs no argument.
class UpwardLists
{
public:
    /// \brief What the elements that have no vertex with few neighbours may take together, those on
    ///        the same vertices counted once.
    struct Limits
    {
        /// Vertices times neighbours that are looked at.
        qint64 steps = std::numeric_limits<qint64>::max();

        /// Entries of the lists.
        qint64 entries = std::numeric_limits<qint64>::max();
    };

    /// \brief From now on the object of this thread.
    /// \param dimension of the neighbours
    /// \param limits no limits unless told otherwise
    UpwardLists(int dimension, const Limits& limits);

    ~UpwardLists();

    UpwardLists(const UpwardLists&) = delete;
    UpwardLists& operator=(const UpwardLists&) = delete;

    /// \brief The object of this thread that was made last and still exists, if it is for
    ///        neighbours of \p dimension, or null.
    static UpwardLists* current(int dimension);

    /// \brief Appends to the upward list of \p element what uses all its vertices.
    void appendTo(MeshEntity* element);

    /// \brief Whether no element went without its neighbours for the limits.
    bool isComplete() const { return isComplete_; }

private:
    struct List
    {
        NeighbourList before;
        NeighbourList after;
    };

    void appendMany(MeshEntity* element, qint64 neighbours);

    UpwardLists* const outer_;
    const int dimension_;
    Limits left_;
    bool isComplete_ = true;
    NeighbourSets sets_;
    QHash<QList<MeshEntity*>, List> lists_; // by vertices, sorted and each once
};

} // namespace Ovra::Geo
