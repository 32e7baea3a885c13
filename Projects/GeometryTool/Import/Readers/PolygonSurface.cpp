#include "PolygonSurface.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using Geo::Vector;

PolygonSurface::PolygonSurface()
{
    surface_.addPatch(QString());
}

QString PolygonSurface::addFace(const std::vector<qint64>& corners)
{
    if (corners.size() < 3) {
        return QStringLiteral("a face needs at least 3 corners");
    }
    std::vector<Vector> points;
    for (const qint64 position : corners) {
        if (position < 0 || position >= vertexCount()) {
            return QStringLiteral("there is no vertex %1; they are counted from 0 to %2")
                .arg(position)
                .arg(vertexCount() - 1);
        }
        points.push_back(vertices_[static_cast<std::size_t>(position)]);
    }
    if (!isConvex(points)) {
        return QStringLiteral("the face is not convex; cut it into triangles");
    }
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        if (!surface_.addTriangle({points[0], points[i], points[i + 1]})) {
            return QStringLiteral("the face has a coordinate that is no number");
        }
    }
    hasFaces_ = true;
    return QString();
}

/// \brief Whether the triangles that share the first corner all turn the same way.
bool PolygonSurface::isConvex(const std::vector<Vector>& corners)
{
    Vector normal;
    std::vector<Vector> parts;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        parts.push_back((corners[i] - corners[0]) ^ (corners[i + 1] - corners[0]));
        normal += parts.back();
    }
    return std::all_of(parts.begin(), parts.end(),
                       [&normal](const Vector& part) { return part * normal >= 0.0; });
}

} // namespace Ovra::GeoTool
