#include "MeanPlace.h"

#include "MeshEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

std::optional<Vector> meanPlaceOf(const MeshEntity& entity)
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

} // namespace Ovra::GeoTool
