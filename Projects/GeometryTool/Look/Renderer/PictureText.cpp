#include "PictureText.h"

#include <vtkTextProperty.h>

namespace Ovra::GeoTool
{

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

} // namespace Ovra::GeoTool
