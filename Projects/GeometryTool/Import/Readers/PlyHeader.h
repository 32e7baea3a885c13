#pragma once

#include "PolygonFile.h"

#include <QByteArray>
#include <QList>

namespace Ovra::GeoTool
{

/// \brief What a polygon file (PLY) says of its content.
struct PlyHeader
{
    struct Property
    {
        QByteArray name;
        QByteArray type;      ///< "float", "int32" and so on
        QByteArray countType; ///< of a list, that of its length; empty otherwise
    };

    struct Element
    {
        QByteArray name;
        qint64 count = 0;
        QList<Property> properties;
    };

    PolygonFile::Form form = PolygonFile::Form::Text;
    QList<Element> elements; ///< in the order in which they come

    /// \brief Reads from the start of \p file up to its end_header.
    ///
    /// Throws ToolError InputDamaged with the line that is wrong.
    static PlyHeader of(PolygonFile& file);
};

} // namespace Ovra::GeoTool
