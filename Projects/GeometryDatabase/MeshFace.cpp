#include "MeshFace.h"

namespace Ovra::Geo
{

MeshFace::~MeshFace()
{
    detachFromParent();
}

int MeshFace::dimension() const
{
    return 2;
}

Box MeshFace::boundingBox() const
{
    return vertexBox(adjacencyCount(0));
}

Vector MeshFace::centroid() const
{
    Vector sum;
    for (int i = 0; i < 3; ++i) {
        sum += vertexPoint(i);
    }
    const int count = adjacencyCount(0);
    if (count == 4) {
        sum += vertexPoint(3);
    }
    return sum / static_cast<double>(count);
}

Vector MeshFace::normal() const
{
    const Vector origin = vertexPoint(0);
    Vector normal = (vertexPoint(1) - origin) ^ (vertexPoint(2) - origin);
    normal.normalize();
    return normal;
}

double MeshFace::boundaryArea() const
{
    const int count = adjacencyCount(0);
    const Vector origin = vertexPoint(0);
    QVarLengthArray<Vector, 3> spokes;
    for (int i = 1; i < count; ++i) {
        spokes.append(vertexPoint(i) - origin);
    }
    double area = 0.0;
    for (qsizetype i = 1; i < spokes.size(); ++i) {
        area += 0.5 * (spokes[i - 1] ^ spokes[i]).length();
    }
    return area;
}

void MeshFace::setUpwardAdjacencies()
{
    addUpwardAdjacencies(3);
}

void MeshFace::clearUpwardAdjacencies()
{
    clearAdjacencies(3);
}

void MeshFace::removeFromAdjacencies()
{
    removeFromVertices();
    removeFromSides(1);
}

} // namespace Ovra::Geo
