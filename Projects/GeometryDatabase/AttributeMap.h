#pragma once

#include "AttributeType.h"

#include <QMap>
#include <QVariant>

namespace Ovra::Geo
{

/// \brief The attributes of a model, a mesh or one of their entities: values under attribute types.
///
/// Which type of value belongs under which key is a convention of AttributeType; nothing is checked
/// here, the validity of the key included. Keys are walked in ascending order of ids.
///
/// An empty map costs one pointer and no allocation, since meshes hold millions of them. Copies
/// share their data until one of them is changed.
class OVRA_GEO_EXPORT AttributeMap
{
public:
    /// \brief Sets the value under \p type, in place of the one that may be there.
    void insert(const AttributeType& type, const QVariant& value);

    /// \brief Removes \p type; nothing happens if it is absent.
    void remove(const AttributeType& type);

    /// \brief Removes everything.
    void clear();

    /// \brief Whether \p type is present, be its value an invalid one.
    bool contains(const AttributeType& type) const;

    /// \brief A copy of the value under \p type, or \p defaultValue if \p type is absent.
    QVariant value(const AttributeType& type, const QVariant& defaultValue) const;

    /// \brief The number of keys.
    int count() const;

    /// \brief Whether there are no keys.
    bool isEmpty() const { return map_.isEmpty(); }

    /// \brief The keys in ascending order of ids, which is the order in which files list them.
    QList<AttributeType> types() const;

private:
    QMap<AttributeType, QVariant> map_;
};

} // namespace Ovra::Geo
