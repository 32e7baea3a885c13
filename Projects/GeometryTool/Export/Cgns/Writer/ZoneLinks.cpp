#include "ZoneLinks.h"

#include "AttributeType.h"
#include "CaseView.h"
#include "IntAttribute.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "StoredTransform.h"
#include "Twins.h"
#include "VertexTies.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <tuple>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// A vertex whose weight differs less from 1 is the place itself.
constexpr double weightTolerance = 1e-9;

bool isTransformStored(Model& model)
{
    return model.attributes().contains(AttributeType::PeriodicMatrix) ||
           model.attributes().contains(AttributeType::PeriodicTranslation);
}

/// \brief The vertex that a tie leads to, or null if it leads to somewhere between vertices.
const MeshEntity* tiedVertex(const Mesh& mesh, MeshEntity& vertex)
{
    const VertexTies ties = VertexTies::periodic();
    if (!ties.isTied(vertex) || !ties.fault(mesh, vertex).isEmpty()) {
        return nullptr;
    }
    const MeshEntity& entity = ties.entityOf(mesh, vertex);
    if (entity.dimension() == 0) {
        return &entity;
    }
    const QVariantList weights = vertex.attributes().value(ties.weightsType(), {}).toList();
    for (int i = 0; i < weights.size(); ++i) {
        if (weights.at(i).toDouble() > 1.0 - weightTolerance) {
            return entity.adjacencyAt(0, i);
        }
    }
    return nullptr;
}

} // namespace

ZoneLinks::ZoneLinks(const CaseView& view, const ZoneLayout& layout)
    : view_(view)
    , layout_(layout)
{
    addShared();
    addTwins();
    addPeriodic();
    addExtruded();
    std::stable_sort(links_.begin(), links_.end(),
                     [](const ZoneLink& a, const ZoneLink& b) { return a.zone < b.zone; });
}

bool ZoneLinks::isLinked(const ZonePatch& patch) const
{
    return std::any_of(links_.begin(), links_.end(),
                       [&patch](const ZoneLink& link) { return link.patch == &patch; });
}

void ZoneLinks::addShared()
{
    for (std::size_t zone = 0; zone < layout_.zones().size(); ++zone) {
        for (const ZonePatch& patch : layout_.zones()[zone].patches) {
            if (patch.other == ZoneLayout::Outside || patch.other == static_cast<int>(zone)) {
                continue;
            }
            const std::vector<ZonePatch>& others =
                layout_.zones()[static_cast<std::size_t>(patch.other)].patches;
            const auto donor =
                std::find_if(others.begin(), others.end(), [&](const ZonePatch& other) {
                    return other.face == patch.face && other.other == static_cast<int>(zone);
                });
            links_.push_back({static_cast<int>(zone),
                              patch.other,
                              &patch,
                              &*donor,
                              QStringLiteral("shared"),
                              patch.vertices,
                              patch.vertices,
                              {}});
        }
    }
}

void ZoneLinks::addTwins()
{
    for (const Twin& twin : twinsOf(view_.model())) {
        const bool isDoubled = twin.relation == QLatin1String("solid side") ||
                               twin.relation == QLatin1String("stator side");
        if (!isDoubled) {
            continue;
        }
        addTwin(twin, endsOf(*twin.original), endsOf(*twin.copy));
    }
}

/// Of faces that are in several zones, those parts are connected that touch.
void ZoneLinks::addTwin(const Twin& twin, const std::vector<End>& originals,
                        const std::vector<End>& copies)
{
    const bool isOfOne = originals.size() == 1 && copies.size() == 1;
    for (const End& end : originals) {
        for (const End& donor : copies) {
            ZoneLink link{end.zone, donor.zone, end.patch, donor.patch, twin.relation, {}, {}, {}};
            matchPlaces(link);
            if (isOfOne && link.points.size() < link.patch->vertices.size()) {
                link.points.clear();
                link.donors.clear();
            }
            if (isOfOne || !link.points.empty()) {
                addBothWays(link);
            }
        }
    }
}

