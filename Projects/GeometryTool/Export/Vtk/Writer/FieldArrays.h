#pragma once

#include "AttributeColumn.h"

#include <QString>

#include <functional>
#include <vector>

class vtkFieldData;

namespace Ovra::GeoTool
{

/// \brief Adds named arrays to the data of a grid.
class FieldArrays
{
public:
    /// \param size number of values in each array
    FieldArrays(vtkFieldData& data, std::size_t size)
        : data_(data)
        , size_(size)
    {
    }

    /// \param valueOf gives the value at a place; called in order
    void addBytes(const QString& name, const std::function<int(std::size_t)>& valueOf);
    void addIntegers(const QString& name, const std::function<int(std::size_t)>& valueOf);
    void addReals(const QString& name, const std::function<double(std::size_t)>& valueOf);
    void addTexts(const QString& name, const std::function<std::string(std::size_t)>& valueOf);

    /// \brief Adds an attribute, and beside it NAME_given, which is 1 where there is one, if
    /// \p isPartial; NAME_count, if it is a list; NAME_sum, if that is one of reals.
    /// \param valueOf null where there is none
    void addColumn(const QString& name, const AttributeColumn& column, bool isPartial,
                   const std::function<const ColumnValue*(std::size_t)>& valueOf);

private:
    vtkFieldData& data_;
    std::size_t size_;
};

} // namespace Ovra::GeoTool
