#include "CaseImport.h"

#include "HostModule.h"

namespace Ovra::GeoTool
{

namespace
{

HostModule& importModule()
{
    static HostModule module(QStringLiteral("ovrageo-import.so"),
                             QStringLiteral("imports geometry and meshes"),
                             QStringLiteral("OVRA_WITH_GMSH"));
    return module;
}

} // namespace

void requireImport()
{
    importModule();
}

void importCase(const ImportJob& job)
{
    importModule().function<void(const ImportJob&)>("ovrageo_import")(job);
}

} // namespace Ovra::GeoTool
