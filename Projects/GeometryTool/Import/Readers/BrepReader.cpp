#include "BrepReader.h"

#include "FiniteBuffer.h"
#include "InputDamage.h"
#include "OpenInput.h"
#include "ToolError.h"

#include <QFile>

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BinTools.hxx>
#include <Standard_Failure.hxx>
#include <Standard_Version.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_ShapeSet.hxx>
#include <TopoDS.hxx>
#include <algorithm>
#include <exception>
#include <gmsh.h>
#include <istream>
#include <iterator>

namespace Ovra::GeoTool
{

namespace
{

bool isTextVersion(const QByteArray& line)
{
    const auto& known = TopTools_ShapeSet::THE_ASCII_VERSIONS;
    return std::any_of(std::begin(known), std::end(known), [&line](const char* version) {
        return version != nullptr && QByteArray(version).trimmed() == line;
    });
}

/// \brief Whether the kernel reads it; it does not list the versions of the binary format.
bool isBinaryVersion(const QByteArray& line)
{
    for (int version = BinTools_FormatVersion_LOWER; version <= BinTools_FormatVersion_UPPER;
         ++version) {
        if (line.startsWith("Open CASCADE Topology V" + QByteArray::number(version))) {
            return true;
        }
    }
    return false;
}

QString textOf(const Standard_Failure& failure)
{
    const QString message = QString::fromUtf8(failure.GetMessageString())
                                .section(QStringLiteral(" : "), -1) // addresses in memory go ahead
                                .simplified();
    const QString kind = QString::fromLatin1(failure.DynamicType()->Name());
    return message.isEmpty() ? kind : message;
}

/// \brief Where the kernel has read up to; empty for the end, where a last number may be cut too.
QString place(const QByteArray& bytes, const FiniteBuffer& buffer, bool isBinary)
{
    if (buffer.isOverrun() || buffer.position() >= bytes.size()) {
        return QString();
    }
    return isBinary ? QStringLiteral("byte %1").arg(buffer.position())
                    : QStringLiteral("line %1").arg(bytes.left(buffer.position()).count('\n') + 1);
}

} // namespace

BrepReader::BrepReader(const QString& path)
    : path_(path)
{
}

void BrepReader::read() const
{
    TopoDS_Shape whole = shape();
    requireSurfaces(whole);
    handOver(whole);
}

QByteArray BrepReader::content() const
{
    QFile file(path_);
    openInput(file);
    return file.readAll();
}

QByteArray BrepReader::header(const QByteArray& content) const
{
    const qsizetype found = content.indexOf("CASCADE Topology V");
    if (found < 0) {
        InputDamage::damaged(path_,
                             QStringLiteral("not a BREP file, or cut off: no line has a version "
                                            "of \"CASCADE Topology\""));
    }
    const qsizetype first = content.lastIndexOf('\n', found) + 1;
    const qsizetype end = content.indexOf('\n', found);
    if (end < 0) {
        InputDamage::cutOff(QFile(path_), QStringLiteral("nothing follows the version"));
    }
    return content.mid(first, end - first).trimmed();
}

bool BrepReader::isBinary(const QByteArray& header) const
{
    if (isTextVersion(header)) {
        return false;
    }
    if (isBinaryVersion(header)) {
        return true;
    }
    throw ToolError(
        ExitCode::Unsuitable,
        QStringLiteral("%1: the geometry kernel, version %2, does not know the version \"%3\"; "
                       "save the file in an older one, or as STEP")
            .arg(path_, QLatin1String(OCC_VERSION_COMPLETE), QString::fromLatin1(header)));
}

TopoDS_Shape BrepReader::shape() const
{
    const QByteArray bytes = content();
    const bool binary = isBinary(header(bytes));
    FiniteBuffer buffer(bytes + '\n'); // a last line need not be ended
    std::istream stream(&buffer);
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    TopoDS_Shape shape;
    try {
        if (binary) {
            BinTools::Read(shape, stream);
        } else {
            BRepTools::Read(shape, stream, BRep_Builder());
        }
    } catch (const Standard_Failure& failure) {
        fail(place(bytes, buffer, binary), textOf(failure));
    } catch (const std::exception&) {
        fail(place(bytes, buffer, binary), QStringLiteral("something else is expected there"));
    }
    if (shape.IsNull()) {
        InputDamage::damaged(path_, QStringLiteral("the geometry kernel finds no shape in it"));
    }
    return shape;
}

void BrepReader::fail(const QString& place, const QString& reason) const
{
    if (place.isEmpty()) {
        InputDamage::cutOff(QFile(path_),
                            QStringLiteral("the geometry kernel asks for more than is there"));
    }
    InputDamage::damaged(
        path_, QStringLiteral("the geometry kernel gives up at %1: %2").arg(place, reason));
}

void BrepReader::requireSurfaces(const TopoDS_Shape& shape) const
{
    int bare = 0;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        bare += BRep_Tool::Surface(TopoDS::Face(faces.Current())).IsNull() ? 1 : 0;
    }
    if (bare > 0) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: triangles alone, without a surface to mesh, make up "
                                       "faces of it, %2 in number; save it as .stl instead")
                            .arg(path_, QString::number(bare)));
    }
}

void BrepReader::handOver(TopoDS_Shape& shape) const
{
    try {
        BRepTools::Clean(shape); // of triangles, which Gmsh would measure in place of the surfaces
        gmsh::vectorpair entities;
        constexpr bool highestDimensionOnly = false;
        gmsh::model::occ::importShapesNativePointer(&shape, entities, highestDimensionOnly);
        gmsh::model::occ::synchronize();
    } catch (const Standard_Failure& failure) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("%1: Gmsh cannot take over its shapes: %2").arg(path_, textOf(failure)));
    }
}

} // namespace Ovra::GeoTool
