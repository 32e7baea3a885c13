#include "TwinSides.h"

#include "CaseView.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "Twins.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

TwinSides::TwinSides(const CaseView& view)
    : view_(view)
{
    for (const Twin& twin : twinsOf(view.model())) {
        Relation& relation =
            relationOf(QString(twin.relation).replace(QLatin1Char(' '), QLatin1Char('_')));
        relation.dimension = std::max(relation.dimension, twin.original->dimension());
        relation.ofModel[twin.original] |= Original;
        relation.ofModel[twin.copy] |= Copy;
    }
    std::sort(relations_.begin(), relations_.end(),
              [](const Relation& a, const Relation& b) { return a.name < b.name; });
    for (Relation& relation : relations_) {
        relation.ofVertices.assign(view.meshEntities(0).size(), None);
        for (int dimension = view.faceDimension(); dimension <= relation.dimension; ++dimension) {
            markVertices(relation, dimension);
        }
    }
}

int TwinSides::of(const Relation& relation, const ModelEntity* parent, int dimension,
                  std::size_t entity) const
{
    if (dimension <= relation.dimension) {
        return relation.of(parent);
    }
    int side = None;
    for (const int vertex : view_.vertexLists(dimension).of(entity)) {
        side |= relation.ofVertices[static_cast<std::size_t>(vertex)];
    }
    return side;
}

TwinSides::Relation& TwinSides::relationOf(const QString& name)
{
    const auto found = std::find_if(relations_.begin(), relations_.end(),
                                    [&](const Relation& each) { return each.name == name; });
    if (found != relations_.end()) {
        return *found;
    }
    relations_.push_back({name, 0, {}, {}});
    return relations_.back();
}

void TwinSides::markVertices(Relation& relation, int dimension) const
{
    const std::vector<MeshEntity*>& entities = view_.meshEntities(dimension);
    for (std::size_t entity = 0; entity < entities.size(); ++entity) {
        const int side = relation.of(entities[entity]->parent());
        if (side == None) {
            continue;
        }
        for (const int vertex : view_.vertexLists(dimension).of(entity)) {
            relation.ofVertices[static_cast<std::size_t>(vertex)] |= side;
        }
    }
}

} // namespace Ovra::GeoTool
