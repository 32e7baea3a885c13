#include "MeshVertex.h"
#include "ModelEntity.h"
#include "ModelVertex.h"
#include "Utility.h"

#include <QListIterator>
#include <QVarLengthArray>

#include <numeric>

namespace Ovra::Geo
{

namespace
{

// Four entries serve triangles and quadrilaterals without heap allocation.
using Scalars = QVarLengthArray<double, 4>;
using Vectors = QVarLengthArray<Vector, 4>;

using EntitiesAround = QVarLengthArray<MeshEntity*, 16>;

constexpr double Unreachable = 1e10;

qsizetype following(qsizetype i, qsizetype count)
{
    return (i + 1) % count;
}

qsizetype preceding(qsizetype i, qsizetype count)
{
    return (count - 1 + i) % count;
}

Vectors vectorsToVertices(const Vector& point, const MeshEntity* entity)
{
    Vectors result;
    QListIterator<MeshEntity*> vertices = entity->adjacencyIterator(0);
    while (vertices.hasNext()) {
        result.append(static_cast<MeshVertex*>(vertices.next())->point() - point);
    }
    return result;
}

Vectors crossProductsOfNeighbours(const Vectors& s)
{
    Vectors result;
    for (qsizetype i = 0; i < s.size(); ++i) {
        result.append(s[i] ^ s[following(i, s.size())]);
    }
    return result;
}

// A segment weighs its ends linearly, or one end alone if the point is close to it.
void setSegmentWeights(double toFirst, double toSecond, double tolerance, double* first,
                       double* second)
{
    const double sum = toFirst + toSecond;
    const double snap = tolerance * sum;
    if (snap > toFirst) {
        *first = 1.0;
    } else if (snap > toSecond) {
        *second = 1.0;
    } else {
        *first = toSecond / sum;
        *second = toFirst / sum;
    }
}

void normalize(Scalars* weights)
{
    const double sum = std::accumulate(weights->cbegin(), weights->cend(), 0.0);
    for (double& weight : *weights) {
        weight /= sum;
    }
}

// Whether there was any to drop.
bool dropBelow(double tolerance, Scalars* weights)
{
    bool dropped = false;
    for (double& weight : *weights) {
        if (tolerance > weight) {
            weight = 0.0;
            dropped = true;
        }
    }
    return dropped;
}

// A polygon as seen from a point, for M. S. Floater's mean value coordinates (Computer Aided
// Geometric Design 20, 2003) in the form of K. Hormann.
class PolygonView
{
public:
    explicit PolygonView(const Vectors& toVertices)
        : s_(toVertices)
        , c_(crossProductsOfNeighbours(toVertices))
        , normal_((s_[1] - s_[0]) ^ (s_[2] - s_[1]))
    {
        for (const Vector& s : s_) {
            r_.append(s.length());
        }
    }

    Scalars weights(double tolerance) const;

private:
    qsizetype count() const { return s_.size(); }
    qsizetype next(qsizetype i) const { return following(i, count()); }
    double signedArea(qsizetype edge) const;
    double scalarProduct(qsizetype edge) const { return s_[edge] * s_[next(edge)]; }
    bool liesOnEdge(qsizetype edge, double tolerance) const;
    double halfAngleTangent(qsizetype edge) const;
    Scalars edgeWeights(qsizetype edge, double tolerance) const;
    Scalars meanValueWeights(const Scalars& tangents, double tolerance) const;

