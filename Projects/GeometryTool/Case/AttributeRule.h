#pragma once

#include "AttributeType.h"

#include <QString>

#include <optional>
#include <vector>

class QVariant;

namespace Ovra::GeoTool
{

/// \brief What the library stores and expects under one attribute.
struct AttributeRule
{
    enum class Value
    {
        Any, ///< the library only passes it on
        Integer,
        Boolean,
        Real,
        Text,
        IntegerList,
        RealList,
        Vector,
        Matrix
    };

    /// \brief What the integer, or each integer of the list, is the id of.
    enum class Names
    {
        Nothing,
        ModelFace,   ///< an edge in a model without regions
        ModelRegion, ///< a face in a model without regions
        MeshVertex
    };

    Geo::AttributeType type;
    Value value = Value::Any;
    Names names = Names::Nothing;
    std::optional<int> none = 0; ///< the id that means no entity, where there is one

    /// \brief The rule of \p type; an attribute that the library only passes on has Value::Any.
    static const AttributeRule& of(const Geo::AttributeType& type);

    /// \brief The rules of all attributes that name entities, by id of the attribute.
    static const std::vector<AttributeRule>& naming();

    /// \brief True if \p variant is of the type that the rule asks for, or of one that turns into
    /// it without loss: any integer that fits an int, an integer for a real, 0 and 1 for a boolean.
    bool accepts(const QVariant& variant) const;

    /// \brief "an integer", "a list of integers", ...
    QString expectation() const;
};

} // namespace Ovra::GeoTool
