#pragma once

#include "SurfaceMesh.h"

#include <QMetaType>
#include <QSet>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

/// \brief What interpolation left on a mesh vertex.
struct InterpolationLink
{
    int type = -1;
    int id = 0;
    QList<double> weights;

    bool operator==(const InterpolationLink& other) const
    {
        return type == other.type && id == other.id && weights == other.weights;
    }
};

/// \brief The attributes that hold a link: those of periodic or those of extruded faces.
struct LinkAttributes
{
    Ovra::Geo::AttributeType type;
    Ovra::Geo::AttributeType id;
    Ovra::Geo::AttributeType weights;

    static LinkAttributes periodic()
    {
        using Ovra::Geo::AttributeType;
        return {AttributeType::PeriodicEntityType, AttributeType::PeriodicEntityId,
                AttributeType::PeriodicWeights};
    }

    static LinkAttributes extruded()
    {
        using Ovra::Geo::AttributeType;
        return {AttributeType::ExtrudedEntityType, AttributeType::ExtrudedEntityId,
                AttributeType::ExtrudedWeights};
    }

    bool anyOn(Ovra::Geo::MeshEntity* vertex) const
    {
        const auto& attributes = vertex->attributes();
        return attributes.contains(type) || attributes.contains(id) || attributes.contains(weights);
    }

    /// \brief A default link if the attributes are absent or not of the types that they should be.
    InterpolationLink of(Ovra::Geo::MeshEntity* vertex) const
    {
        const auto& attributes = vertex->attributes();
        const QVariant typeValue = attributes.value(type, QVariant());
        const QVariant idValue = attributes.value(id, QVariant());
        const QVariant weightsValue = attributes.value(weights, QVariant());
        if (typeValue.userType() != QMetaType::Int || idValue.userType() != QMetaType::Int ||
            weightsValue.userType() != QMetaType::QVariantList) {
            return {};
        }
        InterpolationLink link{typeValue.toInt(), idValue.toInt(), {}};
        for (const QVariant& weight : weightsValue.toList()) {
            if (weight.userType() != QMetaType::Double) {
                return {};
            }
            link.weights.append(weight.toDouble());
        }
        return link;
    }
};

/// \brief Holds the links of all vertices of one meshed face to the mesh of its partner against the
///        place where they should be, found by looking at the whole partner.
///
/// The library looks only at the elements around the vertex nearest to the place. Where one of
/// those holds the place, the weights must reproduce it within the tolerance, a share of the
/// element's longest side. In a badly shaped mesh none may hold it; such a fallback may be off by
/// one side.
class InterpolationCheck
{
public:
    using MeshEntity = Ovra::Geo::MeshEntity;
    using MeshVertex = Ovra::Geo::MeshVertex;
    using ModelEntity = Ovra::Geo::ModelEntity;
    using Vector = Ovra::Geo::Vector;

    InterpolationCheck(SurfaceMesh* surface, const LinkAttributes& attributes, double tolerance)
        : surface_(surface)
        , attributes_(attributes)
        , tolerance_(tolerance)
    {
    }

    /// \brief Tests every vertex of \a from against the mesh of \a onto.
    void run(const ModelEntity* from, const ModelEntity* onto,
             const std::function<Vector(const Vector&)>& map)
    {
        const QSet<MeshEntity*> partners = verticesOn(onto);
        for (MeshEntity* vertex : verticesOn(from)) {
            const Vector place = map(static_cast<MeshVertex*>(vertex)->point());
            test(attributes_.of(vertex), place, onto, partners);
            ++vertices_;
        }
    }

    /// \brief The first fault found; empty if there is none.
    QString fault() const { return fault_; }
    int vertices() const { return vertices_; }
    int onVertices() const { return onVertices_; }
    int fallbacks() const { return fallbacks_; }

    static QSet<MeshEntity*> verticesOn(const ModelEntity* face)
    {
        QSet<MeshEntity*> result;
        auto children = face->childIterator();
        while (children.hasNext()) {
            children.next();
            for (MeshVertex* vertex : SurfaceMesh::verticesOf(children.value())) {
                result.insert(vertex);
            }
        }
        return result;
    }

private:
    void report(const QString& text, const Vector& place)
    {
        if (fault_.isEmpty()) {
            fault_ = text + QStringLiteral(" for the place ") + place.toString();
        }
    }

    void test(const InterpolationLink& link, const Vector& place, const ModelEntity* onto,
              const QSet<MeshEntity*>& partners)
    {
        MeshEntity* entity = surface_->mesh()->entity(link.type < 0 ? 0 : link.type, link.id);
        if (!entity) {
            report(QStringLiteral("no link"), place);
        } else if (link.type == 0) {
            testVertexLink(link, entity, place, partners);
        } else if (link.type != onto->dimension() || entity->parent() != onto) {
            report(QStringLiteral("link to entity %1 off the partner").arg(link.id), place);
        } else {
            testElementLink(link, entity, place, onto, partners);
        }
    }

