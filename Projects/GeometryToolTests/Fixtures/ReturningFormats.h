#pragma once

#include "CaseLines.h"
#include "GmshFormat.h"

#include <QTest>

/// \brief Rows of a test for the formats of Gmsh of which an import makes the case again, with the
/// parts of it that their table promises.
namespace ReturningFormats
{

inline void addColumns()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<CaseLines::Parts>("parts");
}

/// \pre the format comes back, so that names and attributes do, by itself or beside
inline void addRow(const Ovra::GeoTool::GmshFormat& format)
{
    using Numbers = Ovra::GeoTool::GmshFormat::Numbers;
    const bool hasAllDigits = format.gmshSuffix != QLatin1String("bdf"); // fields of 16 columns
    QTest::newRow(qPrintable(format.suffix))
        << format.suffix
        << CaseLines::Parts{format.numbers == Numbers::Kept, true, format.hasEmptyRegions,
                            format.lowestDimension, hasAllDigits};
}

inline void addAll()
{
    addColumns();
    for (const Ovra::GeoTool::GmshFormat& format : Ovra::GeoTool::GmshFormat::all()) {
        if (format.comesBack()) {
            addRow(format);
        }
    }
}

} // namespace ReturningFormats
