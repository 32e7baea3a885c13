#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Which elements lie at the mesh faces of a case: edges at mesh faces, where it has no regions.
///
/// Upward lists tell the same, but to make those of a whole mesh takes a third of the time in which
/// it is read.
class FaceElements
{
public:
    /// Stands for an element that is not there.
    static constexpr int None = -1;

    explicit FaceElements(const CaseView& view);

    /// \brief The first two elements that have all vertices of a mesh face, as positions.
    const std::array<int, 2>& of(std::size_t face) const { return elements_[face]; }

private:
    std::vector<std::array<int, 2>> elements_;
};

} // namespace Ovra::GeoTool
