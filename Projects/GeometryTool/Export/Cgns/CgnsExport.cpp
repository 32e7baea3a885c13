#include "CgnsExport.h"

#include "HostModule.h"

namespace Ovra::GeoTool
{

namespace
{

HostModule& cgnsModule()
{
    static HostModule module(QStringLiteral("ovrageo-cgns.so"), QStringLiteral("writes CGNS files"),
                             QStringLiteral("OVRA_WITH_CGNS"));
    return module;
}

} // namespace

ModuleLoading requireCgns()
{
    return cgnsModule().load();
}

void writeCgns(const ExportJob& job)
{
    cgnsModule().function<void(const ExportJob&)>("ovrageo_write_cgns")(job);
}

} // namespace Ovra::GeoTool
