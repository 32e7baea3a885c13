#include "WedgeAttributes.h"

#include "MeshEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

WedgeAttributes::WedgeAttributes(const QList<MeshEntity*>& wedges)
{
    for (MeshEntity* element : wedges) {
        if (element->attributes().isEmpty()) {
            continue;
        }
        Wedge wedge;
        wedge.attributes = element->attributes();
        for (auto vertices = element->adjacencyIterator(0); vertices.hasNext();) {
            MeshEntity* const vertex = vertices.next();
            wedge.vertices.insert(vertex);
            wedgesAt_[vertex].append(wedges_.size());
        }
        wedges_.append(wedge);
    }
}

void WedgeAttributes::handOver(const QList<MeshEntity*>& tetrahedra) const
{
    if (wedges_.isEmpty()) {
        return;
    }
    for (MeshEntity* tetrahedron : tetrahedra) {
        if (const Wedge* const wedge = wedgeOf(*tetrahedron)) {
            tetrahedron->attributes() = wedge->attributes;
        }
    }
}

const WedgeAttributes::Wedge* WedgeAttributes::wedgeOf(const MeshEntity& tetrahedron) const
{
    for (const qsizetype candidate : wedgesAt_.value(tetrahedron.adjacencyAt(0, 0))) {
        const Wedge& wedge = wedges_.at(candidate);
        bool holdsAll = true;
        for (int i = 1; i < 4; ++i) {
            holdsAll = holdsAll && wedge.vertices.contains(tetrahedron.adjacencyAt(0, i));
        }
        if (holdsAll) {
            return &wedge;
        }
    }
    return nullptr;
}

} // namespace Ovra::GeoTool
