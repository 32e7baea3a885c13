#pragma once

#include "CasePair.h"
#include "LinkTarget.h"

#include <QVariant>

namespace Ovra::Geo
{
class AttributeMap;
class AttributeType;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Compares attributes, and tells of those that name entities as links. Where the same id
/// means nothing, links are equal if what they name is matched.
class AttributeComparison
{
public:
    using Owner = EntityName::Owner;

    /// \brief Compares those of the entities of one dimension.
    /// \param dimension 0 to 3, or EntityName::Whole for the model or the mesh itself
    /// \param pair, differences not owned; must outlive this object
    AttributeComparison(const CasePair& pair, Owner owner, int dimension,
                        CaseDifferences& differences);

    /// \param inA, inB positions of the entities, for what is told of them; -1 for a whole
    void compare(const Geo::AttributeMap& a, const Geo::AttributeMap& b, int inA, int inB) const;

private:
    struct Maps
    {
        const Geo::AttributeMap& a;
        const Geo::AttributeMap& b;
    };

    void compareAll(const Maps& maps, int inA, int inB) const;
    void tell(DifferenceKind kind, const std::vector<Geo::AttributeType>& types, const Maps& maps,
              int inA, int inB) const;
    bool areClose(const Geo::AttributeType& type, const Maps& maps) const;
    bool nameTheSame(const Geo::AttributeType& type, const Maps& maps) const;
    bool isSameEntity(const LinkTarget& targetInA, const QVariant& idInA,
                      const LinkTarget& targetInB, const QVariant& idInB) const;

    const CasePair& pair_;
    Owner owner_;
    int dimension_;
    CaseDifferences& differences_;
};

} // namespace Ovra::GeoTool
