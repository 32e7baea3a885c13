#include "PairCheck.h"

#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "FindingSink.h"
#include "IntAttribute.h"
#include "Model.h"
#include "ModelEntity.h"

#include <algorithm>
#include <map>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// The faces of a periodic pair, by id.
struct Sides
{
    std::vector<const ModelEntity*> first;
    std::vector<const ModelEntity*> second;
};

std::map<int, Sides> sidesByPair(const CaseView& view)
{
    std::map<int, Sides> pairs;
    for (const ModelEntity* face : view.modelEntities(view.faceDimension())) {
        const int pair = intOf(face->attributes(), AttributeType::PeriodicPairId);
        if (pair == 0) {
            continue;
        }
        const bool isFirst = intOf(face->attributes(), AttributeType::PeriodicSideId) == 1;
        (isFirst ? pairs[pair].first : pairs[pair].second).push_back(face);
    }
    return pairs;
}

QString incompleteText(int pair, const Sides& sides)
{
    return QStringLiteral("belongs to the periodic pair %1, which has %2 with the "
                          "periodic_side_id 1 and %3 with another; one of each is expected")
        .arg(pair)
        .arg(counted(static_cast<qint64>(sides.first.size()), QStringLiteral("face")))
        .arg(sides.second.size());
}

} // namespace

PairCheck::PairCheck(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
{
}

void PairCheck::run()
{
    const LinkCheck::Pairs periodic = periodicPairs();
    checkMeshes(FindingKind::PeriodicPair, periodic);
    LinkCheck(VertexTies::periodic(), view_, sink_).run(periodic);
    const LinkCheck::Pairs extruded = extrudedPairs();
    checkMeshes(FindingKind::ExtrudedPair, extruded);
    LinkCheck(VertexTies::extruded(), view_, sink_).run(extruded);
}

LinkCheck::Pairs PairCheck::periodicPairs()
{
    LinkCheck::Pairs pairs;
    for (const auto& [id, sides] : sidesByPair(view_)) {
        if (sides.first.size() == 1 && sides.second.size() == 1) {
            pairs.emplace_back(sides.first.front(), sides.second.front());
            pairs.emplace_back(sides.second.front(), sides.first.front());
            continue;
        }
        const ModelEntity& face =
            sides.first.empty() ? *sides.second.front() : *sides.first.front();
        sink_.add(FindingKind::PeriodicPair, face,
                  [&, pair = id, &both = sides] { return incompleteText(pair, both); });
    }
    return pairs;
}

LinkCheck::Pairs PairCheck::extrudedPairs()
{
    LinkCheck::Pairs pairs;
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        const int id = intOf(face->attributes(), AttributeType::ExtrudedFace);
        const ModelEntity* const partner = view_.model().entity(view_.faceDimension(), id);
        if (partner == face) {
            sink_.add(FindingKind::ExtrudedPair, *face,
                      [] { return QStringLiteral("names itself in extruded_face"); });
        } else if (partner) {
            pairs.emplace_back(face, partner);
            pairs.emplace_back(partner, face);
        }
    }
    // Both faces may name each other.
    std::sort(pairs.begin(), pairs.end(), [](const auto& a, const auto& b) {
        return std::pair(a.first->id(), a.second->id()) < std::pair(b.first->id(), b.second->id());
    });
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    return pairs;
}

void PairCheck::checkMeshes(FindingKind kind, const LinkCheck::Pairs& pairs)
{
    for (const auto& [face, partner] : pairs) {
        if (face->childCount() == 0 && partner->childCount() > 0) {
            sink_.add(kind, *face, [other = partner] {
                return QStringLiteral("has no mesh, though its partner, %1, has one")
                    .arg(nameOf(*other));
            });
        }
    }
}

} // namespace Ovra::GeoTool
