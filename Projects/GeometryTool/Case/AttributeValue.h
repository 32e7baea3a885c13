#pragma once

#include <QJsonValue>
#include <QString>
#include <QVariant>

namespace Ovra::Geo
{
class AttributeType;
}

namespace Ovra::GeoTool
{

/// \brief What the value of an attribute tag has to be.
enum class ValueKind
{
    Any, ///< a number, text, true, false, or a list of these
    Integer,
    Boolean,
    Real,
    Text,
    RealList,
    Vector,
    Matrix,
    FaceId,   ///< an id, or the name of a group of one face
    RegionId, ///< an id, or the name of a group of one region
    FaceList  ///< ids and names of groups
};

/// \brief Takes attribute values out of JSON, and puts them there.
class AttributeValue
{
public:
    /// \brief What a tag holds; Any for a tag that has no fixed type.
    static ValueKind kindOf(const Geo::AttributeType& type);

    /// \brief Whether \p json has the form that \p kind asks for; faces are not looked up.
    static bool fits(const QJsonValue& json, ValueKind kind);

    /// \brief The value of what fits \p kind; invalid where names of faces are to be looked up.
    static QVariant convert(const QJsonValue& json, ValueKind kind);

    /// \brief The value of a tag that is of \p kind, in the form that convert() takes; undefined if
    /// JSON cannot hold it, or it is not of that kind.
    static QJsonValue json(const QVariant& value, ValueKind kind);

    /// \brief What \p kind asks for, in words: "a list of 3 numbers".
    static QString expectation(ValueKind kind);

    /// \brief What \p json is instead, in words: "the text \"1\"".
    static QString description(const QJsonValue& json);
};

} // namespace Ovra::GeoTool
