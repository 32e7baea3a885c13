#include "LinkTarget.h"

#include "AttributeMap.h"
#include "AttributeRule.h"
#include "CaseView.h"
#include "IntAttribute.h"
#include "VertexTies.h"

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Names = AttributeRule::Names;
using Owner = EntityName::Owner;

const std::array<VertexTies, 2>& allTies()
{
    static const std::array<VertexTies, 2> ties = {VertexTies::periodic(), VertexTies::extruded()};
    return ties;
}

} // namespace

bool LinkTarget::isLink(const AttributeType& type)
{
    for (const VertexTies& ties : allTies()) {
        if (type == ties.idType() || type == ties.dimensionType()) {
            return true;
        }
    }
    return AttributeRule::of(type).names != Names::Nothing;
}

std::optional<LinkTarget> LinkTarget::of(const AttributeType& type, const AttributeMap& attributes,
                                         int dimension, const CaseView& view)
{
    for (const VertexTies& ties : allTies()) {
        if (type == ties.idType()) {
            return LinkTarget{Owner::Mesh, intOf(attributes, ties.dimensionType(), -1)};
        }
    }
    switch (AttributeRule::of(type).names) {
    case Names::MeshVertex:
        return LinkTarget{Owner::Mesh, 0};
    case Names::ModelRegion:
        return LinkTarget{Owner::Model, view.elementDimension()};
    case Names::ModelFace: // an extruded face is paired with its like, whatever a face is
        return LinkTarget{Owner::Model,
                          type == AttributeType::ExtrudedFace ? dimension : view.faceDimension()};
    default:
        return std::nullopt;
    }
}

} // namespace Ovra::GeoTool
