#include "NastranSystems.h"

#include <cmath>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

constexpr int MostReferences = 1000;

Vector fromCylinder(const Vector& point)
{
    const double angle = point.y() * std::acos(-1.0) / 180.0;
    return {point.x() * std::cos(angle), point.x() * std::sin(angle), point.z()};
}

} // namespace

Vector NastranSystems::basic(qint64 number, const Vector& point, QString& fault) const
{
    return placed(number, point, fault, 0);
}

Vector NastranSystems::placed(qint64 number, const Vector& point, QString& fault, int depth) const
{
    if (number == 0) {
        return point;
    }
    const Frame* system = frame(number, fault, depth);
    if (system == nullptr) {
        return point;
    }
    const Vector local = system->isCylindrical ? fromCylinder(point) : point;
    return system->origin + system->axes[0] * local.x() + system->axes[1] * local.y() +
           system->axes[2] * local.z();
}

const NastranSystems::Frame* NastranSystems::frame(qint64 number, QString& fault, int depth) const
{
    if (const auto known = frames_.find(number); known != frames_.end()) {
        return &known->second;
    }
    const auto found = definitions_.find(number);
    if (found == definitions_.end() || depth > MostReferences) {
        fault = QStringLiteral("the coordinate system %1 %2")
                    .arg(number)
                    .arg(found == definitions_.end()
                             ? QStringLiteral("is not given by CORD2R or CORD2C")
                             : QStringLiteral("refers to itself, or to too many others"));
        return nullptr;
    }
    const Definition& given = found->second;
    std::array<Vector, 3> points;
    for (std::size_t i = 0; i < points.size() && fault.isEmpty(); ++i) {
        points[i] = placed(given.reference, given.points[i], fault, depth + 1);
    }
    const Vector third = points[1] - points[0];
    const Vector second = third ^ (points[2] - points[0]);
    if (fault.isEmpty() && !(second.length() > 0)) {
        fault = QStringLiteral("the points of the coordinate system %1 are in line").arg(number);
    }
    if (!fault.isEmpty()) {
        return nullptr;
    }
    const Vector first = second ^ third;
    const Frame made{given.isCylindrical,
                     points[0],
                     {first / first.length(), second / second.length(), third / third.length()}};
    return &frames_.emplace(number, made).first->second;
}

} // namespace Ovra::GeoTool
