#include "FindingSink.h"

#include "MeanPlace.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

void FindingSink::add(FindingKind kind, const ModelEntity& entity, const Text& text)
{
    add(kind, EntityName(entity), entity.centroid(), text);
}

void FindingSink::add(FindingKind kind, const MeshEntity& entity, const Text& text)
{
    add(kind, EntityName(entity), meanPlaceOf(entity), text);
}

} // namespace Ovra::GeoTool
