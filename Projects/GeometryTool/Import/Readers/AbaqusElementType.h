#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

/// \brief Shape of an element type such as "C3D8R".
struct AbaqusElementType
{
    int dimension = 0; ///< 1 to 3; 0 for a type without counterpart
    int nodeCount = 0;
    int gmshType = 0;

    /// \brief The shape of the type with \p name, in upper case.
    static AbaqusElementType named(const QByteArray& name);
};

} // namespace Ovra::GeoTool
