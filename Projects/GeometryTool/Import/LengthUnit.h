#pragma once

#include <QString>

namespace Ovra::GeoTool
{

/// \brief The unit of length that a STEP or IGES file states.
///
/// The geometry kernel brings both to millimetres when it reads them, whatever they state; see
/// Imported.
class LengthUnit
{
public:
    /// \brief The unit in which coordinates arrive.
    static constexpr const char* Imported = "millimetres";

    /// \brief Whether files with the suffix of \p path state a unit.
    static bool isStatedBy(const QString& path);

    /// \brief The unit in words, "metres" or "inches" for instance; an empty text where the file
    /// states none that is known.
    ///
    /// STEP: the unit of length of the first global unit context (ISO 10303-21, SI_UNIT or
    /// CONVERSION_BASED_UNIT). IGES: parameters 14 and 15 of the global section.
    static QString of(const QString& path);
};

} // namespace Ovra::GeoTool
