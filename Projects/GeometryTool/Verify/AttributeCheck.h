#pragma once

#include "AttributeType.h"
#include "FindingSink.h"

#include <functional>

class QVariant;

namespace Ovra::Geo
{
class AttributeMap;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Looks at each attribute by itself: that its tag is known and its value of the type, and
/// of the range, that the library reads.
class AttributeCheck
{
public:
    static void run(const CaseView& view, FindingSink& sink);

    /// \brief What is wrong with a value of material_type, "has the material_type ..."; empty for
    /// one that the library knows.
    static QString materialFault(const QString& name);

private:
    using Report = std::function<void(FindingKind, const FindingSink::Text&)>;

    static void checkMap(const Geo::AttributeMap& map, const Report& report);
    static void checkValue(const Geo::AttributeType& type, const QVariant& value,
                           const Report& report);
    static void checkMaterial(const QVariant& value, const Report& report);
};

} // namespace Ovra::GeoTool
