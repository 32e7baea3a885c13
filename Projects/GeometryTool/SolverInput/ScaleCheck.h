#pragma once

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief Looks whether scaled coordinates and the periodic transform of a case agree.
///
/// The writer scales the coordinates, of the transform only the translation, and that by
/// `visual_scale_factor`.
class ScaleCheck
{
public:
    /// \param database not owned; must outlive this object
    explicit ScaleCheck(const Geo::Database& database);

    /// \brief Throws ToolError Unsuitable if periodic faces turn about an axis that misses the
    /// origin, and warns of a translation that is multiplied by something else.
    /// \param scale of the coordinates
    void require(double scale, Progress& progress) const;

private:
    bool isPeriodic() const;

    const Geo::Database& database_;
};

} // namespace Ovra::GeoTool
