#pragma once

#include <QString>

#include <optional>

namespace Ovra::GeoTool
{

/// \brief How many mesh elements a file says that it holds.
///
/// Gmsh passes over elements that it has no kind for, polygons in its own format for instance,
/// without a word; the difference to what it has read tells of them.
class DeclaredElements
{
public:
    /// \brief The number for a Gmsh mesh or a legacy VTK file by its suffix; nothing for other files and for those in which it cannot be found.
    static std::optional<qint64> in(const QString& path);
};

} // namespace Ovra::GeoTool
