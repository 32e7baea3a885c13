#include "MeshEdge.h"

namespace Ovra::Geo
{

MeshEdge::~MeshEdge()
{
    detachFromParent();
}

int MeshEdge::dimension() const
{
    return 1;
}

Box MeshEdge::boundingBox() const
{
    return vertexBox(2);
}

Vector MeshEdge::centroid() const
{
    return (vertexPoint(0) + vertexPoint(1)) * 0.5;
}

Vector MeshEdge::normal() const
{
    const Vector direction = vertexPoint(1) - vertexPoint(0);
    Vector normal(direction.y(), -direction.x(), 0.0);
    normal.normalize();
    return normal;
}

double MeshEdge::boundaryArea() const
{
    return (vertexPoint(1) - vertexPoint(0)).length();
}

void MeshEdge::setUpwardAdjacencies()
{
    addUpwardAdjacencies(2);
}

void MeshEdge::clearUpwardAdjacencies()
{
    clearAdjacencies(2);
}

void MeshEdge::removeFromAdjacencies()
{
    removeFromVertices();
}

} // namespace Ovra::Geo
