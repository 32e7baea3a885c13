#pragma once

#include "TriangleSurface.h"
#include "Vector.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief A surface of convex polygons between numbered vertices, on its way to Gmsh.
class PolygonSurface
{
public:
    PolygonSurface();

    /// \brief Adds a vertex; they are counted from 0.
    void addVertex(const Geo::Vector& point) { vertices_.push_back(point); }

    qint64 vertexCount() const { return static_cast<qint64>(vertices_.size()); }
    bool hasFaces() const { return hasFaces_; }

    const TriangleSurface& surface() const { return surface_; }

    /// \brief Adds a face, cut into triangles that share its first corner.
    /// \param corners positions of at least three vertices
    /// \return what is wrong with it, of which nothing is added then; empty if it is sound
    QString addFace(const std::vector<qint64>& corners);

    /// \brief Makes nodes, one surface and its triangles in Gmsh; see TriangleSurface.
    QStringList makeEntities() const { return surface_.makeEntities(); }

private:
    static bool isConvex(const std::vector<Geo::Vector>& corners);

    std::vector<Geo::Vector> vertices_;
    TriangleSurface surface_;
    bool hasFaces_ = false;
};

} // namespace Ovra::GeoTool
