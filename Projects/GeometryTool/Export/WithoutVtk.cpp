#include "MissingFeature.h"
#include "VtkExport.h"

namespace Ovra::GeoTool
{

ModuleLoading requireVtk()
{
    throw missingFeature(QStringLiteral("VTK"), QStringLiteral("OVRA_WITH_VTK"));
}

void writeVtu(const ExportJob&)
{
    static_cast<void>(requireVtk());
}

void writePvtu(const ExportJob&)
{
    static_cast<void>(requireVtk());
}

void writeVtp(const ExportJob&)
{
    static_cast<void>(requireVtk());
}

void writeVtm(const ExportJob&)
{
    static_cast<void>(requireVtk());
}

} // namespace Ovra::GeoTool
