#include "VertexLinks.h"

#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

const std::array<AttributeType, 5>& vertexLinkTypes()
{
    static const std::array<AttributeType, 5> types = {
        AttributeType::ShellVertex, AttributeType::RotorVertex, AttributeType::StatorVertex,
        AttributeType::OriginalMotionVertex, AttributeType::NewMotionVertex};
    return types;
}

void forEachVertexLink(const Mesh& mesh,
                       const std::function<void(MeshEntity&, const AttributeType&, int)>& visit)
{
    for (MeshEntity* vertex : inIdOrder(mesh.iterator(0))) {
        if (vertex->attributes().isEmpty()) {
            continue;
        }
        for (const AttributeType& type : vertexLinkTypes()) {
            const int id = vertex->attributes().value(type, 0).toInt();
            if (id != 0) {
                visit(*vertex, type, id);
            }
        }
    }
}

} // namespace Ovra::GeoTool
