#include "FindingSink.h"

#include "MeshEntity.h"
#include "ModelEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// MeshEntity::centroid() wants the vertex number of a known kind; a broken element may have any.
std::optional<Vector> middleOf(const MeshEntity& entity)
{
    if (entity.dimension() == 0) {
        return entity.centroid();
    }
    if (entity.adjacencyCount(0) == 0) {
        return std::nullopt;
    }
    Vector sum;
    for (int i = 0; i < entity.adjacencyCount(0); ++i) {
        sum += entity.adjacencyAt(0, i)->centroid();
    }
    return sum / static_cast<double>(entity.adjacencyCount(0));
}

} // namespace

void FindingSink::add(FindingKind kind, const ModelEntity& entity, const Text& text)
{
    add(kind, EntityName(entity), entity.centroid(), text);
}

void FindingSink::add(FindingKind kind, const MeshEntity& entity, const Text& text)
{
    add(kind, EntityName(entity), middleOf(entity), text);
}

} // namespace Ovra::GeoTool
