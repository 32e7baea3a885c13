#include "PictureAxes.h"

#include "PictureData.h"
#include "PictureText.h"

#include <algorithm>
#include <cmath>
#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCoordinate.h>
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

using Point = PictureData::Point;
using Pixel = std::array<double, 2>;

constexpr double grey = 0.35;

Pixel pixelOf(const Point& place, vtkRenderer& renderer)
{
    const vtkNew<vtkCoordinate> coordinate;
    coordinate->SetCoordinateSystemToWorld();
    coordinate->SetValue(place[0], place[1], place[2]);
    const double* const pixel = coordinate->GetComputedDoubleViewportValue(&renderer);
    return {pixel[0], pixel[1]};
}

struct Box
{
    double left;
    double bottom;
    double right;
    double top;

    bool meets(const Box& other) const
    {
        return left < other.right && other.left < right && bottom < other.top && other.bottom < top;
    }
};

class Axes
{
public:
    Axes(const PictureData& data, vtkRenderer& renderer)
        : data_(data)
        , renderer_(renderer)
        , textSize_(axisTextSize(data))
    {
    }

    void draw()
    {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (data_.high.at(axis) > data_.low.at(axis) && isSeen(axis)) {
                drawAxis(axis);
            }
        }
        for (const Title& title : titles_) { // where the numbers leave room
            writeTitle(title);
        }
    }

