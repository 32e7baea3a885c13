#include "PictureCamera.h"

#include "PictureAxes.h"
#include "PictureData.h"

#include <algorithm>
#include <cmath>
#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkRenderer.h>

namespace Ovra::GeoTool
{

namespace
{

using Point = PictureData::Point;

constexpr double viewAngle = 24.0; // degrees

/// Of so many pixels of the view; axes and their numbers have the rest.
double usedShare(double pixels, const PictureData& data)
{
    constexpr double border = 4.5; // in heights of the numbers
    return std::clamp(1.0 - 2.0 * border * axisTextSize(data) / pixels, 0.45, 0.78);
}

double dot(const Point& a, const Point& b)
{
    return vtkMath::Dot(a.data(), b.data());
}

/// Directions of the view: to the right, up, and towards the eye.
struct Frame
{
    explicit Frame(const PictureData& data)
        : towards(data.from)
    {
        vtkMath::Normalize(towards.data());
        vtkMath::Cross(data.up.data(), towards.data(), right.data());
        vtkMath::Normalize(right.data());
        vtkMath::Cross(towards.data(), right.data(), up.data());
    }

    Point right = {};
    Point up = {};
    Point towards;
};

/// How far the eye must be from the centre for a corner of the box to be seen.
double distanceFor(const Point& corner, const Frame& frame, double across, double upward)
{
    return dot(corner, frame.towards) + std::max(std::abs(dot(corner, frame.right)) / across,
                                                 std::abs(dot(corner, frame.up)) / upward);
}

Point half(const PictureData& data)
{
    Point result = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        result.at(axis) = (data.high.at(axis) - data.low.at(axis)) / 2;
    }
    return result;
}

double distanceOf(const PictureData& data, const Frame& frame, double aspect)
{
    const double reach = std::tan(vtkMath::RadiansFromDegrees(viewAngle / 2));
    const double upward = usedShare(data.height, data) * reach;
    const double across = usedShare(data.height * aspect, data) * reach * aspect;
    const Point size = half(data);
    double distance = 0.0;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Point place = {corner & 1U ? size[0] : -size[0], corner & 2U ? size[1] : -size[1],
                             corner & 4U ? size[2] : -size[2]};
        distance = std::max(distance, distanceFor(place, frame, across, upward));
    }
    return distance > 0.0 ? distance : 1.0;
}

} // namespace

void placeCamera(const PictureData& data, vtkRenderer& renderer)
{
    const Frame frame(data);
    const double distance = distanceOf(data, frame, renderer.GetTiledAspectRatio());
    vtkCamera& camera = *renderer.GetActiveCamera();
    Point centre = {};
    Point eye = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        centre.at(axis) = (data.low.at(axis) + data.high.at(axis)) / 2;
        eye.at(axis) = centre.at(axis) + distance * frame.towards.at(axis);
    }
    camera.SetFocalPoint(centre.data());
    camera.SetPosition(eye.data());
    camera.SetViewUp(frame.up.data());
    camera.SetViewAngle(viewAngle);
    renderer.ResetCameraClippingRange();
}

} // namespace Ovra::GeoTool
