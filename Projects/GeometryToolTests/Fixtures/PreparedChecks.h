#pragma once

#include "AttributeType.h"
#include "ImportChecks.h"

#include <QList>
#include <QVariant>

#include <cmath>
#include <functional>
#include <tuple>

/// \brief Reads a case that the tool has prepared and checks it against what each operation must
/// leave, whatever the mesh.
///
/// Each check says in words what is wrong first; its answer is empty if nothing is.
class PreparedCase : public ImportedCase
{
public:
    using AttributeType = Ovra::Geo::AttributeType;
    using Place = std::tuple<double, double, double>;
    using Places = std::multiset<std::multiset<Place>>;
    using Transform = std::function<Vector(const Vector&)>;

    using ImportedCase::ImportedCase;

    template <typename Entity>
    static int intOf(Entity* entity, const AttributeType& type)
    {
        return entity->attributes().value(type, QVariant(0)).toInt();
    }

    /// \brief The entities of a dimension that have an attribute.
    std::vector<ModelEntity*> having(int dimension, const AttributeType& type)
    {
        std::vector<ModelEntity*> result;
        for (ModelEntity* entity : entities(dimension)) {
            if (entity->attributes().contains(type)) {
                result.push_back(entity);
            }
        }
        return result;
    }

    ModelEntity* named(int dimension, const QString& name)
    {
        for (ModelEntity* entity : entities(dimension)) {
            if (entity->name() == name) {
                return entity;
            }
        }
        return nullptr;
    }

    /// \brief The mesh vertices that the mesh of an entity uses.
    static std::set<MeshEntity*> meshVertices(ModelEntity* entity)
    {
        std::set<MeshEntity*> result;
        for (MeshEntity* child : children(entity)) {
            const auto v = vertices(child);
            result.insert(v.begin(), v.end());
        }
        return result;
    }

    /// \brief Where the mesh of an entity lies, element by element.
    static Places places(ModelEntity* entity)
    {
        Places result;
        for (MeshEntity* child : children(entity)) {
            std::multiset<Place> corners;
            for (MeshEntity* vertex : vertices(child)) {
                corners.insert(place(vertex));
            }
            result.insert(corners);
        }
        return result;
    }

    /// \brief Regions keep their volume, and all of the case before is still there.
    QString volumeFaults(ImportedCase& before)
    {
        for (ModelEntity* old : before.entities(3)) {
            ModelEntity* const region = model()->entity(3, old->id());
            if (region == nullptr) {
                return QStringLiteral("region %1 is gone").arg(old->id());
            }
            const double expected = volume(old);
            if (!(std::abs(volume(region) - expected) <= 1e-10 * expected)) {
                return QStringLiteral("region %1 has changed its volume").arg(old->id());
            }
        }
        return QString();
    }

    /// \brief Faces between fluid and another region are there twice, in the same place, without a
    /// vertex in common.
    QString splitFaults(std::size_t count)
    {
        return doublingFaults(AttributeType::SolidFace, AttributeType::FluidFace, count);
    }

    /// \brief The same of the faces of rotating devices, with their vertices tied.
    QString peripheralFaults(std::size_t count)
    {
        const QString fault =
            doublingFaults(AttributeType::StatorFace, AttributeType::RotorFace, count);
        if (!fault.isEmpty()) {
            return fault;
        }
        for (ModelEntity* face : having(2, AttributeType::StatorFace)) {
            ModelEntity* const stator = model()->entity(2, intOf(face, AttributeType::StatorFace));
            const auto ofStator = meshVertices(stator);
            for (MeshEntity* vertex : meshVertices(face)) {
                MeshEntity* const twin =
                    mesh()->entity(0, intOf(vertex, AttributeType::StatorVertex));
                if (ofStator.count(twin) == 0 || place(twin) != place(vertex) ||
                    intOf(twin, AttributeType::RotorVertex) != vertex->id()) {
                    return QStringLiteral("vertex %1 of rotor face %2 has no proper stator vertex")
                        .arg(vertex->id())
                        .arg(face->id());
                }
            }
        }
        return QString();
    }

    /// \brief Moving regions have a copy in the same place that shares nothing with the rest.
    QString replicaFaults(std::size_t count)
    {
        const auto replicas = having(3, AttributeType::OriginalMotionRegion);
        if (replicas.size() != count) {
            return QStringLiteral("%1 replicas").arg(replicas.size());
        }
        for (ModelEntity* replica : replicas) {
            const QString fault = replicaFault(replica);
            if (!fault.isEmpty()) {
                return fault;
            }
        }
        return QString();
    }

