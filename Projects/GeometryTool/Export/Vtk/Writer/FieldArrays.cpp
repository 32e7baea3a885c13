#include "FieldArrays.h"

#include <algorithm>
#include <numeric>
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

/// Calls \p action with the first place of each run and the one behind its last.
template <typename Action>
void forEachRun(const FieldArrays::Runs& runs, std::size_t size, Action action)
{
    for (std::size_t i = 0; i < runs.size(); ++i) {
        action(runs[i], i + 1 < runs.size() ? runs[i + 1] : size);
    }
}

template <typename Array, typename Value>
void fill(Array& array, std::size_t begin, std::size_t end, const Value& value)
{
    auto* const first = array.GetPointer(0);
    std::fill(first + begin, first + end, value);
}

template <typename Array, typename Result>
void addRuns(vtkFieldData& data, const QString& name, std::size_t size,
             const FieldArrays::Runs& runs, const std::function<Result(std::size_t)>& valueOf)
{
    const vtkSmartPointer<Array> array = arrayOf<Array>(name, size);
    forEachRun(runs, size, [&](std::size_t begin, std::size_t end) {
        fill(*array, begin, end, valueOf(begin));
    });
    data.AddArray(array);
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

void fillTuples(Numbers& numbers, std::size_t begin, std::size_t end,
                const std::vector<double>& values)
{
    const std::size_t first = begin * values.size();
    std::visit(
        [&](auto& array) {
            auto* target = array->GetPointer(static_cast<vtkIdType>(first));
            using Number = std::remove_reference_t<decltype(*target)>;
            const std::vector<Number> tuple(values.begin(), values.end());
            for (std::size_t place = begin; place < end; ++place) {
                target = std::copy(tuple.begin(), tuple.end(), target);
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

    void fill(std::size_t begin, std::size_t end, const ColumnValue* valueOrNone)
    {
        const ColumnValue& value = valueOrNone ? *valueOrNone : absent_;
        if (texts_) {
            GeoTool::fill(*texts_, begin, end, value.text);
        } else {
            fillTuples(*numbers_, begin, end, value.numbers);
        }
        if (given_) {
            GeoTool::fill(*given_, begin, end, valueOrNone ? 1 : 0);
        }
        if (counts_) {
            GeoTool::fill(*counts_, begin, end, value.count);
        }
        if (sums_) {
            GeoTool::fill(*sums_, begin, end, value.sum);
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

void FieldArrays::addIntegers(const QString& name, const Runs& runs,
                              const std::function<int(std::size_t)>& valueOf)
{
    addRuns<vtkIntArray>(data_, name, size_, runs, valueOf);
}

void FieldArrays::addTexts(const QString& name, const Runs& runs,
                           const std::function<std::string(std::size_t)>& valueOf)
{
    addRuns<vtkStringArray>(data_, name, size_, runs, valueOf);
}

void FieldArrays::addColumn(const QString& name, const AttributeColumn& column, bool isPartial,
                            const Runs& runs,
                            const std::function<const ColumnValue*(std::size_t)>& valueOf)
{
    ColumnArrays arrays(name, column, isPartial, size_);
    forEachRun(runs, size_, [&](std::size_t begin, std::size_t end) {
        arrays.fill(begin, end, valueOf(begin));
    });
    arrays.addTo(data_);
}

FieldArrays::Runs FieldArrays::places() const
{
    Runs runs(size_);
    std::iota(runs.begin(), runs.end(), std::size_t(0));
    return runs;
}

} // namespace Ovra::GeoTool
