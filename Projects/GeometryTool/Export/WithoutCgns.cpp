#include "CgnsExport.h"
#include "MissingFeature.h"

namespace Ovra::GeoTool
{

ModuleLoading requireCgns()
{
    throw missingFeature(QStringLiteral("CGNS"), QStringLiteral("OVRA_WITH_CGNS"));
}

void writeCgns(const ExportJob&)
{
    static_cast<void>(requireCgns());
}

} // namespace Ovra::GeoTool
