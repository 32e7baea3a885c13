#pragma once

#include <QString>

class QVariant;

namespace Ovra::GeoTool
{

/// \brief The value of an attribute for people to read: "fluid", "(0, 0, 1)", "3, 7, 12", and a
/// matrix row by row.
///
/// Of a list the first twenty members are told, then how many there are; a text is cut behind 200
/// characters. Values of another kind are told by the name of their type.
QString attributeText(const QVariant& value);

} // namespace Ovra::GeoTool
