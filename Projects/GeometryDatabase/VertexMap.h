#pragma once

#include "GeometryDatabaseExport.h"
#include "IdTable.h"

#include <QHash>
#include <QList>

#include <utility>

/// \file
/// \brief Which vertex stands for which while a part of a mesh is doubled. Not for hosts.

namespace Ovra::Geo
{

class MeshVertex;

/// \brief From each vertex of a mesh to its copy.
///
/// Vertices are asked for in the order of the elements that use them, four or more times each. By
/// their ids, which follow that order as well as any, the answers lie close together; in a hash of
/// pointers each is a cache miss, which took a fifth of the time of replicating a region of 150,000
/// tetrahedra.
class OVRA_GEO_EXPORT VertexMap
{
public:
    using Pair = std::pair<MeshVertex*, MeshVertex*>; ///< a vertex and its copy

    /// \brief The copy of \p vertex, or null.
    MeshVertex* copyOf(MeshVertex* vertex) const;

    /// \brief Enters \p copy for \p vertex, which has none yet; both not null.
    void insert(MeshVertex* vertex, MeshVertex* copy);

    /// \brief Number of vertices that have a copy.
    qsizetype size() const { return originals_.size() + others_.size(); }

    /// \brief Forgets all vertices.
    void clear() { *this = {}; }

    /// \brief Each vertex with its copy.
    QList<Pair> pairs() const;

private:
    IdTable<MeshVertex> originals_;
    IdTable<MeshVertex> copies_;             // by the ids of the originals
    QHash<MeshVertex*, MeshVertex*> others_; // of an id that another vertex was entered under
};

} // namespace Ovra::Geo
