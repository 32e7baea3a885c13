#include "MeshVertex.h"

namespace Ovra::Geo
{

MeshVertex::~MeshVertex()
{
    detachFromParent();
}

int MeshVertex::dimension() const
{
    return 0;
}

Box MeshVertex::boundingBox() const
{
    return Box(point_, point_);
}

Vector MeshVertex::centroid() const
{
    return point_;
}

Vector MeshVertex::normal() const
{
    return Vector();
}

double MeshVertex::boundaryArea() const
{
    return 0.0;
}

void MeshVertex::clearUpwardAdjacencies()
{
    for (int dimension = 1; dimension <= 3; ++dimension) {
        clearAdjacencies(dimension);
    }
}

} // namespace Ovra::Geo
