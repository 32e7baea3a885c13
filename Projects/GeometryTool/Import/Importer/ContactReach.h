#pragma once

#include <map>

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief How far apart bodies may be, or overlap, as a share of the element size, which is the mean
/// of the shortest edges of the elements of a body; the body with the smaller elements decides.
class ContactReach
{
public:
    /// \brief Bodies no further apart are meant to touch: no mesh resolves such a gap.
    static constexpr double meant = 0.01;

    /// \brief Bodies that are meant to touch are no further apart in their meshes, curved ones
    /// included, as these stand away from their shapes.
    static constexpr double meshed = 0.25;

    ContactReach(const ImportedMesh& mesh, double share);

    /// \brief The same \p distance between all bodies.
    static ContactReach everywhere(const ImportedMesh& mesh, double distance);

    /// \brief Between two bodies, by their ids; 0 where one of them has no elements.
    double between(int body, int other) const;

    /// \brief The greatest between any two.
    double most() const;

private:
    ContactReach() = default;

    double of(int body) const;

    std::map<int, double> reaches_; ///< by id of the body
};

} // namespace Ovra::GeoTool