private:
    struct Title
    {
        std::string text;
        Pixel middle; ///< of its axis
        Pixel away;
    };

    /// An axis that points at the eye is a dot.
    bool isSeen(std::size_t axis) const
    {
        return std::abs(data_.from.at(axis)) <
               0.98 * std::hypot(data_.from[0], data_.from[1], data_.from[2]);
    }

    /// One end of the edge of the box that an axis lies along: below, in front, and on the left.
    Point startOf(std::size_t axis) const
    {
        Point start = data_.low;
        if (axis == 2) {
            return leftmostCorner();
        }
        const std::size_t other = 1 - axis;
        start.at(other) = data_.from.at(other) > 0 ? data_.high.at(other) : data_.low.at(other);
        return start;
    }

    Point leftmostCorner() const
    {
        Point best = data_.low;
        for (const double x : {data_.low[0], data_.high[0]}) {
            for (const double y : {data_.low[1], data_.high[1]}) {
                const Point corner = {x, y, data_.low[2]};
                best = pixelOf(corner, renderer_)[0] < pixelOf(best, renderer_)[0] ? corner : best;
            }
        }
        return best;
    }

    Pixel centre() const
    {
        Point middle = {};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            middle.at(axis) = (data_.low.at(axis) + data_.high.at(axis)) / 2;
        }
        return pixelOf(middle, renderer_);
    }

    /// Across the line from \p a to \p b, away from the middle of the box.
    Pixel outward(const Pixel& a, const Pixel& b) const
    {
        const double length = std::max(std::hypot(b[0] - a[0], b[1] - a[1]), 1.0);
        const Pixel across = {-(b[1] - a[1]) / length, (b[0] - a[0]) / length};
        const Pixel from = centre();
        const double side = across[0] * (a[0] - from[0]) + across[1] * (a[1] - from[1]);
        return side < 0 ? Pixel{-across[0], -across[1]} : across;
    }

    void drawAxis(std::size_t axis)
    {
        const Point start = startOf(axis);
        Point end = start;
        end.at(axis) = data_.high.at(axis);
        const Pixel a = pixelOf(start, renderer_);
        const Pixel b = pixelOf(end, renderer_);
        const Pixel away = outward(a, b);
        drawLine(a, b);
        titles_.push_back(
            {data_.axisTitles.at(axis), {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2}, away});
        drawNumbers(axis, start, away);
    }

    void drawNumbers(std::size_t axis, Point place, const Pixel& away)
    {
        for (const PictureData::AxisNumber& number : data_.axisNumbers.at(axis)) {
            place.at(axis) = number.at;
            const Pixel pixel = pixelOf(place, renderer_);
            drawLine(pixel, moved(pixel, away, 0.4 * textSize_));
            write(number.text, moved(pixel, away, 0.8 * textSize_), away);
        }
    }

    static Pixel moved(const Pixel& pixel, const Pixel& direction, double by)
    {
        return {pixel[0] + by * direction[0], pixel[1] + by * direction[1]};
    }

    void drawLine(const Pixel& a, const Pixel& b)
    {
        const vtkNew<vtkPoints> points;
        points->InsertNextPoint(a[0], a[1], 0);
        points->InsertNextPoint(b[0], b[1], 0);
        const vtkNew<vtkCellArray> lines;
        lines->InsertNextCell({0, 1});
        const vtkNew<vtkPolyData> mesh;
        mesh->SetPoints(points);
        mesh->SetLines(lines);
        const vtkNew<vtkPolyDataMapper2D> mapper;
        mapper->SetInputData(mesh);
        const vtkNew<vtkActor2D> actor;
        actor->SetMapper(mapper);
        actor->GetProperty()->SetColor(grey, grey, grey);
        actor->GetProperty()->SetLineWidth(1.5F);
        renderer_.AddActor2D(actor);
    }

    /// As near to its axis as nothing is in its way; without the unit where that is too long.
    void writeTitle(const Title& title)
    {
        constexpr double nearest = 1.6;
        constexpr double step = 0.4;
        constexpr int places = 31;
        for (const std::string& text : {title.text, title.text.substr(0, 1)}) {
            for (int place = 0; place < places; ++place) {
                const double distance = nearest + place * step;
                if (write(text, moved(title.middle, title.away, distance * textSize_),
                          title.away)) {
                    return;
                }
            }
        }
    }

    /// A text that grows away from the box; not where another one stands, or outside of the view.
    bool write(const std::string& text, const Pixel& at, const Pixel& away)
    {
        const auto actor = textActor(text, textSize_, grey);
        vtkTextProperty& property = *actor->GetTextProperty();
        property.SetJustification(away[0] < -0.4  ? VTK_TEXT_RIGHT
                                  : away[0] > 0.4 ? VTK_TEXT_LEFT
                                                  : VTK_TEXT_CENTERED);
        property.SetVerticalJustification(away[1] < -0.4  ? VTK_TEXT_TOP
                                          : away[1] > 0.4 ? VTK_TEXT_BOTTOM
                                                          : VTK_TEXT_CENTERED);
        actor->SetPosition(at[0], at[1]);
        const Box box = boxOf(*actor, at);
        const bool isFree =
            isInView(box) && std::none_of(written_.begin(), written_.end(),
                                          [&box](const Box& other) { return box.meets(other); });
        if (isFree) {
            written_.push_back(box);
            renderer_.AddActor2D(actor);
        }
        return isFree;
    }

    /// With the gap that texts keep from one another.
    Box boxOf(vtkTextActor& actor, const Pixel& at) const
    {
        std::array<double, 4> bounds = {};
        actor.GetBoundingBox(&renderer_, bounds.data());
        const double gap = 0.3 * textSize_;
        return {at[0] + bounds[0] - gap, at[1] + bounds[2] - gap, at[0] + bounds[1] + gap,
                at[1] + bounds[3] + gap};
    }

    bool isInView(const Box& box) const
    {
        const int* const size = renderer_.GetSize();
        return box.left >= 0 && box.bottom >= 0 && box.right <= size[0] && box.top <= size[1];
    }

    const PictureData& data_;
    vtkRenderer& renderer_;
    int textSize_;
    std::vector<Title> titles_;
    std::vector<Box> written_;
};

} // namespace

int axisTextSize(const PictureData& data)
{
    return std::clamp(std::min(data.height / 46, data.width / 76), 10, 36);
}

void addAxes(const PictureData& data, vtkRenderer& renderer)
{
    Axes(data, renderer).draw();
}

} // namespace Ovra::GeoTool
