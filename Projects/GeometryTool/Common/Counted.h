#pragma once

#include <QString>

namespace Ovra::GeoTool
{

/// \brief A count with its noun in the right number: "1 element", "0 elements", "2 vertices".
/// \param singular a noun, or a phrase with its verb: "node is left out"
/// \param plural the same for every count but 1; if empty, \p singular with an s, or "vertices" for
///        a noun that ends in "vertex"
QString counted(qint64 count, const QString& singular, const QString& plural = {});

} // namespace Ovra::GeoTool
