#include "FieldArrays.h"

#include <optional>
#include <type_traits>
#include <variant>
#include <vtkDoubleArray.h>
#include <vtkFieldData.h>
#include <vtkIntArray.h>
#include <vtkSmartPointer.h>
#include <vtkStringArray.h>
#include <vtkUnsignedCharArray.h>

namespace Ovra::GeoTool
{

namespace
{

template <typename Array>
vtkSmartPointer<Array> arrayOf(const QString& name, std::size_t size, int components = 1)
{
    auto array = vtkSmartPointer<Array>::New();
    array->SetName(name.toUtf8().constData());
    array->SetNumberOfComponents(components);
    array->SetNumberOfTuples(static_cast<vtkIdType>(size));
    return array;
}

template <typename Array, typename Value, typename Result>
void add(vtkFieldData& data, const QString& name, std::size_t size,
         const std::function<Result(std::size_t)>& valueOf)
{
    const vtkSmartPointer<Array> array = arrayOf<Array>(name, size);
    for (std::size_t i = 0; i < size; ++i) {
        array->SetValue(static_cast<vtkIdType>(i), static_cast<Value>(valueOf(i)));
    }
    data.AddArray(array);
}

/// VTK's own ways to set a number of an array of any type take a virtual call for each.
using Numbers = std::variant<vtkSmartPointer<vtkUnsignedCharArray>, vtkSmartPointer<vtkIntArray>,
                             vtkSmartPointer<vtkDoubleArray>>;

Numbers numbersFor(const AttributeColumn& column, const QString& name, std::size_t size)
{
    switch (column.kind()) {
    case AttributeColumn::Kind::Boolean:
        return arrayOf<vtkUnsignedCharArray>(name, size, column.components());
    case AttributeColumn::Kind::Integer:
        return arrayOf<vtkIntArray>(name, size, column.components());
    default:
        return arrayOf<vtkDoubleArray>(name, size, column.components());
    }
}

void setTuple(Numbers& numbers, vtkIdType place, const std::vector<double>& values)
{
    std::visit(
        [&](auto& array) {
            auto* target = array->GetPointer(place * static_cast<vtkIdType>(values.size()));
            for (const double value : values) {
                *target++ = static_cast<std::remove_reference_t<decltype(*target)>>(value);
            }
        },
        numbers);
}

vtkAbstractArray* arrayIn(const Numbers& numbers)
{
    return std::visit([](const auto& array) -> vtkAbstractArray* { return array; }, numbers);
}

/// The arrays of one attribute, in which all values are filled in one walk.
class ColumnArrays
{
public:
    ColumnArrays(const QString& name, const AttributeColumn& column, bool isPartial,
                 std::size_t size)
        : absent_(column.absent())
    {
        if (column.kind() == AttributeColumn::Kind::Text) {
            texts_ = arrayOf<vtkStringArray>(name, size);
        } else {
            numbers_ = numbersFor(column, name, size);
        }
        if (isPartial) {
            given_ = arrayOf<vtkUnsignedCharArray>(name + QStringLiteral("_given"), size);
        }
        if (column.isList()) {
            counts_ = arrayOf<vtkIntArray>(name + QStringLiteral("_count"), size);
        }
        if (column.isListOfReals()) {
            sums_ = arrayOf<vtkDoubleArray>(name + QStringLiteral("_sum"), size);
        }
    }

    void set(vtkIdType place, const ColumnValue* valueOrNone)
    {
        const ColumnValue& value = valueOrNone ? *valueOrNone : absent_;
        if (texts_) {
            texts_->SetValue(place, value.text);
        } else {
            setTuple(*numbers_, place, value.numbers);
        }
        if (given_) {
            given_->SetValue(place, valueOrNone ? 1 : 0);
        }
        if (counts_) {
            counts_->SetValue(place, value.count);
        }
        if (sums_) {
            sums_->SetValue(place, value.sum);
        }
    }

    void addTo(vtkFieldData& data) const
    {
        for (vtkAbstractArray* const array : std::initializer_list<vtkAbstractArray*>{
                 texts_.Get(), numbers_ ? arrayIn(*numbers_) : nullptr, given_.Get(), counts_.Get(),
                 sums_.Get()}) {
            if (array) {
                data.AddArray(array);
            }
        }
    }

private:
    ColumnValue absent_;
    vtkSmartPointer<vtkStringArray> texts_;
    std::optional<Numbers> numbers_;
    vtkSmartPointer<vtkUnsignedCharArray> given_;
    vtkSmartPointer<vtkIntArray> counts_;
    vtkSmartPointer<vtkDoubleArray> sums_;
};

} // namespace

void FieldArrays::addBytes(const QString& name, const std::function<int(std::size_t)>& valueOf)
{
    add<vtkUnsignedCharArray, unsigned char>(data_, name, size_, valueOf);
}

void FieldArrays::addIntegers(const QString& name, const std::function<int(std::size_t)>& valueOf)
{
    add<vtkIntArray, int>(data_, name, size_, valueOf);
}

void FieldArrays::addReals(const QString& name, const std::function<double(std::size_t)>& valueOf)
{
    add<vtkDoubleArray, double>(data_, name, size_, valueOf);
}

void FieldArrays::addTexts(const QString& name,
                           const std::function<std::string(std::size_t)>& valueOf)
{
    add<vtkStringArray, std::string>(data_, name, size_, valueOf);
}

void FieldArrays::addColumn(const QString& name, const AttributeColumn& column, bool isPartial,
                            const std::function<const ColumnValue*(std::size_t)>& valueOf)
{
    ColumnArrays arrays(name, column, isPartial, size_);
    for (std::size_t i = 0; i < size_; ++i) {
        arrays.set(static_cast<vtkIdType>(i), valueOf(i));
    }
    arrays.addTo(data_);
}

} // namespace Ovra::GeoTool
