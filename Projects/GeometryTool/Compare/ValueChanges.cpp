#include "ValueChanges.h"

#include "ValueText.h"

namespace Ovra::GeoTool
{

void ValueChanges::compare(const QString& what, const QVariant& a, const QVariant& b)
{
    if (!closeness_.areClose(a, b)) {
        const auto [inA, inB] = ValueText::ofBoth(a, b);
        changes_.push_back({what, inA, inB});
    }
}

} // namespace Ovra::GeoTool
