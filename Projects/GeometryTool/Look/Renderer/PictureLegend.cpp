#include "PictureLegend.h"

#include "PictureData.h"
#include "PictureText.h"

#include <algorithm>
#include <cmath>
#include <vtkActor2D.h>
#include <vtkCellArray.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

namespace Ovra::GeoTool
{

namespace
{

/// Sizes that all follow from the height of the picture.
struct Layout
{
    explicit Layout(const PictureData& data)
        : textSize(std::clamp(std::min(data.height / 42, data.width / 70), 10, 40))
        , line(1.65 * textSize)
        , margin(1.2 * textSize)
        , top(data.height - 1.8 * textSize)
    {
    }

    int textSize;
    double line;
    double margin;
    double top;
};

/// A square, or a disc for a mark: a polygon with a corner for each step round it.
vtkSmartPointer<vtkActor2D> swatch(const PictureData::LegendEntry& entry, double size)
{
    const int corners = entry.isMark ? 24 : 4;
    const double radius = entry.isMark ? 0.5 * size : 0.6 * size;
    const vtkNew<vtkPoints> points;
    const vtkNew<vtkCellArray> polygon;
    polygon->InsertNextCell(corners);
    for (int corner = 0; corner < corners; ++corner) {
        const double angle = vtkMath::Pi() * (2 * corner + 1) / corners;
        polygon->InsertCellPoint(
            points->InsertNextPoint(radius * std::cos(angle), radius * std::sin(angle), 0));
    }
    const vtkNew<vtkPolyData> shape;
    shape->SetPoints(points);
    shape->SetPolys(polygon);
    const vtkNew<vtkPolyDataMapper2D> mapper;
    mapper->SetInputData(shape);
    const auto actor = vtkSmartPointer<vtkActor2D>::New();
    actor->SetMapper(mapper);
    actor->GetProperty()->SetColor(entry.colour[0], entry.colour[1], entry.colour[2]);
    return actor;
}

/// Not beyond the right margin.
void write(vtkTextActor& text, double x, double y, const Layout& layout, vtkRenderer& renderer)
{
    text.SetPosition(x, y);
    shorten(text, renderer.GetSize()[0] - x - 0.4 * layout.margin, renderer);
    renderer.AddActor2D(&text);
}

} // namespace

void addLegend(const PictureData& data, vtkRenderer& column)
{
    const Layout layout(data);
    double y = layout.top;
    write(*textActor(data.legendTitle, layout.textSize, 0.4), layout.margin, y, layout, column);
    for (const PictureData::LegendEntry& entry : data.legend) {
        y -= layout.line;
        const auto mark = swatch(entry, layout.textSize);
        mark->SetPosition(layout.margin + 0.5 * layout.textSize, y);
        column.AddActor2D(mark);
        write(*textActor(entry.text, layout.textSize), layout.margin + 1.7 * layout.textSize, y,
              layout, column);
    }
}

void addTitle(const PictureData& data, vtkRenderer& view)
{
    const Layout layout(data);
    const auto title = textActor(data.title, layout.textSize * 5 / 4);
    title->GetTextProperty()->BoldOn();
    write(*title, layout.margin, layout.top, layout, view);
    write(*textActor(data.subtitle, layout.textSize, 0.4), layout.margin, layout.top - layout.line,
          layout, view);
}

} // namespace Ovra::GeoTool
