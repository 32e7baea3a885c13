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
#include "VertexTies.h"

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

} // namespace

KeptInterfaces::KeptInterfaces(const CaseView& view)
    : view_(view)
    , vertices_(positionsOf(view.meshEntities(0)))
    , joined_(view.meshEntities(view.elementDimension()).size())
{
    const int dimension = view.faceDimension();
    findPairs();
    findPeriodicPairs();
    for (const Pair& pair : pairs_) {
        meshFaces_.insert(pair.first, {});
        meshFaces_.insert(pair.second, {});
    }
    const std::vector<MeshEntity*>& meshFaces = view.meshEntities(dimension);
    for (std::size_t i = 0; i < meshFaces.size(); ++i) {
        const auto found = meshFaces_.find(meshFaces[i]->parent());
        if (found != meshFaces_.end()) {
            found->push_back(static_cast<int>(i));
        }
    }
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

void KeptInterfaces::findPairs()
{
    for (const Twin& twin : twinsOf(view_.model())) {
        if (twin.original->dimension() != view_.faceDimension()) {
            continue;
        }
        if (twin.relation == QLatin1String("shell twin")) {
            pairs_.push_back({twin.original, twin.copy, byShellLink()});
        } else if (twin.relation != QLatin1String("replica")) {
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
            pairs_.push_back({all[i - 1], all[i], byTie()});
        }
    }
}

void KeptInterfaces::findElements()
{
    const int dimension = view_.faceDimension();
    const VertexLists& lists = view_.vertexLists(dimension);
    ElementSides sides(view_);
    for (const ElementSides::Range& part : sides.parts()) {
        sides.collect(part);
        for (const std::vector<int>& meshFaces : meshFaces_) {
            for (const int meshFace : meshFaces) {
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
    const VertexLists& lists = view_.vertexLists(view_.faceDimension());
    std::map<ElementSides::Key, int> counterparts;
    for (const int meshFace : meshFaces_.value(pair.second)) {
        counterparts.emplace(ElementSides::keyOf(lists.of(place(meshFace))), meshFace);
    }
    for (const int meshFace : meshFaces_.value(pair.first)) {
        std::vector<int> partners;
        for (const int vertex : lists.of(place(meshFace))) {
            partners.push_back(pair.partnerOf(vertex));
        }
        const auto counterpart = counterparts.find(ElementSides::keyOf(partners));
        if (counterpart == counterparts.end()) {
            std::vector<int> all = elementsAt(pair.first);
            const std::vector<int> others = elementsAt(pair.second);
            all.insert(all.end(), others.begin(), others.end());
            joinAll(all);
            return;
        }
        std::vector<int> both = elements_.value(meshFace);
        const std::vector<int> others = elements_.value(counterpart->second);
        both.insert(both.end(), others.begin(), others.end());
        joinAll(both);
    }
}

void KeptInterfaces::joinAll(const std::vector<int>& elements)
{
    for (const int element : elements) {
        joined_.join(place(elements.front()), place(element));
    }
}

std::vector<int> KeptInterfaces::elementsAt(const ModelEntity* face) const
{
    std::vector<int> elements;
    for (const int meshFace : meshFaces_.value(face)) {
        const std::vector<int> some = elements_.value(meshFace);
        elements.insert(elements.end(), some.begin(), some.end());
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

KeptInterfaces::PartnerOf KeptInterfaces::byShellLink() const
{
    return [this](int vertex) { return shellPartner(vertex); };
}

KeptInterfaces::PartnerOf KeptInterfaces::byTie() const
{
    return [this](int vertex) { return tiedPartner(vertex); };
}

/// A vertex on the rim of a shell is that of both its faces.
int KeptInterfaces::shellPartner(int vertex) const
{
    const AttributeMap& attributes = view_.meshEntities(0)[place(vertex)]->attributes();
    return attributes.contains(AttributeType::ShellVertex)
               ? vertices_.find(intOf(attributes, AttributeType::ShellVertex))
               : vertex;
}

/// A vertex on the axis of a rotation is that of both sides.
int KeptInterfaces::tiedPartner(int vertex) const
{
    static const VertexTies ties = VertexTies::periodic();
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
