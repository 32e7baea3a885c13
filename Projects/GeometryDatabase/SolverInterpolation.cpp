#include "Database.h"
#include "IdOrder.h"
#include "InterpolationData.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "NearTree.h"
#include "PeriodicTransform.h"
#include "PointTree.h"
#include "Solver.h"
#include "Utility.h"

#include <QDebug>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Ovra::Geo
{

namespace
{

using PeriodicPairs = QMap<int, std::pair<ModelEntity*, ModelEntity*>>;

constexpr double Pi = 3.14159265358979323846;
// The cosine of 3 degrees: normals closer than that count as parallel or opposed.
constexpr double ParallelCosine = 0.99863;
constexpr double PeriodicTolerance = 1e-6;

int intAttribute(const ModelEntity* face, const AttributeType& type)
{
    return face->attributes().value(type, 0).toInt();
}

PeriodicPairs periodicPairs(const Model* model)
{
    PeriodicPairs pairs;
    OrderedHashIterator<int, ModelEntity*> faces = model->orderedIterator(model->faceDimension());
    while (faces.hasNext()) {
        ModelEntity* face = faces.next();
        const int pairId = intAttribute(face, AttributeType::PeriodicPairId);
        if (pairId == 0) {
            continue;
        }
        if (intAttribute(face, AttributeType::PeriodicSideId) == 1) {
            pairs[pairId].first = face;
        } else {
            pairs[pairId].second = face;
        }
    }
    return pairs;
}

void storePeriodicTransform(const PeriodicTransform& transform, AttributeMap* attributes)
{
    attributes->insert(AttributeType::PeriodicOrigin, transform.origin);
    attributes->insert(AttributeType::PeriodicXAxis, transform.xAxis);
    attributes->insert(AttributeType::PeriodicYAxis, transform.yAxis);
    attributes->insert(AttributeType::PeriodicZAxis, transform.zAxis);
    attributes->insert(AttributeType::PeriodicMatrix, transform.matrix);
    attributes->insert(AttributeType::PeriodicTranslation, transform.translation);
}

PeriodicTransform translationBy(const Vector& translation)
{
    PeriodicTransform result;
    result.translation = translation;
    result.xAxis = Vector(1.0, 0.0, 0.0);
    result.yAxis = Vector(0.0, 1.0, 0.0);
    result.zAxis = Vector(0.0, 0.0, 1.0);
    result.matrix.setIdentity();
    return result;
}

Vector normalized(Vector vector)
{
    vector.normalize();
    return vector;
}

// Two faces in one plane, a half turn apart about the middle between them.
PeriodicTransform halfTurnFrame(const Vector& cA, const Vector& cB, const Vector& nA)
{
    PeriodicTransform result;
    result.origin = 0.5 * (cA + cB);
    result.xAxis = normalized(cA - result.origin);
    result.yAxis = normalized(-nA);
    result.zAxis = result.xAxis ^ result.yAxis;
    return result;
}

// Two faces whose planes meet in a line, the axis.
PeriodicTransform sectorFrame(const Vector& cA, const Vector& cB, const Vector& nA,
                              const Vector& nB)
{
    const double g = nA * nB;
    const double hA = nA * cA;
    const double hB = nB * cB;
    const double divisor = 1.0 - g * g;
    PeriodicTransform result;
    result.origin = ((hA - g * hB) / divisor) * nA + ((hB - g * hA) / divisor) * nB;
    result.xAxis = normalized(cA - result.origin);
    result.yAxis = normalized(cB - result.origin);
    result.zAxis = nA ^ nB;
    return result;
}

void orthonormalizeFrame(PeriodicTransform* transform)
{
    transform->zAxis.normalize();
    Vector::orthonormalize(transform->xAxis, transform->yAxis, transform->zAxis);
    if (0.0 > (transform->xAxis ^ transform->yAxis) * transform->zAxis) {
        transform->zAxis = -transform->zAxis;
    }
}

Matrix rotationAboutZ(double angle)
{
    Matrix result;
    result.setIdentity();
    result(0, 0) = std::cos(angle);
    result(0, 1) = -std::sin(angle);
    result(1, 0) = std::sin(angle);
    result(1, 1) = std::cos(angle);
    return result;
}

// A fixed permutation of the ids that leaves no trace of their order. Ids follow lines of the
// mesh, and a tree filled in that order is as deep as the lines are long.
quint32 scattered(int id)
{
    auto x = static_cast<quint32>(id);
    x ^= x >> 16;
    x *= 0x7feb352dU;
    x ^= x >> 15;
    x *= 0x846ca68bU;
    x ^= x >> 16;
    return x;
}

QList<MeshVertex*> inScatteredOrder(const QSet<MeshEntity*>& vertices)
{
    QList<std::pair<quint32, MeshVertex*>> keys;
    keys.reserve(vertices.size());
    for (MeshEntity* vertex : vertices) {
        keys.emplaceBack(scattered(vertex->id()), static_cast<MeshVertex*>(vertex));
    }
    std::sort(keys.begin(), keys.end());

    QList<MeshVertex*> result;
    result.reserve(keys.size());
    for (const auto& [key, vertex] : std::as_const(keys)) {
        result.append(vertex);
    }
    return result;
}

// A face whose vertices are tied, and tied to.
struct TiedFace
{
    explicit TiedFace(ModelEntity* of)
        : face(of)
        , vertices(Utility::getMeshVerticesOnModelEntity(of))
        , inOrder(inIdOrder(vertices))
    {
    }

    ModelEntity* face;
    QSet<MeshEntity*> vertices;
    // Neighbours in the mesh have ids close to each other: in their order, one search goes through
    // the same part of memory as the one before.
    QList<MeshEntity*> inOrder;
};

// Finds the vertices of one face by place. NearTree's choice among equally near ones is promised, so that
// it decides where there are such; it is made when the first are met, which on most faces never happens.
class VertexFinder
{
public:
    using MakeTree = std::function<NearTree*()>;

    VertexFinder(const TiedFace& face, const Mesh* mesh, MakeTree makeTree)
        : vertices_(face.inOrder)
        , places_(pointsOf(vertices_))
        , mesh_(mesh)
        , makeTree_(std::move(makeTree))
    {
    }

    MeshVertex* nearest(const Vector& point)
    {
        const int found = places_.nearest(point);
        return static_cast<MeshVertex*>(found == PointTree::Undecided ? nearestByTree(point)
                                                                      : vertices_.at(found));
    }

private:
    static std::vector<Vector> pointsOf(const QList<MeshEntity*>& vertices)
    {
        std::vector<Vector> points;
        points.reserve(static_cast<std::size_t>(vertices.size()));
        for (const MeshEntity* vertex : vertices) {
            points.push_back(vertex->centroid());
        }
        return points;
    }

    MeshEntity* nearestByTree(const Vector& point)
    {
        if (!tree_) {
            tree_.reset(makeTree_());
        }
        query_.set(0, point, 0.0);
        return mesh_->entity(0, tree_->nearest(&query_));
    }

    QList<MeshEntity*> vertices_;
    PointTree places_;
    const Mesh* mesh_;
    MakeTree makeTree_;
    std::unique_ptr<NearTree> tree_;
    NearTree query_;
};

// Calls \p tie for each vertex of a face with its place on the partner face and the partner's vertex nearest
// to that. Leaves out what another pair or an earlier run has tied.
template <typename Place, typename Tie>
void tieEach(const TiedFace& face, const AttributeType& link, VertexFinder partner, Place place,
             Tie tie)
{
    for (MeshEntity* entity : face.inOrder) {
        auto* vertex = static_cast<MeshVertex*>(entity);
        if (vertex->attributes().contains(link)) {
            continue;
        }
        const Vector point = place(vertex->point());
        tie(vertex, point, partner.nearest(point));
    }
}

} // namespace

void Solver::interpolatePeriodicFaces()
{
    const PeriodicPairs pairs = periodicPairs(database_->model());
    for (const auto& [first, second] : pairs) {
        first->attributes().insert(AttributeType::PeriodicFace, second->id());
        second->attributes().insert(AttributeType::PeriodicFace, first->id());
    }
    const auto planar = std::find_if(pairs.begin(), pairs.end(), [](const auto& pair) {
        return pair.first->isPlanar() && pair.second->isPlanar();
    });
    PeriodicTransform transform;
    if (planar != pairs.end()) {
        transform = computePeriodicTransform(planar->first, planar->second);
    }
    storePeriodicTransform(transform, &database_->model()->attributes());
    for (const auto& [first, second] : pairs) {
        interpolatePeriodicFace(first, second, transform);
    }
}

void Solver::interpolatePeriodicFace(ModelEntity* first, ModelEntity* second,
                                     const PeriodicTransform& transform) const
{
    const TiedFace ofFirst(first);
    const TiedFace ofSecond(second);
    const auto tieAll = [this](const TiedFace& face, const TiedFace& partner,
                               const PeriodicTransform& toPartner) {
        tieEach(
            face, AttributeType::PeriodicEntityId,
            VertexFinder(partner, database_->mesh(),
                         [&] { return buildNearTree(partner.vertices); }),
            [&](Vector point) {
                transformPoint(point, toPartner);
                return point;
            },
            [&](MeshVertex* vertex, const Vector& point, MeshVertex* nearest) {
                storePeriodicAttributes(
                    vertex, interpolate(point, nearest, partner.face, PeriodicTolerance));
            });
    };
    tieAll(ofFirst, ofSecond, transform);
    tieAll(ofSecond, ofFirst, transform.inverse());
}

void Solver::interpolateExtrudedFaces()
{
    clearExtrusionAttributes();
    const Model* model = database_->model();
    OrderedHashIterator<int, ModelEntity*> faces = model->orderedIterator(model->faceDimension());
    while (faces.hasNext()) {
        ModelEntity* face = faces.next();
        const int partnerId = intAttribute(face, AttributeType::ExtrudedFace);
        if (partnerId == 0) {
            continue;
        }
        qDebug() << "Found face" << face->id() << "and face" << partnerId;
        interpolateExtrudedFace(face, model->entity(model->faceDimension(), partnerId));
    }
}

void Solver::interpolateExtrudedFace(ModelEntity* first, ModelEntity* second) const
{
    const TiedFace ofFirst(first);
    const TiedFace ofSecond(second);
    const auto tieAll = [this](const TiedFace& face, const TiedFace& partner) {
        tieEach(
            face, AttributeType::ExtrudedEntityId,
            VertexFinder(partner, database_->mesh(),
                         [&] { return buildNearTree(partner.vertices); }),
            [](const Vector& point) { return point; },
            [&](MeshVertex* vertex, const Vector& point, MeshVertex* nearest) {
                storeExtrusionAttributes(
                    vertex, interpolate(point, nearest, partner.face, extrusionTolerance_));
            });
    };
    tieAll(ofFirst, ofSecond);
    tieAll(ofSecond, ofFirst);
}

PeriodicTransform Solver::computePeriodicTransform(ModelEntity* first, ModelEntity* second) const
{
    const Vector cA = first->meshCentroid();
    const Vector nA = first->meshNormal();
    const Vector cB = second->meshCentroid();
    const Vector nB = second->meshNormal();
    const double g = nA * nB;
    if (-ParallelCosine > g) {
        return translationBy(cB - cA);
    }
    PeriodicTransform result =
        g > ParallelCosine ? halfTurnFrame(cA, cB, nA) : sectorFrame(cA, cB, nA, nB);
    orthonormalizeFrame(&result);
    // Rounding may take the product of parallel unit normals above 1, where there is no angle.
    result.matrix = rotationAboutZ(Pi - std::acos(std::min(g, 1.0)));
    return result;
}

void Solver::transformPoint(Vector& point, const PeriodicTransform& transform) const
{
    point = transform.map(point);
}

InterpolationData Solver::interpolate(const Vector& point, MeshVertex* nearest, ModelEntity* face,
                                      double tolerance) const
{
    InterpolationData result;
    if (point.isAlmostEqualTo(nearest->point(), 1e-6, 1e-8)) {
        result.entityType = 0;
        result.entityId = nearest->id();
        return result;
    }
    MeshEntity* entity = Utility::findEnclosingMeshFace(point, nearest, face);
    if (!entity) {
        entity = Utility::findClosestMeshFace(point, nearest, face);
    }
    result.entityType = entity->dimension();
    result.entityId = entity->id();
    result.weights = Utility::computeWeights(point, entity, tolerance);
    return result;
}

void Solver::storePeriodicAttributes(MeshVertex* vertex, const InterpolationData& data) const
{
    AttributeMap& attributes = vertex->attributes();
    attributes.insert(AttributeType::PeriodicEntityType, data.entityType);
    attributes.insert(AttributeType::PeriodicEntityId, data.entityId);
    attributes.insert(AttributeType::PeriodicWeights, data.weightList());
}

void Solver::storeExtrusionAttributes(MeshVertex* vertex, const InterpolationData& data) const
{
    AttributeMap& attributes = vertex->attributes();
    attributes.insert(AttributeType::ExtrudedEntityType, data.entityType);
    attributes.insert(AttributeType::ExtrudedEntityId, data.entityId);
    attributes.insert(AttributeType::ExtrudedWeights, data.weightList());
}

void Solver::clearExtrusionAttributes() const
{
    HashIterator<int, MeshEntity*> vertices = database_->mesh()->iterator(0);
    while (vertices.hasNext()) {
        vertices.next();
        AttributeMap& attributes = vertices.value()->attributes();
        attributes.remove(AttributeType::ExtrudedEntityType);
        attributes.remove(AttributeType::ExtrudedEntityId);
        attributes.remove(AttributeType::ExtrudedWeights);
    }
}

NearTree* Solver::buildNearTree(const QSet<MeshEntity*>& vertices) const
{
    auto root = std::make_unique<NearTree>();
    bool isFirst = true;
    for (const MeshVertex* vertex : inScatteredOrder(vertices)) {
        NearTree* const node = isFirst ? root.get() : new NearTree;
        node->set(vertex->id(), vertex->point(), 0.0);
        if (!isFirst) {
            root->insert(node);
        }
        isFirst = false;
    }
    return root.release();
}

} // namespace Ovra::Geo
