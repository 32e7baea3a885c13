#pragma once

#include <QJsonArray>

#include <vector>

namespace Ovra::Geo
{
class Model;
}

namespace Ovra::GeoTool
{

class CaseView;
struct CaseSummary;

/// \brief The dimensions of the model entities that the report's page lists, from the highest: regions and
/// faces, or faces and edges in a model without regions, unless these are more than 20,000, as where
/// loose triangles were taken for faces with an edge each.
std::vector<int> listedDimensions(const Geo::Model& model);

/// \brief What the report's page tells of each region, or face in a model without regions, by id.
///
/// An object has `dimension`, `id`, `name`, `tag`, `materialType` and `materialId` (null where there
/// is none), `elements`, the number of mesh entities of its dimension on it, `measure`, their
/// volume, area or length, `bounds`, the ids of the regions that a face bounds, and `attributes`,
/// pairs of tag and text.
QJsonArray bodyTable(const CaseView& view, const CaseSummary& summary);

/// \brief The same of each face, or edge; empty where these are not listed.
QJsonArray boundaryTable(const CaseView& view, const CaseSummary& summary);

} // namespace Ovra::GeoTool
