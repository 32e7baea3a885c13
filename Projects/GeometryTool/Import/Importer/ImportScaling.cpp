#include "ImportScaling.h"

#include "ImportedMesh.h"

#include <cmath>

namespace Ovra::GeoTool
{

namespace
{

bool isFinite(const Geo::Vector& vector)
{
    return std::isfinite(vector.x()) && std::isfinite(vector.y()) && std::isfinite(vector.z());
}

Geo::Box scaled(const Geo::Box& box, double factor)
{
    const bool isEmpty = box.isValid(); // true for exactly the inverted box
    return isEmpty ? box : Geo::Box(factor * box.minimum(), factor * box.maximum());
}

bool scale(ImportedGeometry& geometry, int dimension, double factor)
{
    geometry.box = scaled(geometry.box, factor);
    geometry.centroid *= factor;
    geometry.measure *= std::pow(factor, dimension);
    return isFinite(geometry.centroid) && std::isfinite(geometry.measure);
}

} // namespace

bool ImportScaling::apply(ImportedMesh& mesh, double factor)
{
    bool isAllFinite = true;
    for (ImportedNode& node : mesh.nodes) {
        node.point *= factor;
        isAllFinite = isAllFinite && isFinite(node.point);
    }
    for (int dimension = 0; dimension <= 3; ++dimension) {
        for (ImportedEntity& entity : mesh.entitiesOf(dimension)) {
            isAllFinite = scale(entity.geometry, dimension, factor) && isAllFinite;
        }
    }
    return isAllFinite;
}

} // namespace Ovra::GeoTool
