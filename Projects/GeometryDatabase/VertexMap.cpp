#include "VertexMap.h"

#include "MeshVertex.h"

namespace Ovra::Geo
{

MeshVertex* VertexMap::copyOf(MeshVertex* vertex) const
{
    return originals_.value(vertex->id()) == vertex ? copies_.value(vertex->id())
                                                    : others_.value(vertex, nullptr);
}

void VertexMap::insert(MeshVertex* vertex, MeshVertex* copy)
{
    if (originals_.contains(vertex->id())) {
        others_.insert(vertex, copy);
        return;
    }
    originals_.insert(vertex->id(), vertex);
    copies_.insert(vertex->id(), copy);
}

QList<VertexMap::Pair> VertexMap::pairs() const
{
    QList<Pair> pairs;
    pairs.reserve(size());
    for (IdTableWalk<MeshVertex> walk(originals_); walk.hasNext();) {
        const auto original = walk.next();
        pairs.emplaceBack(original.value(), copies_.value(original.key()));
    }
    for (auto other = others_.cbegin(); other != others_.cend(); ++other) {
        pairs.emplaceBack(other.key(), other.value());
    }
    return pairs;
}

} // namespace Ovra::Geo
