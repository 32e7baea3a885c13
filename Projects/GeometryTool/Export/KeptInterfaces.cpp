#include "KeptInterfaces.h"

#include "CaseView.h"
#include "ElementCheck.h"
#include "ElementSides.h"
#include "IntAttribute.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Twins.h"

#include <QMap>

#include <algorithm>
#include <array>
#include <map>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr double wholeWeight = 1.0 - 1e-9;

std::size_t place(int position)
{
    return static_cast<std::size_t>(position);
}

std::array<double, 3> coordinates(const Vector& point)
{
    return {point.x(), point.y(), point.z()};
}

std::vector<int> sorted(std::vector<int> vertices)
{
    std::sort(vertices.begin(), vertices.end());
    return vertices;
}

} // namespace

KeptInterfaces::KeptInterfaces(const CaseView& view)
    : view_(view)
    , vertices_(view.positions(0))
    , joined_(view.meshEntities(view.elementDimension()).size())
{
    findPairs();
    findPeriodicPairs();
    findExtrudedPairs();
    for (const Pair& pair : pairs_) {
        children_.insert(pair.first, {});
        children_.insert(pair.second, {});
    }
    findChildren(view.faceDimension());
    findChildren(view.elementDimension());
    findElements();
    for (const Pair& pair : pairs_) {
        join(pair);
    }
}

std::vector<int> KeptInterfaces::clusters()
{
    std::vector<int> clusters(view_.meshEntities(view_.elementDimension()).size());
    int count = 0;
    for (std::size_t element = 0; element < clusters.size(); ++element) {
        const std::size_t first = joined_.find(element); // the smallest of the cluster
        clusters[element] = first == element ? count++ : clusters[first];
    }
    return clusters;
}

/// Of replicas the elements: those are all that there is at their faces.
void KeptInterfaces::findPairs()
{
    for (const Twin& twin : twinsOf(view_.model())) {
        if (twin.relation == QLatin1String("replica")) {
            if (twin.original->dimension() == view_.elementDimension()) {
                pairs_.push_back(
                    {twin.original, twin.copy, byLink(AttributeType::NewMotionVertex)});
            }
        } else if (twin.relation == QLatin1String("shell twin")) {
            pairs_.push_back({twin.original, twin.copy, byLink(AttributeType::ShellVertex)});
        } else {
            pairs_.push_back({twin.original, twin.copy, byPlace(twin.copy)});
        }
    }
}

void KeptInterfaces::findPeriodicPairs()
{
    QMap<int, std::vector<const ModelEntity*>> faces;
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        const int pair = intOf(face->attributes(), AttributeType::PeriodicPairId);
        if (pair != 0) {
            faces[pair].push_back(face);
        }
    }
    for (const std::vector<const ModelEntity*>& all : faces) {
        for (std::size_t i = 1; i < all.size(); ++i) {
            pairs_.push_back({all[i - 1], all[i], byTie(VertexTies::periodic())});
        }
    }
}

void KeptInterfaces::findExtrudedPairs()
{
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        const ModelEntity* const partner = view_.model().entity(
            view_.faceDimension(), intOf(face->attributes(), AttributeType::ExtrudedFace));
        if (partner) {
            pairs_.push_back({face, partner, byTie(VertexTies::extruded())});
        }
    }
}

void KeptInterfaces::findChildren(int dimension)
{
    const std::vector<MeshEntity*>& entities = view_.meshEntities(dimension);
    for (std::size_t i = 0; i < entities.size(); ++i) {
        const ModelEntity* const parent = entities[i]->parent();
        const auto found = children_.find(parent);
        if (found != children_.end() && parent->dimension() == dimension) {
            found->push_back(static_cast<int>(i));
        }
    }
}

