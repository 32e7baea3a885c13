// The module's one function, which the host looks up by its name.

#include "OffscreenWindow.h"
#include "PictureActors.h"
#include "PictureAxes.h"
#include "PictureCamera.h"
#include "PictureData.h"
#include "PictureLegend.h"

#include <algorithm>
#include <exception>
#include <vtkAutoInit.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>
#include <vtkWindowToImageFilter.h>

VTK_MODULE_INIT(vtkRenderingOpenGL2)
VTK_MODULE_INIT(vtkRenderingFreeType)

namespace Ovra::GeoTool
{

namespace
{

/// In parts of the width, where the legend begins: it needs some room in a small picture too.
double columnStartOf(int width)
{
    const double column = std::max(0.22 * width, std::min(170.0, 0.42 * width));
    return 1.0 - column / width;
}

void fill(const PictureData& data, vtkRenderWindow& window)
{
    const double columnStart = columnStartOf(data.width);
    window.SetSize(data.width, data.height);
    window.SetMultiSamples(4);
    window.SetNumberOfLayers(2);
    const vtkNew<vtkRenderer> view;
    const vtkNew<vtkRenderer> above;
    const vtkNew<vtkRenderer> column;
    for (vtkRenderer* renderer : {view.Get(), column.Get()}) {
        renderer->SetBackground(1, 1, 1);
    }
    view->SetViewport(0, 0, columnStart, 1);
    above->SetViewport(0, 0, columnStart, 1);
    column->SetViewport(columnStart, 0, 1, 1);
    above->SetLayer(1);
    above->SetActiveCamera(view->GetActiveCamera());
    for (vtkRenderer* renderer : {view.Get(), column.Get(), above.Get()}) {
        window.AddRenderer(renderer);
    }
    addSurfaces(data, *view);
    addMarks(data, *above);
    placeCamera(data, *view);
    addAxes(data, *view);
    addTitle(data, *view);
    addLegend(data, *column);
}

std::string pngOf(vtkRenderWindow& window)
{
    const vtkNew<vtkWindowToImageFilter> image;
    image->SetInput(&window);
    image->ReadFrontBufferOff();
    image->ShouldRerenderOff();
    const vtkNew<vtkPNGWriter> writer;
    writer->SetInputConnection(image->GetOutputPort());
    writer->WriteToMemoryOn();
    writer->Write();
    vtkUnsignedCharArray* const bytes = writer->GetResult();
    return {reinterpret_cast<const char*>(bytes->GetPointer(0)),
            static_cast<std::size_t>(bytes->GetNumberOfValues())};
}

} // namespace

} // namespace Ovra::GeoTool

extern "C" __attribute__((visibility("default"))) void
ovrageo_draw(const Ovra::GeoTool::PictureData& data, Ovra::GeoTool::PictureAnswer& answer)
{
    // Releases from 9.3 on warn that nothing has colours before it is drawn into memory.
    vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_ERROR);
    try {
        const Ovra::GeoTool::OffscreenContext context;
        const vtkNew<Ovra::GeoTool::OffscreenWindow> window;
        Ovra::GeoTool::fill(data, *window);
        window->Render();
        answer.png = Ovra::GeoTool::pngOf(*window);
        window->Finalize();
    } catch (const std::exception& error) {
        answer.error = error.what();
    }
}
