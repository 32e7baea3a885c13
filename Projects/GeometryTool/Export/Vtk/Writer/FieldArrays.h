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

    /// \brief Places, ascending from 0 on, from each of which to the next the value is the same.
    using Runs = std::vector<std::size_t>;

    /// \param valueOf gives the value at a place; called in order
    void addBytes(const QString& name, const std::function<int(std::size_t)>& valueOf);
    void addIntegers(const QString& name, const std::function<int(std::size_t)>& valueOf);
    void addReals(const QString& name, const std::function<double(std::size_t)>& valueOf);
    void addTexts(const QString& name, const std::function<std::string(std::size_t)>& valueOf);

    /// \param valueOf gives the value from a place of \p runs on; called in order
    void addIntegers(const QString& name, const Runs& runs,
                     const std::function<int(std::size_t)>& valueOf);
    void addTexts(const QString& name, const Runs& runs,
                  const std::function<std::string(std::size_t)>& valueOf);

    /// \brief Adds an attribute, and beside it NAME_given, which is 1 where there is one, if
    /// \p isPartial; NAME_count, if it is a list; NAME_sum, if that is one of reals.
    /// \param valueOf gives the value from a place of \p runs on, null where there is none; called in
    ///                order
    void addColumn(const QString& name, const AttributeColumn& column, bool isPartial,
                   const Runs& runs, const std::function<const ColumnValue*(std::size_t)>& valueOf);

    /// \brief Every place a run of its own.
    Runs places() const;

private:
    vtkFieldData& data_;
    std::size_t size_;
};

} // namespace Ovra::GeoTool
