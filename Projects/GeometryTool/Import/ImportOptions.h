#pragma once

#include "Box.h"

#include <QString>

#include <optional>

namespace Ovra::GeoTool
{

/// \brief How large the box of air around the parts is.
struct AirExtent
{
    double factor = 0; ///< above 1: the box of the parts, each half-extent times this; or else
    Geo::Box box;      ///< these corners
};

/// \brief What the user asks of an import.
struct ImportOptions
{
    QString input;
    double meshSize = 0; ///< largest length of an element's edge; 0 leaves it to the input
    int dimension = 0;   ///< 3 or 2; 0 takes what the input holds
    double scale = 1;    ///< all coordinates are multiplied by it, behind everything else
    bool join = false;   ///< cut bodies along one another
    std::optional<double> joinTolerance; ///< gaps and overlaps closed then; see CadModel
    std::optional<AirExtent> air;        ///< put the parts into a box of air, which joins them too
};

} // namespace Ovra::GeoTool
