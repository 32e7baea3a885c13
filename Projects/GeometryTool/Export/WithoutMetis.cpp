#include "GraphCut.h"
#include "MissingFeature.h"

namespace Ovra::GeoTool
{

void requireMetis()
{
    throw missingFeature(QStringLiteral("METIS"), QStringLiteral("OVRA_WITH_METIS"));
}

std::vector<int> cutGraph(CutGraph&, int)
{
    requireMetis();
    return {};
}

} // namespace Ovra::GeoTool
