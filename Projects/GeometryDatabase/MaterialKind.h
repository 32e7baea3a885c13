#pragma once

#include "AttributeMap.h"
#include "AttributeType.h"
#include "ModelEntity.h"

#include <QString>
#include <QVariant>

namespace Ovra::Geo
{

/// \brief The attribute AttributeType::MaterialType of \p region as text, empty if it has none. Not
///        for hosts.
inline QString materialKind(const ModelEntity* region)
{
    return region->attributes().value(AttributeType::MaterialType, QVariant()).toString();
}

} // namespace Ovra::Geo
