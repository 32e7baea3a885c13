#pragma once

#include "GeometryDatabaseExport.h"

namespace Ovra::Geo
{

/// \brief The six ways of turning a wedge so that a chosen one of its vertices comes first.
///
/// A wedge has its triangles at the positions 0 1 2 and 3 4 5, with 0 below 3, 1 below 4 and
/// 2 below 5. Every row keeps the wedge's orientation, so that one pattern of tetrahedra serves
/// them all.
///
/// \code{.unparsed}
///       3-------5
///       |\     /|      row k lists the positions in the order in which they are read
///       |  \ /  |      once position k has been brought to the front
///       |   4   |
///       |   |   |
///       0---|---2
///        \  |  /
///          \|/
///           1
/// \endcode
class OVRA_GEO_EXPORT WedgeIndirection
{
public:
    /// \brief Chooses the row that brings position \p i to the front.
    /// \param i 0 to 5, asserted
    void setIndex(int i);

    /// \brief The position of the wedge that stands at \p indirectIndex in the chosen row.
    /// \param indirectIndex 0 to 5, asserted
    int at(int indirectIndex) const;

private:
    int index_ = 0;
    // clang-format off
    static constexpr int table_[6][6] = {
        {0, 1, 2, 3, 4, 5},
        {1, 2, 0, 4, 5, 3},
        {2, 0, 1, 5, 3, 4},
        {3, 5, 4, 0, 2, 1},
        {4, 3, 5, 1, 0, 2},
        {5, 4, 3, 2, 1, 0},
    };
    // clang-format on
};

} // namespace Ovra::Geo
