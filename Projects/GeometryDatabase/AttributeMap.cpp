#include "AttributeMap.h"

namespace Ovra::Geo
{

void AttributeMap::insert(const AttributeType& type, const QVariant& value)
{
    map_.insert(type, value);
}

void AttributeMap::remove(const AttributeType& type)
{
    map_.remove(type);
}

void AttributeMap::clear()
{
    map_.clear();
}

bool AttributeMap::contains(const AttributeType& type) const
{
    return map_.contains(type);
}

QVariant AttributeMap::value(const AttributeType& type, const QVariant& defaultValue) const
{
    return map_.value(type, defaultValue);
}

int AttributeMap::count() const
{
    return static_cast<int>(map_.size());
}

QList<AttributeType> AttributeMap::types() const
{
    return map_.keys();
}

} // namespace Ovra::Geo
