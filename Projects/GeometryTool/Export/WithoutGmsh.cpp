#include "GmshExport.h"
#include "MissingFeature.h"

namespace Ovra::GeoTool
{

void requireGmsh()
{
    throw missingFeature(QStringLiteral("Gmsh"), QStringLiteral("OVRA_WITH_GMSH"));
}

void writeGmsh(const ExportJob&)
{
    requireGmsh();
}

} // namespace Ovra::GeoTool
