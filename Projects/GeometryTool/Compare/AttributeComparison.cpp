#include "AttributeComparison.h"

#include "AttributeMap.h"
#include "ValueText.h"

#include <algorithm>
#include <iterator>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

std::vector<AttributeType> typesOf(const AttributeMap& a, const AttributeMap& b)
{
    const QList<AttributeType> inA = a.types();
    const QList<AttributeType> inB = b.types();
    std::vector<AttributeType> types;
    std::set_union(inA.begin(), inA.end(), inB.begin(), inB.end(), std::back_inserter(types));
    return types;
}

/// A list of ids, or the one that there is.
QVariantList idsIn(const QVariant& value)
{
    return value.typeId() == QMetaType::QVariantList ? value.toList() : QVariantList{value};
}

Change changeOf(const AttributeType& type, const AttributeMap& a, const AttributeMap& b)
{
    const QString none = QStringLiteral("none");
    const bool both = a.contains(type) && b.contains(type);
    const QVariant inA = a.value(type, {});
    const QVariant inB = b.value(type, {});
    const auto [textInA, textInB] =
        both ? ValueText::ofBoth(inA, inB) : std::pair(ValueText::of(inA), ValueText::of(inB));
    return {type.isValid() ? type.toString() : QStringLiteral("(unknown)"),
            a.contains(type) ? textInA : none, b.contains(type) ? textInB : none};
}

} // namespace

AttributeComparison::AttributeComparison(const CasePair& pair, Owner owner, int dimension,
                                         CaseDifferences& differences)
    : pair_(pair)
    , owner_(owner)
    , dimension_(dimension)
    , differences_(differences)
{
}

void AttributeComparison::compare(const AttributeMap& a, const AttributeMap& b, int inA,
                                  int inB) const
{
    if (!a.isEmpty() || !b.isEmpty()) {
        compareAll({a, b}, inA, inB);
    }
}

void AttributeComparison::compareAll(const Maps& maps, int inA, int inB) const
{
    std::vector<AttributeType> attributes;
    std::vector<AttributeType> links;
    for (const AttributeType& type : typesOf(maps.a, maps.b)) {
        if (!areClose(type, maps)) {
            (LinkTarget::isLink(type) ? links : attributes).push_back(type);
        }
    }
    tell(DifferenceKind::Attributes, attributes, maps, inA, inB);
    tell(DifferenceKind::Links, links, maps, inA, inB);
}

void AttributeComparison::tell(DifferenceKind kind, const std::vector<AttributeType>& types,
                               const Maps& maps, int inA, int inB) const
{
    if (types.empty()) {
        return;
    }
    differences_.add(kind, partOf(owner_, dimension_), [&] {
        std::vector<Change> changes;
        changes.reserve(types.size());
        for (const AttributeType& type : types) {
            changes.push_back(changeOf(type, maps.a, maps.b));
        }
        return pair_.difference(owner_, dimension_, inA, inB, std::move(changes));
    });
}

bool AttributeComparison::areClose(const AttributeType& type, const Maps& maps) const
{
    if (!maps.a.contains(type) || !maps.b.contains(type)) {
        return false;
    }
    return pair_.match.isByPlace && LinkTarget::of(type, maps.a, dimension_, pair_.a.view())
               ? nameTheSame(type, maps)
               : pair_.closeness.areClose(maps.a.value(type, {}), maps.b.value(type, {}));
}

/// \pre type names entities
bool AttributeComparison::nameTheSame(const AttributeType& type, const Maps& maps) const
{
    const auto targetInA = LinkTarget::of(type, maps.a, dimension_, pair_.a.view());
    const auto targetInB = LinkTarget::of(type, maps.b, dimension_, pair_.b.view());
    const QVariantList inA = idsIn(maps.a.value(type, {}));
    const QVariantList inB = idsIn(maps.b.value(type, {}));
    return std::equal(inA.begin(), inA.end(), inB.begin(), inB.end(),
                      [&](const QVariant& idInA, const QVariant& idInB) {
                          return isSameEntity(*targetInA, idInA, *targetInB, idInB);
                      });
}

/// Of ids that name nothing, equal ones are the same.
bool AttributeComparison::isSameEntity(const LinkTarget& targetInA, const QVariant& idInA,
                                       const LinkTarget& targetInB, const QVariant& idInB) const
{
    if (idInA.metaType() != idInB.metaType() || targetInA.owner != targetInB.owner) {
        return false;
    }
    const Owner owner = targetInA.owner;
    const EntityPosition a{targetInA.dimension,
                           pair_.a.position(owner, targetInA.dimension, idInA.toInt())};
    const EntityPosition b{targetInB.dimension,
                           pair_.b.position(owner, targetInB.dimension, idInB.toInt())};
    const bool areNone = a.isNone() && b.isNone();
    return areNone ? pair_.closeness.areClose(idInA, idInB) : pair_.match.areMatched(owner, a, b);
}

} // namespace Ovra::GeoTool
