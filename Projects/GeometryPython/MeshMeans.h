#pragma once

namespace Ovra::Geo
{
class Model;
}

namespace Ovra::GeoPython::MeshMeans
{

/// \brief Makes the edges and faces of \p model compute the centroids and normals of their mesh anew
///        when they are next asked, by a preparation of periodic faces for instance.
///
/// A model entity keeps the first answer for life, while a case in memory has its mesh changed. All else
/// stays, addresses included.
/// \pre children are keyed by their present ids, see CaseState::keyChildrenAnew()
void forget(const Geo::Model& model);

} // namespace Ovra::GeoPython::MeshMeans