    /// \brief Vertices of periodic faces are tied to the place that the transform takes them to.
    /// \param forward takes a point of a first side to the second
    QString periodicFaults(const Transform& forward, const Transform& back, double tolerance)
    {
        TiesByVertex ties;
        for (ModelEntity* face : having(2, AttributeType::PeriodicPairId)) {
            ModelEntity* const partner =
                model()->entity(2, intOf(face, AttributeType::PeriodicFace));
            if (partner == nullptr || partner == face ||
                intOf(partner, AttributeType::PeriodicFace) != face->id() ||
                intOf(partner, AttributeType::PeriodicPairId) !=
                    intOf(face, AttributeType::PeriodicPairId)) {
                return QStringLiteral("face %1 has no proper partner").arg(face->id());
            }
            const bool isFirst = intOf(face, AttributeType::PeriodicSideId) == 1;
            for (MeshEntity* vertex : meshVertices(face)) {
                ties[vertex].push_back({face, partner, isFirst ? forward : back});
            }
        }
        return tieFaults(ties, PeriodicTags, tolerance);
    }

    /// \brief Vertices of extruded faces and of their partners are tied to their own place.
    QString extrudedFaults(double tolerance)
    {
        const Transform stay = [](const Vector& point) { return point; };
        TiesByVertex ties;
        for (ModelEntity* face : having(2, AttributeType::ExtrudedFace)) {
            ModelEntity* const partner =
                model()->entity(2, intOf(face, AttributeType::ExtrudedFace));
            if (partner == nullptr) {
                return QStringLiteral("face %1 has no partner").arg(face->id());
            }
            for (MeshEntity* vertex : meshVertices(face)) {
                ties[vertex].push_back({face, partner, stay});
            }
            for (MeshEntity* vertex : meshVertices(partner)) {
                ties[vertex].push_back({partner, face, stay});
            }
        }
        return tieFaults(ties, ExtrudedTags, tolerance);
    }

    /// \brief Vertices of an original shell face have a partner across the sheet.
    QString shellFaults(const Vector& offset, double tolerance)
    {
        for (ModelEntity* face : having(2, AttributeType::NewShellFace)) {
            ModelEntity* const twin = model()->entity(2, intOf(face, AttributeType::NewShellFace));
            const auto ofTwin = meshVertices(twin);
            for (MeshEntity* vertex : meshVertices(face)) {
                MeshEntity* const partner =
                    mesh()->entity(0, intOf(vertex, AttributeType::ShellVertex));
                if (ofTwin.count(partner) == 0 ||
                    intOf(partner, AttributeType::ShellVertex) != vertex->id()) {
                    return QStringLiteral("vertex %1 has no partner").arg(vertex->id());
                }
                if ((partner->centroid() - vertex->centroid() - offset).length() > tolerance) {
                    return QStringLiteral("vertex %1 has the wrong partner").arg(vertex->id());
                }
            }
        }
        return QString();
    }

    /// \brief Elements of two regions that have a vertex in common; empty if there is none.
    static QString sharingFaults(ModelEntity* one, ModelEntity* other)
    {
        const auto a = meshVertices(one);
        for (MeshEntity* vertex : meshVertices(other)) {
            if (a.count(vertex) != 0) {
                return QStringLiteral("entities %1 and %2 share vertex %3")
                    .arg(one->id())
                    .arg(other->id())
                    .arg(vertex->id());
            }
        }
        return QString();
    }

private:
    struct Tags
    {
        AttributeType type;
        AttributeType id;
        AttributeType weights;
    };

    /// A face that a vertex lies on, and what the vertex may be tied to for it.
    struct Tie
    {
        ModelEntity* face;
        ModelEntity* partner;
        Transform transform;
    };

    using TiesByVertex = std::map<MeshEntity*, std::vector<Tie>>;

    inline static const Tags PeriodicTags{AttributeType::PeriodicEntityType,
                                          AttributeType::PeriodicEntityId,
                                          AttributeType::PeriodicWeights};
    inline static const Tags ExtrudedTags{AttributeType::ExtrudedEntityType,
                                          AttributeType::ExtrudedEntityId,
                                          AttributeType::ExtrudedWeights};

    static Place place(MeshEntity* vertex)
    {
        const Vector point = vertex->centroid();
        return {point.x(), point.y(), point.z()};
    }

    QString doublingFaults(const AttributeType& toNew, const AttributeType& toOld,
                           std::size_t count)
    {
        const auto faces = having(2, toNew);
        if (faces.size() != count || having(2, toOld).size() != count) {
            return QStringLiteral("%1 faces are doubled").arg(faces.size());
        }
        for (ModelEntity* face : faces) {
            ModelEntity* const twin = model()->entity(2, intOf(face, toNew));
            if (twin == nullptr || intOf(twin, toOld) != face->id()) {
                return QStringLiteral("face %1 has no proper twin").arg(face->id());
            }
            if (face->adjacencyCount(3) != 1 || twin->adjacencyCount(3) != 1) {
                return QStringLiteral("face %1 or its twin has not one region").arg(face->id());
            }
            if (places(face) != places(twin)) {
                return QStringLiteral("face %1 and its twin do not coincide").arg(face->id());
            }
            QString fault = sharingFaults(face, twin);
            if (fault.isEmpty()) {
                fault = sharingFaults(face->adjacencyAt(3, 0), twin->adjacencyAt(3, 0));
            }
            if (!fault.isEmpty()) {
                return fault;
            }
        }
        return QString();
    }

