#include "MissingFeature.h"
#include "VtkExport.h"

namespace Ovra::GeoTool
{

void requireVtk()
{
    throw missingFeature(QStringLiteral("VTK"), QStringLiteral("OVRA_WITH_VTK"));
}

void writeVtu(const ExportJob&)
{
    requireVtk();
}

void writePvtu(const ExportJob&)
{
    requireVtk();
}

void writeVtp(const ExportJob&)
{
    requireVtk();
}

void writeVtm(const ExportJob&)
{
    requireVtk();
}

} // namespace Ovra::GeoTool