void KeptInterfaces::findElements()
{
    const int dimension = view_.faceDimension();
    const VertexLists& lists = view_.vertexLists(dimension);
    ElementSides sides(view_);
    for (const ElementSides::Part& part : sides.parts()) {
        sides.collect(part);
        for (auto it = children_.cbegin(); it != children_.cend(); ++it) {
            if (it.key()->dimension() != dimension) {
                continue;
            }
            for (const int meshFace : it.value()) {
                const std::span<const int> vertices = lists.of(place(meshFace));
                if (!ElementCheck::isWellFormed(dimension, vertices)) {
                    continue;
                }
                const ElementSides::Key key = ElementSides::keyOf(vertices);
                if (!part.contains(key.front())) {
                    continue;
                }
                for (const ElementSides::Side& side : sides.find(key)) {
                    elements_[meshFace].push_back(static_cast<int>(side.element()));
                }
            }
        }
    }
}

void KeptInterfaces::join(const Pair& pair)
{
    const int dimension = pair.first->dimension();
    const VertexLists& lists = view_.vertexLists(dimension);
    std::map<std::vector<int>, int> counterparts;
    for (const int entity : children_.value(pair.second)) {
        const std::span<const int> vertices = lists.of(place(entity));
        counterparts.emplace(sorted({vertices.begin(), vertices.end()}), entity);
    }
    for (const int entity : children_.value(pair.first)) {
        std::vector<int> partners;
        for (const int vertex : lists.of(place(entity))) {
            partners.push_back(pair.partnerOf(vertex));
        }
        const auto counterpart = counterparts.find(sorted(partners));
        if (counterpart == counterparts.end()) {
            joinAll(
                elementsAt(children_.value(pair.first), children_.value(pair.second), dimension));
            return;
        }
        joinAll(elementsAt({entity}, {counterpart->second}, dimension));
    }
}

void KeptInterfaces::joinAll(const std::vector<int>& elements)
{
    for (const int element : elements) {
        joined_.join(place(elements.front()), place(element));
    }
}

std::vector<int> KeptInterfaces::elementsAt(std::vector<int> some, const std::vector<int>& others,
                                            int dimension) const
{
    some.insert(some.end(), others.begin(), others.end());
    if (dimension == view_.elementDimension()) {
        return some;
    }
    std::vector<int> elements;
    for (const int meshFace : some) {
        const std::vector<int> at = elements_.value(meshFace);
        elements.insert(elements.end(), at.begin(), at.end());
    }
    return elements;
}

KeptInterfaces::PartnerOf KeptInterfaces::byPlace(const ModelEntity* other) const
{
    std::map<std::array<double, 3>, int> there;
    for (const MeshEntity* vertex : CaseView::verticesOn(*other)) {
        there.emplace(coordinates(vertex->centroid()), vertices_.find(vertex->id()));
    }
    return [this, there](int vertex) {
        const auto found = there.find(coordinates(view_.points()[place(vertex)]));
        return found == there.end() ? -1 : found->second;
    };
}

KeptInterfaces::PartnerOf KeptInterfaces::byLink(const AttributeType& link) const
{
    return [this, link](int vertex) { return linkedPartner(vertex, link); };
}

KeptInterfaces::PartnerOf KeptInterfaces::byTie(const VertexTies& ties) const
{
    return [this, ties](int vertex) { return tiedPartner(vertex, ties); };
}

/// A vertex on the rim of a shell is that of both its faces.
int KeptInterfaces::linkedPartner(int vertex, const AttributeType& link) const
{
    const AttributeMap& attributes = view_.meshEntities(0)[place(vertex)]->attributes();
    return attributes.contains(link) ? vertices_.find(intOf(attributes, link)) : vertex;
}

/// A vertex on the axis of a rotation is that of both sides.
int KeptInterfaces::tiedPartner(int vertex, const VertexTies& ties) const
{
    MeshEntity& entity = *view_.meshEntities(0)[place(vertex)];
    if (!ties.isTied(entity) || !ties.fault(view_.mesh(), entity).isEmpty()) {
        return vertex;
    }
    const MeshEntity& partner = ties.entityOf(view_.mesh(), entity);
    if (partner.dimension() == 0) {
        return vertices_.find(partner.id());
    }
    const QVariantList weights = entity.attributes().value(ties.weightsType(), {}).toList();
    for (qsizetype i = 0; i < weights.size(); ++i) {
        if (weights.at(i).toDouble() >= wholeWeight) {
            return vertices_.find(partner.adjacencyAt(0, static_cast<int>(i))->id());
        }
    }
    return -1;
}

} // namespace Ovra::GeoTool
