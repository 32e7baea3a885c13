#include "LinkCheck.h"

#include "AttributeMap.h"
#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "FindingSink.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <QStringList>
#include <QVariant>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int largestStencil = 4; // what a LinkData holds

/// Positive weights of the stencil; only these take room in the writer's record.
qint64 linkCount(const QVariantList& weights)
{
    return std::count_if(weights.begin(), weights.end(),
                         [](const QVariant& weight) { return weight.toDouble() > 0.0; });
}

} // namespace

LinkCheck::LinkCheck(const VertexTies& ties, const CaseView& view, FindingSink& sink)
    : ties_(ties)
    , view_(view)
    , sink_(sink)
{
}

void LinkCheck::run(const Pairs& pairs)
{
    const auto& vertices = view_.meshEntities(0);
    if (std::none_of(vertices.begin(), vertices.end(),
                     [this](auto* v) { return ties_.isTied(*v); })) {
        return;
    }
    gather(pairs);
    for (MeshEntity* vertex : vertices) {
        if (!ties_.isTied(*vertex) && partners_.count(vertex) == 0) {
            continue;
        }
        if (const MeshEntity* const target = checkTarget(*vertex)) {
            checkWeights(*vertex, *target);
            checkPlace(*vertex, *target);
        }
    }
}

void LinkCheck::gather(const Pairs& pairs)
{
    for (const auto& [face, partner] : pairs) {
        for (const MeshEntity* vertex : CaseView::verticesOn(*face)) {
            faces_[vertex].push_back(face);
            partners_[vertex].push_back(partner);
        }
    }
}

const MeshEntity* LinkCheck::checkTarget(MeshEntity& vertex)
{
    const MeshEntity* const target = findTarget(vertex);
    return target && checkWeightCount(vertex, *target) ? target : nullptr;
}

const MeshEntity* LinkCheck::findTarget(MeshEntity& vertex)
{
    const int dimension = vertex.attributes().value(ties_.dimensionType(), -1).toInt();
    const int id = vertex.attributes().value(ties_.idType(), 0).toInt();
    if (dimension < 0 || dimension > 3 || id == 0) {
        sink_.add(FindingKind::MissingLink, vertex, [this] {
            return QStringLiteral("lacks its %1 and %2, or they mean nothing")
                .arg(ties_.dimensionType().toString(), ties_.idType().toString());
        });
        return nullptr;
    }
    const MeshEntity* const target = view_.mesh().entity(dimension, id);
    if (!target) {
        sink_.add(FindingKind::MissingEntity, vertex, [&] {
            return QStringLiteral("names in %1 the %2, which does not exist")
                .arg(ties_.idType().toString(), nameOf(QStringLiteral("mesh"), dimension, id));
        });
    }
    return target;
}

bool LinkCheck::checkWeightCount(MeshEntity& vertex, const MeshEntity& target)
{
    const qsizetype wanted = target.adjacencyCount(0);
    const QVariantList weights = vertex.attributes().value(ties_.weightsType(), {}).toList();
    if (weights.size() >= wanted && linkCount(weights.mid(0, wanted)) <= largestStencil) {
        return true;
    }
    sink_.add(FindingKind::BadWeights, vertex, [&] {
        return QStringLiteral("has %1 in %2 for the %3 of %4; at most %5 of them may be positive")
            .arg(counted(weights.size(), QStringLiteral("value")), ties_.weightsType().toString(),
                 counted(wanted, QStringLiteral("vertex")), nameOf(target))
            .arg(largestStencil);
    });
    return false;
}

void LinkCheck::checkWeights(MeshEntity& vertex, const MeshEntity& target)
{
    if (ties_.weightFault(vertex, target).isEmpty()) {
        return;
    }
    sink_.add(FindingKind::BadWeights, vertex, [&] {
        QStringList texts;
        for (const QVariant& weight : vertex.attributes().value(ties_.weightsType(), {}).toList()) {
            texts += QString::number(weight.toDouble(), 'g', 6);
        }
        return QStringLiteral("has the %1 (%2) for %3; %4 expected, none negative, with the sum 1")
            .arg(ties_.weightsType().toString(), texts.join(QStringLiteral(", ")), nameOf(target),
                 counted(VertexTies::weightCount(target), QStringLiteral("is"),
                         QStringLiteral("are")));
    });
}

void LinkCheck::checkPlace(MeshEntity& vertex, const MeshEntity& target)
{
    const auto partners = partners_.find(&vertex);
    if (partners == partners_.end() || liesOn(target, partners->second)) {
        return;
    }
    sink_.add(FindingKind::StrayLink, vertex, [&] {
        return QStringLiteral("names in %1 the %2, which does not lie on %3")
            .arg(ties_.idType().toString(), nameOf(target), nameOf(*partners->second.front()));
    });
}

bool LinkCheck::liesOn(const MeshEntity& target, const Faces& faces) const
{
    const auto isOneOf = [&faces](const ModelEntity* face) {
        return std::find(faces.begin(), faces.end(), face) != faces.end();
    };
    if (target.dimension() != 0) {
        return isOneOf(target.parent());
    }
    const auto own = faces_.find(&target);
    return own != faces_.end() && std::any_of(own->second.begin(), own->second.end(), isOneOf);
}

} // namespace Ovra::GeoTool