    Vectors s_;
    Vectors c_;
    Vector normal_;
    Scalars r_;
};

// Twice the area of the triangle from the point to the edge, negative beyond the edge.
double PolygonView::signedArea(qsizetype edge) const
{
    const double area = c_[edge].length();
    return 0.0 > c_[edge] * normal_ ? -area : area;
}

// An obtuse angle puts the foot of the point within the edge. Every point beyond the edge passes
// the test of the height, which clips it to the polygon's boundary.
bool PolygonView::liesOnEdge(qsizetype edge, double tolerance) const
{
    const Vector e = s_[next(edge)] - s_[edge];
    const double height = (tolerance * e) * e;
    return height > signedArea(edge) && 0.0 > scalarProduct(edge);
}

double PolygonView::halfAngleTangent(qsizetype edge) const
{
    return (r_[edge] * r_[next(edge)] - scalarProduct(edge)) / signedArea(edge);
}

Scalars PolygonView::edgeWeights(qsizetype edge, double tolerance) const
{
    Scalars result(count(), 0.0);
    setSegmentWeights(r_[edge], r_[next(edge)], tolerance, &result[edge], &result[next(edge)]);
    return result;
}

Scalars PolygonView::meanValueWeights(const Scalars& tangents, double tolerance) const
{
    Scalars result;
    for (qsizetype i = 0; i < count(); ++i) {
        result.append((tangents[preceding(i, count())] + tangents[i]) / r_[i]);
    }
    normalize(&result);
    if (dropBelow(tolerance, &result)) {
        normalize(&result);
    }
    return result;
}

Scalars PolygonView::weights(double tolerance) const
{
    Scalars tangents;
    for (qsizetype i = 0; i < count(); ++i) {
        if (liesOnEdge(i, tolerance)) {
            return edgeWeights(i, tolerance);
        }
        tangents.append(halfAngleTangent(i));
    }
    return meanValueWeights(tangents, tolerance);
}

// The mesh entities around a vertex that lie on a model face, in the order of the vertex's list.
EntitiesAround meshFacesAround(const MeshVertex* vertex, const ModelEntity* face)
{
    EntitiesAround result;
    QListIterator<MeshEntity*> around = vertex->adjacencyIterator(face->dimension());
    while (around.hasNext()) {
        MeshEntity* entity = around.next();
        const ModelEntity* parent = entity->parent();
        if (parent && parent->id() == face->id()) {
            result.append(entity);
        }
    }
    return result;
}

// The two neighbours of a vertex in an entity's vertex list, the next one first; empty if the
// entity does not list the vertex.
QVarLengthArray<MeshVertex*, 2> neighboursWithin(const MeshEntity* entity, const MeshVertex* vertex)
{
    QVarLengthArray<MeshVertex*, 4> vertices;
    qsizetype position = -1;
    QListIterator<MeshEntity*> listed = entity->adjacencyIterator(0);
    while (listed.hasNext()) {
        vertices.append(static_cast<MeshVertex*>(listed.next()));
        if (position < 0 && vertices.last()->id() == vertex->id()) {
            position = vertices.size() - 1;
        }
    }
    if (position < 0) {
        return {};
    }
    return {vertices[following(position, vertices.size())],
            vertices[preceding(position, vertices.size())]};
}

} // namespace

QVarLengthArray<double, 4> Utility::computeWeights(const Vector& point, MeshEntity* entity,
                                                   double tolerance)
{
    const Vectors s = vectorsToVertices(point, entity);
    if (s.size() != 2) {
        return PolygonView(s).weights(tolerance);
    }
    Scalars result(2, 0.0);
    setSegmentWeights(s[0].length(), s[1].length(), tolerance, &result[0], &result[1]);
    return result;
}

bool Utility::containsPoint(const Vector& point, MeshEntity* entity)
{
    const Vectors s = vectorsToVertices(point, entity);
    if (s.size() == 2) {
        return 0.0 > s[0] * s[1];
    }
    const Vectors c = crossProductsOfNeighbours(s);
    for (qsizetype i = 0; i < c.size(); ++i) {
        if (0.0 > c[i] * c[following(i, c.size())]) {
            return false;
        }
    }
    return true;
}

double Utility::distanceTo(const Vector& point, MeshVertex* first, MeshVertex* second)
{
    const Vector e = second->point() - first->point();
    const Vector u = point - first->point();
    const Vector v = point - second->point();
    if (e * v > 0.0) {
        return v.length();
    }
    if (0.0 > e * u) {
        return u.length();
    }
    return (u ^ e).length() / e.length();
}

MeshEntity* Utility::findEnclosingMeshFace(const Vector& point, MeshVertex* vertex,
                                           ModelEntity* face)
{
    for (MeshEntity* entity : meshFacesAround(vertex, face)) {
        if (containsPoint(point, entity)) {
            return entity;
        }
    }
    return nullptr;
}

MeshEntity* Utility::findClosestMeshFace(const Vector& point, MeshVertex* vertex, ModelEntity* face)
{
    double best = Unreachable;
    MeshEntity* result = nullptr;
    for (MeshEntity* entity : meshFacesAround(vertex, face)) {
        for (MeshVertex* neighbour : neighboursWithin(entity, vertex)) {
            const double distance = distanceTo(point, vertex, neighbour);
            if (best > distance) {
                best = distance;
                result = entity;
            }
        }
    }
    return result;
}

ModelVertex* Utility::findModelVertexOnFace(const Vector& point, ModelEntity* face)
{
    QListIterator<ModelEntity*> vertices = face->adjacencyIterator(0);
    while (vertices.hasNext()) {
        auto* vertex = static_cast<ModelVertex*>(vertices.next());
        if (vertex->point() == point) {
            return vertex;
        }
    }
    return nullptr;
}

} // namespace Ovra::Geo
