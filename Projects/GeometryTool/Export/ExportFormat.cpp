#include "ExportFormat.h"

#include "CgnsExport.h"
#include "GmshExport.h"
#include "ToolError.h"
#include "VtkExport.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

const ExportFormat* find(const QString& suffix)
{
    const std::vector<ExportFormat>& formats = ExportFormat::all();
    const auto found = std::find_if(formats.begin(), formats.end(), [&](const auto& format) {
        return format.suffix.compare(suffix, Qt::CaseInsensitive) == 0;
    });
    return found == formats.end() ? nullptr : &*found;
}

template <typename Condition>
QString suffixesOf(Condition condition)
{
    QStringList list;
    for (const ExportFormat& format : ExportFormat::all()) {
        if (condition(format)) {
            list += QLatin1Char('.') + format.suffix;
        }
    }
    return list.join(QStringLiteral(", "));
}

ToolError unknown(const QString& what)
{
    return ToolError(ExitCode::Usage,
                     QStringLiteral("%1; known are %2").arg(what, ExportFormat::suffixes()));
}

} // namespace

const std::vector<ExportFormat>& ExportFormat::all()
{
    static const std::vector<ExportFormat> table = {
        {"vtu", "VTK: the elements", Content::Binary, "pvtu", requireVtk, writeVtu},
        {"pvtu", "VTK: the elements, in parts", Content::Binary, "pvtu", requireVtk, writePvtu,
         false, true},
        {"vtp", "VTK: the mesh faces on model faces", Content::Binary, {}, requireVtk, writeVtp},
        {"vtm",
         "VTK: a block for each model region and face",
         Content::Binary,
         {},
         requireVtk,
         writeVtm,
         false,
         true},
        {"cgns", "CGNS: a zone for each region, or with --one-zone for all", Content::Binary,
         "cgns", requireCgns, writeCgns},
        {"msh", "Gmsh 4.1, binary", Content::Binary, {}, requireGmsh, writeGmsh, true},
        {"msh2", "Gmsh 2.2, text", Content::Text, {}, requireGmsh, writeGmsh, true},
        {"unv", "Universal", Content::Text, {}, requireGmsh, writeGmsh, true},
        {"inp", "Abaqus", Content::Text, {}, requireGmsh, writeGmsh, true},
        {"bdf", "Nastran", Content::Text, {}, requireGmsh, writeGmsh, true},
        {"nas", "Nastran", Content::Text, {}, requireGmsh, writeGmsh, true},
        {"mesh", "Medit", Content::Text, {}, requireGmsh, writeGmsh, true},
        {"su2", "SU2", Content::Text, {}, requireGmsh, writeGmsh},
        {"stl", "STL: the faces", Content::Text, {}, requireGmsh, writeGmsh},
        {"vtk", "legacy VTK, binary", Content::Binary, {}, requireGmsh, writeGmsh},
    };
    return table;
}

const ExportFormat& ExportFormat::ofSuffix(const QString& suffix)
{
    const ExportFormat* const found = find(suffix);
    if (!found) {
        throw unknown(QStringLiteral("no format has the suffix .%1").arg(suffix));
    }
    return *found;
}

const ExportFormat& ExportFormat::ofFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    if (suffix.isEmpty()) {
        throw unknown(QStringLiteral("the output %1 has no suffix to tell its format; give it one "
                                     "or name the format with --format")
                          .arg(path));
    }
    return ofSuffix(suffix);
}

QString ExportFormat::suffixes()
{
    return suffixesOf([](const ExportFormat&) { return true; });
}

QString ExportFormat::suffixesWithParts()
{
    return suffixesOf([](const ExportFormat& format) { return format.hasParts(); });
}

} // namespace Ovra::GeoTool
