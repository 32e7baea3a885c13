#include "MeshRegion.h"

namespace Ovra::Geo
{

MeshRegion::~MeshRegion()
{
    detachFromParent();
}

int MeshRegion::dimension() const
{
    return 3;
}

Box MeshRegion::boundingBox() const
{
    return vertexBox(adjacencyCount(0));
}

Vector MeshRegion::centroid() const
{
    Vector sum;
    const int count = adjacencyCount(0);
    for (int i = 0; i < count; ++i) {
        sum += vertexPoint(i);
    }
    return sum / static_cast<double>(count);
}

Vector MeshRegion::normal() const
{
    return Vector();
}

double MeshRegion::boundaryArea() const
{
    double area = 0.0;
    const int count = adjacencyCount(2);
    for (int i = 0; i < count; ++i) {
        area += adjacencyAt(2, i)->boundaryArea();
    }
    return area;
}

void MeshRegion::removeFromAdjacencies()
{
    removeFromVertices();
    removeFromSides(2);
}

} // namespace Ovra::Geo
