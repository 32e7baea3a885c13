#include "CgnsExport.h"
#include "MissingFeature.h"

namespace Ovra::GeoTool
{

void requireCgns()
{
    throw missingFeature(QStringLiteral("CGNS"), QStringLiteral("OVRA_WITH_CGNS"));
}

void writeCgns(const ExportJob&)
{
    requireCgns();
}

} // namespace Ovra::GeoTool
