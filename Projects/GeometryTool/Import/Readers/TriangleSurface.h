#pragma once

#include "Box.h"
#include "Vector.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

class PointMerger;

/// \brief A surface of triangles in patches, such as the solids of an STL file, on its way to Gmsh.
class TriangleSurface
{
public:
    /// \brief Begins a patch.
    /// \param name empty for a patch without a name
    void addPatch(const QString& name);

    /// \brief Adds a triangle to the last patch, by the places of its corners.
    /// \return false, and adds nothing, if a coordinate is not finite or beyond 1e100
    bool addTriangle(const std::array<Geo::Vector, 3>& corners);

    /// \brief Adds the patches of \p other behind those here.
    void append(const TriangleSurface& other);

    /// \brief Makes nodes and triangles in Gmsh's current model, with a discrete surface for each
    /// patch and a physical group for each name.
    ///
    /// Corners become one node where they agree within 1e-8 of the size of the whole, as rounded
    /// text has it, across patches too. Triangles with less than three corners are left out.
    /// \return what the user should know, a sentence each
    QStringList makeEntities() const;

private:
    using Triangle = std::array<std::size_t, 3>;

    struct Patch
    {
        QString name;
        std::vector<std::array<Geo::Vector, 3>> triangles;
    };

    std::vector<std::vector<Triangle>> merged(PointMerger& merger, long long& flat) const;
    static void addGroups(const std::vector<std::pair<QString, int>>& surfaces);

    std::vector<Patch> patches_;
    Geo::Box box_;
};

} // namespace Ovra::GeoTool
