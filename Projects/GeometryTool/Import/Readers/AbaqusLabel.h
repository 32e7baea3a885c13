#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

/// \brief A name of a set, part, instance or material in an Abaqus input file.
///
/// Case does not count, unless the name stands in quotation marks.
struct AbaqusLabel
{
    QByteArray text; ///< as it was written first, without quotation marks
    QByteArray key;  ///< equal for all ways to write the same name

    static AbaqusLabel of(const QByteArray& written)
    {
        const bool quoted = written.size() >= 2 && written.startsWith('"') && written.endsWith('"');
        const QByteArray text = quoted ? written.mid(1, written.size() - 2) : written;
        return {text, quoted ? text : text.toUpper()};
    }
};

} // namespace Ovra::GeoTool
