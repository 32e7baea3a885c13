#pragma once

#include "EntityName.h"

#include <optional>

namespace Ovra::Geo
{
class AttributeMap;
class AttributeType;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;

/// \brief What the ids in an attribute are ids of.
struct LinkTarget
{
    EntityName::Owner owner;
    int dimension; ///< any number where a tie is broken

    /// \brief Whether \p type is a link: names an entity, or says of which dimension one is.
    static bool isLink(const Geo::AttributeType& type);

    /// \brief What \p type names; none if it names nothing.
    /// \param attributes which \p type is one of
    /// \param dimension of the entity that has them
    static std::optional<LinkTarget> of(const Geo::AttributeType& type,
                                        const Geo::AttributeMap& attributes, int dimension,
                                        const CaseView& view);
};

} // namespace Ovra::GeoTool
