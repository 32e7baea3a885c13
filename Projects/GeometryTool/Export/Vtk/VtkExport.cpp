#include "VtkExport.h"

#include "HostModule.h"

namespace Ovra::GeoTool
{

struct ExportJob;

namespace
{

HostModule& vtkModule()
{
    static HostModule module(QStringLiteral("ovrageo-vtk.so"),
                             QStringLiteral("writes the files of VTK"),
                             QStringLiteral("OVRA_WITH_VTK"));
    return module;
}

void write(const char* function, const ExportJob& job)
{
    vtkModule().function<void(const ExportJob&)>(function)(job);
}

} // namespace

ModuleLoading requireVtk()
{
    return vtkModule().load();
}

void writeVtu(const ExportJob& job)
{
    write("ovrageo_write_vtu", job);
}

void writePvtu(const ExportJob& job)
{
    write("ovrageo_write_pvtu", job);
}

void writeVtp(const ExportJob& job)
{
    write("ovrageo_write_vtp", job);
}

void writeVtm(const ExportJob& job)
{
    write("ovrageo_write_vtm", job);
}

} // namespace Ovra::GeoTool
