#include "GmshExport.h"
#include "MissingFeature.h"

namespace Ovra::GeoTool
{

ModuleLoading requireGmsh()
{
    throw missingFeature(QStringLiteral("Gmsh"), QStringLiteral("OVRA_WITH_GMSH"));
}

void writeGmsh(const ExportJob&)
{
    static_cast<void>(requireGmsh());
}

} // namespace Ovra::GeoTool
