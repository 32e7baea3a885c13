#include "VtkContent.h"

#include <QFile>

#include <vtkCellData.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSet.h>
#include <vtkFieldData.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtkXMLUnstructuredGridReader.h>

namespace VtkContent
{

namespace
{

QString firstRowOf(vtkAbstractArray& array)
{
    QStringList texts;
    for (int i = 0; i < array.GetNumberOfComponents() && array.GetNumberOfTuples() > 0; ++i) {
        texts += QString::fromStdString(array.GetVariantValue(i).ToString());
    }
    return texts.join(QLatin1Char(' '));
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

Piece gridOf(const QString& path)
{
    vtkNew<vtkXMLUnstructuredGridReader> reader;
    reader->SetFileName(QFile::encodeName(path).constData());
    reader->Update();
    return pieceOf(reader->GetOutput(), QString());
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
