#include "PartExport.h"

#include "CaseView.h"
#include "ExportJob.h"
#include "FieldArrays.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "VtkFile.h"

#include <QFile>
#include <QXmlStreamWriter>

#include <vtkCellData.h>
#include <vtkDataSetAttributes.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

namespace
{

const QString ghostArray = QStringLiteral("vtkGhostType");

/// The name of a type in VTK's XML formats.
QString typeName(int type)
{
    switch (type) {
    case VTK_UNSIGNED_CHAR:
        return QStringLiteral("UInt8");
    case VTK_INT:
        return QStringLiteral("Int32");
    case VTK_DOUBLE:
        return QStringLiteral("Float64");
    default:
        return QStringLiteral("String");
    }
}

void writeArray(QXmlStreamWriter& xml, vtkAbstractArray& array)
{
    xml.writeEmptyElement(array.GetDataType() == VTK_STRING ? QStringLiteral("PArray")
                                                            : QStringLiteral("PDataArray"));
    xml.writeAttribute(QStringLiteral("type"), typeName(array.GetDataType()));
    if (array.GetName()) {
        xml.writeAttribute(QStringLiteral("Name"), QString::fromUtf8(array.GetName()));
    }
    xml.writeAttribute(QStringLiteral("NumberOfComponents"),
                       QString::number(array.GetNumberOfComponents()));
}

void writeArrays(QXmlStreamWriter& xml, const QString& element, vtkFieldData& data)
{
    xml.writeStartElement(element);
    for (int i = 0; i < data.GetNumberOfArrays(); ++i) {
        writeArray(xml, *data.GetAbstractArray(i));
    }
    xml.writeEndElement();
}

} // namespace

PartExport::PartExport(const ExportJob& job)
    : job_(job)
    , partition_(job.view, job.options, job.progress)
    , folder_(job)
    , grid_(job.view)
{
}

void PartExport::write()
{
    job_.progress.phase(QStringLiteral("writing the parts"));
    QStringList files;
    vtkSmartPointer<vtkUnstructuredGrid> piece;
    for (int part = 0; part < partition_.count(); ++part) {
        const QString file = QStringLiteral("part_%1.vtu").arg(part);
        piece = pieceOf(part);
        folder_.write(file, [&](QFile& opened) { VtkFile::write(*piece, opened); });
        files += folder_.reference(file);
        job_.progress.update(part + 1, partition_.count(), QStringLiteral("parts"));
    }
    writeIndex(*piece, files);
    partition_.tell(job_);
}

vtkSmartPointer<vtkUnstructuredGrid> PartExport::pieceOf(int part)
{
    CaseGrid::Selection cells = partition_.elementsOf(part);
    const CaseGrid::Selection& ghosts = partition_.ghostsOf(part);
    cells.insert(cells.end(), ghosts.begin(), ghosts.end());
    vtkSmartPointer<vtkUnstructuredGrid> piece =
        grid_.elements(cells, job_.view.modelEntities(job_.view.elementDimension()));
    addPart(*piece, part, cells);
    return piece;
}

void PartExport::addPart(vtkUnstructuredGrid& piece, int part, const CaseGrid::Selection& cells)
{
    FieldArrays cellArrays(*piece.GetCellData(), cells.size());
    cellArrays.addIntegers(QStringLiteral("part"),
                           [&](std::size_t i) { return partition_.partOf(cells[i]); });
    cellArrays.addBytes(ghostArray, [&](std::size_t i) {
        return partition_.partOf(cells[i]) == part ? 0 : vtkDataSetAttributes::DUPLICATECELL;
    });
    const std::vector<int> vertices = grid_.verticesOf(cells);
    FieldArrays pointArrays(*piece.GetPointData(), vertices.size());
    pointArrays.addBytes(ghostArray, [&](std::size_t i) {
        return partition_.ownerOf(vertices[i]) == part ? 0 : vtkDataSetAttributes::DUPLICATEPOINT;
    });
}

void PartExport::writeIndex(vtkUnstructuredGrid& piece, const QStringList& files) const
{
    QXmlStreamWriter xml(&job_.files.add(job_.path));
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("VTKFile"));
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("PUnstructuredGrid"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    xml.writeAttribute(QStringLiteral("byte_order"), QStringLiteral("LittleEndian"));
    xml.writeStartElement(QStringLiteral("PUnstructuredGrid"));
    xml.writeAttribute(QStringLiteral("GhostLevel"), QStringLiteral("1"));
    writeArrays(xml, QStringLiteral("PPointData"), *piece.GetPointData());
    writeArrays(xml, QStringLiteral("PCellData"), *piece.GetCellData());
    xml.writeStartElement(QStringLiteral("PPoints"));
    writeArray(xml, *piece.GetPoints()->GetData());
    xml.writeEndElement();
    for (const QString& file : files) {
        xml.writeEmptyElement(QStringLiteral("Piece"));
        xml.writeAttribute(QStringLiteral("Source"), file);
    }
    xml.writeEndDocument();
}

} // namespace Ovra::GeoTool
