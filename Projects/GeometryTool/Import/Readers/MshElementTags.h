#pragma once

#include <QByteArray>

#include <optional>

class QFile;

namespace Ovra::GeoTool
{

/// \brief Elementary tags of a Gmsh mesh file of version 1 or 2, text or binary.
///
/// Other programs write 0 for them, or nothing. Gmsh then throws all physical groups of a dimension
/// together, and loses elements with negative tags.
class MshElementTags
{
public:
    /// \brief The content of \p file with an elementary tag for each element that has none above 0: one for each
    /// of its physical groups and one for what is in none, above all that are given.
    /// \return nothing if there is no such element, or the file is of another version or damaged
    /// \pre Gmsh is started, \p file is open and at its start
    static std::optional<QByteArray> completed(QFile& file);
};

} // namespace Ovra::GeoTool
