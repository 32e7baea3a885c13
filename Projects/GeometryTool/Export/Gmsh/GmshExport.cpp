#include "GmshExport.h"

#include "HostModule.h"

namespace Ovra::GeoTool
{

namespace
{

HostModule& gmshModule()
{
    static HostModule module(QStringLiteral("ovrageo-gmsh.so"),
                             QStringLiteral("writes the files of Gmsh"),
                             QStringLiteral("OVRA_WITH_GMSH"));
    return module;
}

} // namespace

ModuleLoading requireGmsh()
{
    return gmshModule().load();
}

void writeGmsh(const ExportJob& job)
{
    gmshModule().function<void(const ExportJob&)>("ovrageo_write_gmsh")(job);
}

} // namespace Ovra::GeoTool
