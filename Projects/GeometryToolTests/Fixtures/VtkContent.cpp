#include "VtkContent.h"

#include <QFile>

#include <vtkCellData.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkFieldData.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkStringArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtkXMLPUnstructuredGridReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLUnstructuredGridReader.h>

namespace VtkContent
{

namespace
{

QString firstRowOf(vtkAbstractArray& array)
{
    auto* const numbers = vtkDataArray::SafeDownCast(&array);
    QStringList texts;
    for (int i = 0; i < array.GetNumberOfComponents() && array.GetNumberOfTuples() > 0; ++i) {
        texts += numbers ? textOf(numbers->GetComponent(0, i))
                         : QString::fromStdString(array.GetVariantValue(i).ToString());
    }
    return texts.join(QLatin1Char(' '));
}

Field fieldOf(vtkAbstractArray& array)
{
    Field field;
    field.components = static_cast<std::size_t>(array.GetNumberOfComponents());
    if (auto* const numbers = vtkDataArray::SafeDownCast(&array)) {
        for (vtkIdType i = 0; i < numbers->GetNumberOfValues(); ++i) {
            const int components = numbers->GetNumberOfComponents();
            field.numbers.push_back(
                numbers->GetComponent(i / components, static_cast<int>(i % components)));
        }
    } else if (auto* const texts = vtkStringArray::SafeDownCast(&array)) {
        for (vtkIdType i = 0; i < texts->GetNumberOfValues(); ++i) {
            field.texts += QString::fromStdString(texts->GetValue(i));
        }
    }
    return field;
}

Rows rowsOf(vtkFieldData& data)
{
    Rows rows;
    rows.count = static_cast<std::size_t>(data.GetNumberOfTuples());
    for (int i = 0; i < data.GetNumberOfArrays(); ++i) {
        vtkAbstractArray& array = *data.GetAbstractArray(i);
        rows.fields.insert(QString::fromUtf8(array.GetName()), fieldOf(array));
    }
    return rows;
}

template <typename Reader>
Grid readBy(const QString& path)
{
    vtkNew<Reader> reader;
    reader->SetFileName(QFile::encodeName(path).constData());
    reader->Update();
    return {rowsOf(*reader->GetOutput()->GetCellData()),
            rowsOf(*reader->GetOutput()->GetPointData())};
}

Piece pieceOf(vtkDataSet* data, const QString& name)
{
    Piece piece;
    piece.name = name;
    if (!data) {
        return piece;
    }
    piece.cells = data->GetNumberOfCells();
    for (int i = 0; i < data->GetCellData()->GetNumberOfArrays(); ++i) {
        piece.cellFields += QString::fromUtf8(data->GetCellData()->GetAbstractArray(i)->GetName());
    }
    for (int i = 0; i < data->GetFieldData()->GetNumberOfArrays(); ++i) {
        vtkAbstractArray* const array = data->GetFieldData()->GetAbstractArray(i);
        piece.facts.insert(QString::fromUtf8(array->GetName()), firstRowOf(*array));
    }
    return piece;
}

QString nameOf(vtkMultiBlockDataSet& group, unsigned block)
{
    return QString::fromUtf8(group.GetMetaData(block)->Get(vtkCompositeDataSet::NAME()));
}

} // namespace

std::vector<double> Rows::numbers(const QString& name, std::size_t row) const
{
    const auto field = fields.find(name);
    if (field == fields.end() || field->numbers.size() < (row + 1) * field->components) {
        return {};
    }
    const auto begin =
        field->numbers.begin() + static_cast<std::ptrdiff_t>(row * field->components);
    return {begin, begin + static_cast<std::ptrdiff_t>(field->components)};
}

double Rows::number(const QString& name, std::size_t row) const
{
    const std::vector<double> all = numbers(name, row);
    return all.empty() ? 0.0 : all.front();
}

QString Rows::text(const QString& name, std::size_t row) const
{
    if (isText(name)) {
        return fields.value(name).texts.value(static_cast<qsizetype>(row));
    }
    QStringList texts;
    for (const double number : numbers(name, row)) {
        texts += textOf(number);
    }
    return texts.join(QLatin1Char(' '));
}

QString textOf(double number)
{
    return QString::number(number, 'g', 17);
}

Grid gridOf(const QString& path)
{
    if (path.endsWith(QLatin1String(".vtp"))) {
        return readBy<vtkXMLPolyDataReader>(path);
    }
    return path.endsWith(QLatin1String(".pvtu")) ? readBy<vtkXMLPUnstructuredGridReader>(path)
                                                 : readBy<vtkXMLUnstructuredGridReader>(path);
}

QMap<QString, QList<Piece>> blocksOf(const QString& path)
{
    vtkNew<vtkXMLMultiBlockDataReader> reader;
    reader->SetFileName(QFile::encodeName(path).constData());
    reader->Update();
    QMap<QString, QList<Piece>> blocks;
    auto* const root = vtkMultiBlockDataSet::SafeDownCast(reader->GetOutputDataObject(0));
    for (unsigned i = 0; root && i < root->GetNumberOfBlocks(); ++i) {
        auto* const group = vtkMultiBlockDataSet::SafeDownCast(root->GetBlock(i));
        for (unsigned j = 0; group && j < group->GetNumberOfBlocks(); ++j) {
            blocks[nameOf(*root, i)] +=
                pieceOf(vtkDataSet::SafeDownCast(group->GetBlock(j)), nameOf(*group, j));
        }
    }
    return blocks;
}

} // namespace VtkContent
