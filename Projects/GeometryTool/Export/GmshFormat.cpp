#include "GmshFormat.h"

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

using Numbers = GmshFormat::Numbers;
using Names = GmshFormat::Names;

GmshFormat msh()
{
    GmshFormat format;
    format.suffix = QStringLiteral("msh");
    format.title = QStringLiteral("Gmsh 4.1");
    format.gmshSuffix = format.suffix;
    format.gmshOptions = {{"Mesh.MshFileVersion", 4.1}, {"Mesh.Binary", 1}};
    format.hasEmptyRegions = true;
    format.nameRule.forbidden = QStringLiteral("\"");
    format.hasMaterialGroups = true;
    return format;
}

GmshFormat msh2()
{
    GmshFormat format = msh();
    format.suffix = QStringLiteral("msh2");
    format.title = QStringLiteral("Gmsh 2.2");
    // Where all is saved, an element is written without its group.
    format.gmshOptions = {{"Mesh.MshFileVersion", 2.2}, {"Mesh.Binary", 0}, {"Mesh.SaveAll", 0}};
    format.hasEmptyRegions = false;
    format.hasMaterialGroups = false;
    return format;
}

GmshFormat unv()
{
    GmshFormat format;
    format.suffix = QStringLiteral("unv");
    format.title = QStringLiteral("Universal");
    format.gmshSuffix = format.suffix;
    format.gmshOptions = {{"Mesh.SaveGroupsOfElements", 1}, {"Mesh.SaveGroupsOfNodes", 0}};
    format.lowestDimension = 1;
    format.nameRule.forbidden = QLatin1Char(' ');
    format.nameRule.longest = 80;
    format.nameRule.isShared = true;
    format.groupsAll = false;
    format.hasMaterialGroups = true;
    format.missingKinds = {5};
    format.highestNumber = 999999999; // in 10 columns, the first of which parts it from the last
    return format;
}

GmshFormat inp()
{
    GmshFormat format;
    format.suffix = QStringLiteral("inp");
    format.title = QStringLiteral("Abaqus");
    format.gmshSuffix = format.suffix;
    format.gmshOptions = {{"Mesh.SaveGroupsOfElements", 1}, {"Mesh.SaveGroupsOfNodes", 1}};
    format.lowestDimension = 1;
    format.numbers = Numbers::Counted;
    format.nameRule.forbidden = QStringLiteral(" ,=\"*.");
    format.nameRule.longest = 80;
    format.nameRule.isCaseless = true;
    format.nameRule.isShared = true;
    format.nameRule.reserved = QStringLiteral("(point|line|surface|volume)\\d+");
    format.groupsAll = false;
    format.hasMaterialGroups = true;
    format.missingKinds = {5};
    return format;
}

GmshFormat nastran(const QString& suffix)
{
    GmshFormat format;
    format.suffix = suffix;
    format.title = QStringLiteral("Nastran");
    format.gmshSuffix = QStringLiteral("bdf");
    format.gmshOptions = {{"Mesh.BdfFieldFormat", 2}};
    format.lowestDimension = 1;
    format.names = Names::Lost;
    format.groupsAll = false;
    format.highestNumber = 99999999; // in 8 columns
    return format;
}

GmshFormat medit()
{
    GmshFormat format;
    format.suffix = QStringLiteral("mesh");
    format.title = QStringLiteral("Medit");
    format.gmshSuffix = format.suffix;
    format.lowestDimension = 1;
    format.names = Names::Lost;
    format.groupsAll = false;
    format.missingKinds = {5, 6};
    return format;
}

GmshFormat su2()
{
    GmshFormat format;
    format.suffix = QStringLiteral("su2");
    format.title = QStringLiteral("SU2");
    format.gmshSuffix = format.suffix;
    format.lowestDimension = 1;
    format.hasRegions = false;
    format.numbers = Numbers::Lost;
    format.names = Names::OfBoundaries;
    format.nameRule.forbidden = QStringLiteral(" ,()%");
    return format;
}

GmshFormat vtk()
{
    GmshFormat format;
    format.suffix = QStringLiteral("vtk");
    format.title = QStringLiteral("legacy VTK");
    format.gmshSuffix = format.suffix;
    format.gmshOptions = {{"Mesh.Binary", 1}};
    format.hasRegions = false;
    format.numbers = Numbers::Lost;
    format.names = Names::Lost;
    return format;
}

GmshFormat stl()
{
    GmshFormat format;
    format.suffix = QStringLiteral("stl");
    format.title = QStringLiteral("STL");
    format.gmshSuffix = format.suffix;
    format.gmshOptions = {{"Mesh.Binary", 0}};
    format.lowestDimension = 2;
    format.highestDimension = 2;
    format.hasRegions = false;
    format.numbers = Numbers::Lost;
    format.names = Names::Lost;
    return format;
}

} // namespace

const std::vector<GmshFormat>& GmshFormat::all()
{
    static const std::vector<GmshFormat> table = {msh(),
                                                  msh2(),
                                                  unv(),
                                                  inp(),
                                                  nastran(QStringLiteral("bdf")),
                                                  nastran(QStringLiteral("nas")),
                                                  medit(),
                                                  su2(),
                                                  stl(),
                                                  vtk()};
    return table;
}

const GmshFormat& GmshFormat::ofSuffix(const QString& suffix)
{
    return *std::find_if(all().begin(), all().end(),
                         [&suffix](const GmshFormat& format) { return format.suffix == suffix; });
}

} // namespace Ovra::GeoTool
