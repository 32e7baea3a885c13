#pragma once

#include <map>

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief How far apart bodies may be, or overlap, and still be meant to touch: a hundredth of the
/// element size, which is the mean of the shortest edges of the elements of a body.
///
/// No mesh resolves such a gap; the body with the smaller elements decides.
class ContactReach
{
public:
    explicit ContactReach(const ImportedMesh& mesh);

    /// \brief Between two bodies, by their ids; 0 where one of them has no elements.
    double between(int body, int other) const;

    /// \brief The greatest between any two.
    double most() const;

private:
    double of(int body) const;

    std::map<int, double> reaches_; ///< by id of the body
};

} // namespace Ovra::GeoTool
