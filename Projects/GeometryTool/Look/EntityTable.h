#pragma once

#include <QJsonArray>

namespace Ovra::GeoTool
{

class CaseView;
struct CaseSummary;

/// \brief What the report's page tells of each model region and face (face and edge in a case
/// without regions), by dimension from the highest, then by id.
///
/// An object has `dimension`, `id`, `name`, `tag`, `materialType` and `materialId` (null where there
/// is none), `elements`, the number of mesh entities of its dimension on it, `measure`, their
/// volume, area or length, `bounds`, the ids of the regions that a face bounds, and `attributes`,
/// pairs of tag and text.
QJsonArray entityTable(const CaseView& view, const CaseSummary& summary);

} // namespace Ovra::GeoTool
