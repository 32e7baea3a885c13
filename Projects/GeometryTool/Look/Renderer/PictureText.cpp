#include "PictureText.h"

#include <algorithm>
#include <array>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

namespace Ovra::GeoTool
{

namespace
{

double widthOf(vtkTextActor& actor, vtkRenderer& renderer)
{
    std::array<double, 4> bounds = {};
    actor.GetBoundingBox(&renderer, bounds.data());
    return bounds[1] - bounds[0];
}

/// As many whole characters of UTF-8 as there are in the first \p size bytes, and dots.
std::string beginning(const std::string& text, std::size_t size)
{
    const auto isWithin = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    while (size > 0 && size < text.size() && isWithin(text[size])) {
        --size;
    }
    return text.substr(0, size) + "...";
}

} // namespace

vtkSmartPointer<vtkTextActor> textActor(const std::string& text, int size, double grey)
{
    const auto actor = vtkSmartPointer<vtkTextActor>::New();
    actor->SetInput(text.c_str());
    actor->SetTextScaleModeToNone();
    vtkTextProperty& property = *actor->GetTextProperty();
    property.SetFontFamilyToArial();
    property.SetFontSize(size);
    property.SetColor(grey, grey, grey);
    property.SetVerticalJustificationToCentered();
    return actor;
}

void shorten(vtkTextActor& actor, double width, vtkRenderer& renderer)
{
    constexpr double mostBytes = 4.0; // of a character, which is a pixel wide at least
    const std::string text = actor.GetInput();
    const auto most = static_cast<std::size_t>(mostBytes * std::max(width, 0.0));
    if (text.size() <= most && widthOf(actor, renderer) <= width) {
        return;
    }
    std::size_t fits = 0;
    for (std::size_t tooMany = std::min(text.size(), most) + 1; tooMany - fits > 1;) {
        const std::size_t size = fits + (tooMany - fits) / 2;
        actor.SetInput(beginning(text, size).c_str());
        (widthOf(actor, renderer) <= width ? fits : tooMany) = size;
    }
    actor.SetInput(beginning(text, fits).c_str());
}

} // namespace Ovra::GeoTool
