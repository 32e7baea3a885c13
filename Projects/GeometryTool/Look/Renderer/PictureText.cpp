#include "PictureText.h"

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

/// One character of UTF-8, of whatever number of bytes.
void dropLast(std::string& text)
{
    const auto isWithin = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    while (!text.empty() && isWithin(text.back())) {
        text.pop_back();
    }
    if (!text.empty()) {
        text.pop_back();
    }
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
    std::string text = actor.GetInput();
    while (!text.empty() && widthOf(actor, renderer) > width) {
        dropLast(text);
        actor.SetInput((text + "...").c_str());
    }
}

} // namespace Ovra::GeoTool
