#include "TriangleSurface.h"

#include "Counted.h"
#include "PointMerger.h"

#include <algorithm>
#include <cmath>
#include <gmsh.h>
#include <map>
#include <set>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

constexpr int TriangleType = 2;
using Triangle = std::array<std::size_t, 3>;

bool isPlace(const Vector& point)
{
    constexpr double most = 1e100;
    return std::abs(point.x()) < most && std::abs(point.y()) < most && std::abs(point.z()) < most;
}

/// \brief Takes positions of points to tags of nodes, which it makes.
class Nodes
{
public:
    explicit Nodes(const std::vector<Vector>& points)
        : points_(points)
    {
    }

    /// \brief Tags of the corners, new ones for positions that \p known lacks.
    std::vector<std::size_t> cornersOf(const std::vector<Triangle>& triangles,
                                       std::map<std::size_t, std::size_t>& known)
    {
        std::vector<std::size_t> corners;
        for (const Triangle& triangle : triangles) {
            for (const std::size_t position : triangle) {
                const auto [found, isNew] = known.emplace(position, last_ + 1);
                if (isNew) {
                    tags_.push_back(++last_);
                    const Vector& point = points_[position];
                    coordinates_.insert(coordinates_.end(), {point.x(), point.y(), point.z()});
                }
                corners.push_back(found->second);
            }
        }
        return corners;
    }

    /// \brief Gives what was made since the last call to a surface.
    void put(int surface)
    {
        gmsh::model::mesh::addNodes(2, surface, tags_, coordinates_);
        tags_.clear();
        coordinates_.clear();
    }

private:
    const std::vector<Vector>& points_;
    std::size_t last_ = 0;
    std::vector<std::size_t> tags_;
    std::vector<double> coordinates_;
};

} // namespace

void TriangleSurface::addPatch(const QString& name)
{
    patches_.push_back({name, {}});
}

bool TriangleSurface::addTriangle(const std::array<Vector, 3>& corners)
{
    if (!std::all_of(corners.begin(), corners.end(), isPlace)) {
        return false;
    }
    for (const Vector& corner : corners) {
        box_ += corner;
    }
    patches_.back().triangles.push_back(corners);
    return true;
}

void TriangleSurface::append(const TriangleSurface& other)
{
    patches_.insert(patches_.end(), other.patches_.begin(), other.patches_.end());
    box_ += other.box_;
}

QStringList TriangleSurface::makeEntities() const
{
    constexpr double relativeTolerance = 1e-8;
    const double size = box_.extent().length();
    PointMerger merger(box_.minimum(), size > 0 ? relativeTolerance * size : 1.0);
    long long flat = 0;
    const std::vector<std::vector<Triangle>> patches = merged(merger, flat);
    Nodes nodes(merger.points());
    std::map<std::size_t, std::size_t> shared;
    std::vector<std::pair<QString, int>> surfaces;
    for (std::size_t i = 0; i < patches.size(); ++i) {
        if (patches[i].empty()) {
            continue;
        }
        const int surface = gmsh::model::addDiscreteEntity(2);
        const auto corners = nodes.cornersOf(patches[i], shared);
        nodes.put(surface);
        gmsh::model::mesh::addElementsByType(surface, TriangleType, {}, corners);
        surfaces.emplace_back(patches_[i].name, surface);
    }
    addGroups(surfaces);
    if (flat == 0) {
        return {};
    }
    return {counted(flat, QStringLiteral("triangle has corners that are the same and is left out"),
                    QStringLiteral("triangles have corners that are the same and are left out"))};
}

std::vector<std::vector<TriangleSurface::Triangle>> TriangleSurface::merged(PointMerger& merger,
                                                                            long long& flat) const
{
    std::vector<std::vector<Triangle>> patches;
    for (const Patch& patch : patches_) {
        patches.emplace_back();
        for (const auto& [a, b, c] : patch.triangles) {
            const Triangle triangle{merger.add(a), merger.add(b), merger.add(c)};
            if (std::set<std::size_t>(triangle.begin(), triangle.end()).size() == 3) {
                patches.back().push_back(triangle);
            } else {
                ++flat;
            }
        }
    }
    return patches;
}

void TriangleSurface::addGroups(const std::vector<std::pair<QString, int>>& surfaces)
{
    QStringList names;
    std::map<QString, std::vector<int>> groups;
    for (const auto& [name, surface] : surfaces) {
        groups[name].push_back(surface);
        if (!name.isEmpty() && !names.contains(name)) {
            names.append(name);
        }
    }
    for (const QString& name : std::as_const(names)) {
        const int group = gmsh::model::addPhysicalGroup(2, groups[name]);
        gmsh::model::setPhysicalName(2, group, name.toStdString());
    }
}

} // namespace Ovra::GeoTool
