#pragma once

#include <QByteArray>
#include <QString>

namespace Ovra::GeoTool::UnitText
{

/// \brief In which unit the case stands that a file is imported to: "board.step is in inches; as a
/// case it is in millimetres". Empty where the format states no unit.
/// \param scale factor of the import
QString ofCase(const QString& path, double scale);

/// \brief The same as a JSON object with "file", "unit", null where none is stated, and
/// "importedUnit".
QByteArray json(const QString& path);

} // namespace Ovra::GeoTool::UnitText
