#pragma once

#include "AttributeRule.h"

#include <QString>

#include <string>
#include <vector>

namespace Ovra::Geo
{
class AttributeMap;
}

namespace Ovra::GeoTool
{

/// \brief The value of one entity in an AttributeColumn.
struct ColumnValue
{
    std::vector<double> numbers; ///< as many as the column has components; none if it is of text
    std::string text;            ///< UTF-8, if it is of text
    int count = 0;               ///< of a list, before it was filled up
    double sum = 0;              ///< of a list
};

/// \brief An attribute of several entities as a column of a table, of one type for all of them.
///
/// - Numbers, truth values, vectors (3) and matrices (9, row by row) have as many components as they
///   need. Values of several types become integers, reals or texts, whatever takes all of them.
/// - A list has as many components as the longest one, behind which it is filled up as if they were
///   absent; where one is of more than eight, all are text, their items parted by blanks.
/// - What an entity lacks is 0, false or an empty text, and for reals no number (NaN).
class AttributeColumn
{
public:
    enum class Kind
    {
        Boolean,
        Integer,
        Real,
        Text
    };

    static constexpr qsizetype MostComponents = 8;

    explicit AttributeColumn(const Geo::AttributeType& type);

    /// \brief Widens the column until it takes \p value.
    void include(const QVariant& value);

    const Geo::AttributeType& type() const { return type_; }
    Kind kind() const;
    int components() const;
    bool isList() const { return isListOf(value_); }
    bool isListOfReals() const { return value_ == Value::RealList; }

    /// \brief \p variant, which has been included, as a value of this column.
    ColumnValue valueOf(const QVariant& variant) const;

    /// \brief What stands for an entity that lacks the attribute.
    ColumnValue absent() const;

private:
    using Value = AttributeRule::Value;

    static bool isListOf(Value value);
    Value narrowest(const QVariant& variant) const;
    static Value wider(Value a, Value b);
    bool isText() const { return kind() == Kind::Text; }

    Geo::AttributeType type_;
    Value value_ = Value::Any; ///< nothing included yet
    qsizetype longest_ = 1;    ///< of the lists
};

/// \brief The columns of all attributes that stand on some entities, by tag.
class AttributeColumns
{
public:
    void include(const Geo::AttributeMap& attributes);

    /// \brief In the order of the attributes' tags.
    std::vector<AttributeColumn> sorted() const;

private:
    std::vector<AttributeColumn> columns_;
};

} // namespace Ovra::GeoTool