void ZoneLinks::addPeriodic()
{
    std::map<int, std::pair<const ModelEntity*, const ModelEntity*>> pairs;
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        const int pair = intOf(face->attributes(), AttributeType::PeriodicPairId);
        const bool isFirst = intOf(face->attributes(), AttributeType::PeriodicSideId) == 1;
        if (pair != 0) {
            (isFirst ? pairs[pair].first : pairs[pair].second) = face;
        }
    }
    for (const auto& [number, faces] : pairs) {
        if (!faces.first || !faces.second || !isTransformStored(view_.model())) {
            untiedPairs_.push_back(number);
            continue;
        }
        for (const End& end : endsOf(*faces.first)) {
            for (const End& donor : endsOf(*faces.second)) {
                ZoneLink link{end.zone,
                              donor.zone,
                              end.patch,
                              donor.patch,
                              QStringLiteral("periodic"),
                              {},
                              {},
                              storedTransform(view_.model())};
                matchTies(link);
                addBothWays(link);
            }
        }
    }
}

void ZoneLinks::addExtruded()
{
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        const int other = intOf(face->attributes(), AttributeType::ExtrudedFace);
        const ModelEntity* const partner = view_.model().entity(view_.faceDimension(), other);
        if (!partner || partner == face) {
            continue;
        }
        for (const End& end : endsOf(*face)) {
            for (const End& donor : endsOf(*partner)) {
                addBothWays({end.zone,
                             donor.zone,
                             end.patch,
                             donor.patch,
                             QStringLiteral("extruded"),
                             {},
                             {},
                             {}});
            }
        }
    }
}

void ZoneLinks::addBothWays(const ZoneLink& link)
{
    links_.push_back(link);
    ZoneLink back = link;
    std::swap(back.zone, back.donorZone);
    std::swap(back.patch, back.donor);
    std::swap(back.points, back.donors);
    if (back.transform) {
        back.transform = back.transform->inverse();
    }
    links_.push_back(back);
}

std::vector<ZoneLinks::End> ZoneLinks::endsOf(const ModelEntity& face) const
{
    std::vector<End> ends;
    for (std::size_t zone = 0; zone < layout_.zones().size(); ++zone) {
        for (const ZonePatch& patch : layout_.zones()[zone].patches) {
            if (patch.face == &face && patch.other == ZoneLayout::Outside) {
                ends.push_back({static_cast<int>(zone), &patch});
            }
        }
    }
    return ends;
}

/// \brief Pairs the vertices that lie in the same place, unless two of one side do.
void ZoneLinks::matchPlaces(ZoneLink& link) const
{
    const auto placeOf = [this](int vertex) {
        const Vector& point = view_.points()[static_cast<std::size_t>(vertex)];
        return std::tuple(point.x(), point.y(), point.z());
    };
    const auto isLess = [&placeOf](int a, int b) { return placeOf(a) < placeOf(b); };
    const auto isSame = [&placeOf](int a, int b) { return placeOf(a) == placeOf(b); };
    std::vector<int> points = link.patch->vertices;
    std::vector<int> donors = link.donor->vertices;
    for (std::vector<int>* side : {&points, &donors}) {
        std::stable_sort(side->begin(), side->end(), isLess);
        if (std::adjacent_find(side->begin(), side->end(), isSame) != side->end()) {
            return;
        }
    }
    std::set_intersection(points.begin(), points.end(), donors.begin(), donors.end(),
                          std::back_inserter(link.points), isLess);
    std::set_intersection(donors.begin(), donors.end(), points.begin(), points.end(),
                          std::back_inserter(link.donors), isLess);
}

/// \brief Pairs the vertices by their ties, if each leads to a vertex and no two to the same.
void ZoneLinks::matchTies(ZoneLink& link) const
{
    if (link.patch->vertices.size() != link.donor->vertices.size()) {
        return;
    }
    const IdPositions& positions = view_.positions(0);
    std::vector<int> donors;
    for (const int vertex : link.patch->vertices) {
        const MeshEntity* const partner =
            tiedVertex(view_.mesh(), *view_.meshEntities(0)[static_cast<std::size_t>(vertex)]);
        if (!partner) {
            return;
        }
        donors.push_back(positions.find(partner->id()));
    }
    std::vector<int> reached = donors;
    std::sort(reached.begin(), reached.end());
    if (reached == link.donor->vertices) {
        link.points = link.patch->vertices;
        link.donors = donors;
    }
}

} // namespace Ovra::GeoTool
