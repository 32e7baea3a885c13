#include "VertexTies.h"

#include "AttributeMap.h"
#include "Counted.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"

#include <QVariant>

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr double sumTolerance = 1e-6;

QString faultOf(const QVariantList& weights)
{
    double sum = 0.0;
    for (const QVariant& value : weights) {
        const double weight = value.toDouble();
        if (!std::isfinite(weight)) {
            return QStringLiteral("has a weight that is no number");
        }
        if (weight < 0.0) {
            return QStringLiteral("has the negative weight %1").arg(weight);
        }
        sum += weight;
    }
    return std::abs(sum - 1.0) > sumTolerance
               ? QStringLiteral("has weights that sum to %1").arg(sum)
               : QString();
}

} // namespace

VertexTies::VertexTies(const AttributeType& entityType, const AttributeType& entityId,
                       const AttributeType& weights)
    : entityType_(entityType)
    , entityId_(entityId)
    , weights_(weights)
{
}

VertexTies VertexTies::periodic()
{
    return {AttributeType::PeriodicEntityType, AttributeType::PeriodicEntityId,
            AttributeType::PeriodicWeights};
}

VertexTies VertexTies::extruded()
{
    return {AttributeType::ExtrudedEntityType, AttributeType::ExtrudedEntityId,
            AttributeType::ExtrudedWeights};
}

bool VertexTies::isTied(MeshEntity& vertex) const
{
    const AttributeMap& attributes = vertex.attributes();
    if (attributes.isEmpty()) {
        return false;
    }
    return attributes.contains(entityType_) || attributes.contains(entityId_) ||
           attributes.contains(weights_);
}

qint64 VertexTies::count(const Mesh& mesh) const
{
    const QList<MeshEntity*> vertices = inIdOrder(mesh.iterator(0));
    return std::count_if(vertices.begin(), vertices.end(),
                         [this](MeshEntity* vertex) { return isTied(*vertex); });
}

qint64 VertexTies::clear(Mesh& mesh) const
{
    qint64 cleared = 0;
    for (MeshEntity* vertex : inIdOrder(mesh.iterator(0))) {
        if (!isTied(*vertex)) {
            continue;
        }
        ++cleared;
        for (const AttributeType& type : {entityType_, entityId_, weights_}) {
            vertex->attributes().remove(type);
        }
    }
    return cleared;
}

qsizetype VertexTies::weightCount(const MeshEntity& entity)
{
    return entity.dimension() == 0 ? 1 : entity.adjacencyCount(0);
}

QString VertexTies::weightFault(MeshEntity& vertex, const MeshEntity& entity) const
{
    const QVariantList weights = vertex.attributes().value(weights_, {}).toList();
    if (weights.size() != weightCount(entity)) {
        return QStringLiteral("has %1 for %2")
            .arg(counted(weights.size(), QStringLiteral("weight")),
                 counted(weightCount(entity), QStringLiteral("vertex")));
    }
    return faultOf(weights);
}

QString VertexTies::fault(const Mesh& mesh, MeshEntity& vertex) const
{
    const AttributeMap& attributes = vertex.attributes();
    const int dimension = attributes.value(entityType_, -1).toInt();
    const int id = attributes.value(entityId_, 0).toInt();
    const MeshEntity* const entity =
        dimension >= 0 && dimension < 3 ? mesh.entity(dimension, id) : nullptr;
    return entity ? weightFault(vertex, *entity) : QStringLiteral("is tied to no mesh entity");
}

void VertexTies::set(MeshEntity& vertex, const MeshEntity& entity,
                     const QList<double>& weights) const
{
    vertex.attributes().insert(entityType_, entity.dimension());
    vertex.attributes().insert(entityId_, entity.id());
    vertex.attributes().insert(weights_, QVariantList(weights.begin(), weights.end()));
}

const MeshEntity& VertexTies::entityOf(const Mesh& mesh, MeshEntity& vertex) const
{
    return *mesh.entity(vertex.attributes().value(entityType_, 0).toInt(),
                        vertex.attributes().value(entityId_, 0).toInt());
}

Vector VertexTies::placeOf(const Mesh& mesh, MeshEntity& vertex) const
{
    const MeshEntity& entity = entityOf(mesh, vertex);
    if (entity.dimension() == 0) {
        return entity.centroid();
    }
    const QVariantList weights = vertex.attributes().value(weights_, {}).toList();
    Vector place;
    for (int i = 0; i < entity.adjacencyCount(0); ++i) {
        place += weights.at(i).toDouble() * entity.adjacencyAt(0, i)->centroid();
    }
    return place;
}

double longestEdge(const MeshEntity& entity)
{
    double longest = 0.0;
    const int count = entity.adjacencyCount(0);
    for (int i = 0; i < count; ++i) {
        const Vector side = entity.adjacencyAt(0, (i + 1) % count)->centroid() -
                            entity.adjacencyAt(0, i)->centroid();
        longest = std::max(longest, side.length());
    }
    return longest;
}

} // namespace Ovra::GeoTool
