#include "MissingFeature.h"
#include "PageTemplate.h"

namespace Ovra::GeoTool
{

QByteArray pageTemplate()
{
    throw missingFeature(QStringLiteral("the page of the report"),
                         QStringLiteral("OVRA_WITH_REPORT"));
}

} // namespace Ovra::GeoTool
