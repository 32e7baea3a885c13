#include "CaseImport.h"
#include "MissingFeature.h"

namespace Ovra::GeoTool
{

void requireImport()
{
    throw missingFeature(QStringLiteral("Gmsh"), QStringLiteral("OVRA_WITH_GMSH"));
}

void importCase(const ImportJob&)
{
    requireImport();
}

} // namespace Ovra::GeoTool
