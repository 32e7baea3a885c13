#pragma once

#include <QByteArray>
#include <QList>

class QFile;

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

    bool isText = true;
    bool isBigEndian = false;
    QList<Element> elements; ///< in the order in which they come

    /// \brief Reads from the start of \p file up to its end_header.
    ///
    /// Throws ToolError InputDamaged with the line that is wrong.
    static PlyHeader of(QFile& file);

    /// \brief Bytes of a number of \p type; 0 for a type that is none.
    static int sizeOf(const QByteArray& type);

    /// \brief Whether \p type has numbers with a fraction.
    static bool isReal(const QByteArray& type);
};

} // namespace Ovra::GeoTool