    QString replicaFault(ModelEntity* replica)
    {
        ModelEntity* const old =
            model()->entity(3, intOf(replica, AttributeType::OriginalMotionRegion));
        if (old == nullptr || intOf(old, AttributeType::NewMotionRegion) != replica->id()) {
            return QStringLiteral("replica %1 has no proper original").arg(replica->id());
        }
        if (old->attributes().contains(AttributeType::MotionType) ||
            !replica->attributes().contains(AttributeType::MotionType)) {
            return QStringLiteral("the motion is not the replica's alone");
        }
        if (places(old) != places(replica)) {
            return QStringLiteral("replica %1 is not where its original is").arg(replica->id());
        }
        if (old->adjacencyCount(2) != replica->adjacencyCount(2)) {
            return QStringLiteral("replica %1 has not the faces of its original")
                .arg(replica->id());
        }
        for (int i = 0; i < old->adjacencyCount(2); ++i) {
            if (places(old->adjacencyAt(2, i)) != places(replica->adjacencyAt(2, i))) {
                return QStringLiteral("face %1 of replica %2 is not in place")
                    .arg(i)
                    .arg(replica->id());
            }
        }
        for (ModelEntity* other : entities(3)) {
            const QString fault = other == replica ? QString() : sharingFaults(replica, other);
            if (!fault.isEmpty()) {
                return fault;
            }
        }
        for (MeshEntity* vertex : meshVertices(replica)) {
            MeshEntity* const original =
                mesh()->entity(0, intOf(vertex, AttributeType::OriginalMotionVertex));
            if (original == nullptr || place(original) != place(vertex) ||
                !original->attributes().contains(AttributeType::NewMotionVertex)) {
                return QStringLiteral("vertex %1 of replica %2 has no proper original")
                    .arg(vertex->id())
                    .arg(replica->id());
            }
        }
        return QString();
    }

    /// A vertex on several faces has one tie, which may be that of any of them.
    QString tieFaults(const TiesByVertex& ties, const Tags& tags, double tolerance)
    {
        for (const auto& [vertex, candidates] : ties) {
            QString fault;
            for (const Tie& tie : candidates) {
                fault = tieFault(vertex, tie, tags, tolerance);
                if (fault.isEmpty()) {
                    break;
                }
            }
            if (!fault.isEmpty()) {
                return QStringLiteral("vertex %1 of face %2: %3")
                    .arg(vertex->id())
                    .arg(candidates.back().face->id())
                    .arg(fault);
            }
        }
        return ties.empty() ? QStringLiteral("nothing to be tied") : QString();
    }

    /// Weights that are not negative and sum to 1 rebuild the place from the entity's vertices.
    QString tieFault(MeshEntity* vertex, const Tie& tie, const Tags& tags, double tolerance)
    {
        const auto& attributes = vertex->attributes();
        const int dimension = attributes.value(tags.type, QVariant(-1)).toInt();
        MeshEntity* const tied =
            dimension < 0 ? nullptr : mesh()->entity(dimension, intOf(vertex, tags.id));
        const QVariantList weights = attributes.value(tags.weights, QVariant()).toList();
        if (tied == nullptr || !liesOn(tied, tie.partner)) {
            return QStringLiteral("not tied to face %1").arg(tie.partner->id());
        }
        const auto corners = dimension == 0 ? std::vector<MeshEntity*>{tied} : vertices(tied);
        if (static_cast<std::size_t>(weights.size()) != corners.size()) {
            return QStringLiteral("%1 weights").arg(weights.size());
        }
        double sum = 0;
        Vector rebuilt;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const double weight = weights.at(static_cast<qsizetype>(i)).toDouble();
            if (!(weight >= 0)) {
                return QStringLiteral("weight %1").arg(weight);
            }
            sum += weight;
            rebuilt += weight * corners[i]->centroid();
        }
        const double off = (rebuilt - tie.transform(vertex->centroid())).length();
        if (!(std::abs(sum - 1) < 1e-9) || !(off <= tolerance)) {
            return QStringLiteral("weights sum to %1 and rebuild a place %2 off")
                .arg(sum, 0, 'g', 12)
                .arg(off);
        }
        return QString();
    }

    static bool liesOn(MeshEntity* tied, ModelEntity* face)
    {
        return tied->dimension() == 0 ? meshVertices(face).count(tied) != 0
                                      : tied->parent() == face;
    }
};