    void testVertexLink(const InterpolationLink& link, MeshEntity* entity, const Vector& place,
                        const QSet<MeshEntity*>& partners)
    {
        ++onVertices_;
        if (!partners.contains(entity) || link.weights != QList<double>{1.0}) {
            report(QStringLiteral("wrong vertex %1").arg(link.id), place);
        }
        const Vector point = static_cast<MeshVertex*>(entity)->point();
        if (!((point - place).length() <= 1e-8 + 2e-6 * place.length())) {
            report(QStringLiteral("vertex %1 off the place").arg(link.id), place);
        }
    }

    void testElementLink(const InterpolationLink& link, MeshEntity* element, const Vector& place,
                         const ModelEntity* onto, const QSet<MeshEntity*>& partners)
    {
        const QList<MeshVertex*> corners = SurfaceMesh::verticesOf(element);
        if (link.weights.size() != corners.size()) {
            report(QStringLiteral("%1 weights").arg(link.weights.size()), place);
            return;
        }
        double sum = 0.0;
        Vector reproduced;
        for (int i = 0; i < corners.size(); ++i) {
            if (!(link.weights[i] >= 0.0)) {
                report(QStringLiteral("weight %1").arg(link.weights[i]), place);
            }
            sum += link.weights[i];
            reproduced += link.weights[i] * corners[i]->point();
        }
        if (!(std::abs(sum - 1.0) <= 1e-12)) {
            report(QStringLiteral("weights sum to %1").arg(sum, 0, 'g', 17), place);
        }
        const double error = (reproduced - place).length() / longestSide(element);
        const bool held = isHeldAroundNearest(place, onto, partners);
        fallbacks_ += held ? 0 : 1;
        if (!(error <= (held ? tolerance_ : 1.0))) {
            report(QStringLiteral("off by %1 of a side, %2").arg(error).arg(held), place);
        }
    }

    static double longestSide(const MeshEntity* element)
    {
        const QList<MeshVertex*> corners = SurfaceMesh::verticesOf(element);
        double longest = 0.0;
        for (int i = 0; i < corners.size(); ++i) {
            const auto& next = corners[(i + 1) % corners.size()];
            longest = std::max(longest, (next->point() - corners[i]->point()).length());
        }
        return longest;
    }

    static bool isHeldAroundNearest(const Vector& place, const ModelEntity* onto,
                                    const QSet<MeshEntity*>& partners)
    {
        double least = std::numeric_limits<double>::infinity();
        QList<double> distances;
        for (const MeshEntity* partner : partners) {
            const Vector point = static_cast<const MeshVertex*>(partner)->point();
            distances.append((point - place).length());
            least = std::min(least, distances.last());
        }
        // Of several nearest vertices any one may have been taken.
        bool held = true;
        auto distance = distances.cbegin();
        for (const MeshEntity* partner : partners) {
            if (*distance++ <= least * (1.0 + 1e-9)) {
                held = held && isHeldAround(partner, place, onto);
            }
        }
        return held;
    }

    static bool isHeldAround(const MeshEntity* vertex, const Vector& place, const ModelEntity* onto)
    {
        for (int i = 0; i < vertex->adjacencyCount(onto->dimension()); ++i) {
            const MeshEntity* element = vertex->adjacencyAt(onto->dimension(), i);
            if (element->parent() == onto && holds(element, place, vertex)) {
                return true;
            }
        }
        return false;
    }

    // A place on a side at the vertex counts however it was rounded, since the sides at the vertex
    // are what the library falls back on. A place on another side may be rounded out of reach.
    static bool holds(const MeshEntity* element, const Vector& place, const MeshEntity* vertex)
    {
        const QList<MeshVertex*> corners = SurfaceMesh::verticesOf(element);
        const double margin = 1e-9 * longestSide(element);
        if (corners.size() == 2) {
            const Vector side = corners[1]->point() - corners[0]->point();
            const double along = (place - corners[0]->point()) * side / side.length();
            return along >= -margin && along <= side.length() + margin;
        }
        const Vector normal = element->normal();
        for (int i = 0; i < corners.size(); ++i) {
            const MeshVertex* next = corners[(i + 1) % corners.size()];
            Vector side = next->point() - corners[i]->point();
            side.normalize();
            const bool atVertex = corners[i] == vertex || next == vertex;
            const double inside = (normal ^ side) * (place - corners[i]->point());
            if (inside < (atVertex ? -margin : margin)) {
                return false;
            }
        }
        return true;
    }

    SurfaceMesh* surface_;
    LinkAttributes attributes_;
    double tolerance_;
    QString fault_;
    int vertices_ = 0;
    int onVertices_ = 0;
    int fallbacks_ = 0;
};
