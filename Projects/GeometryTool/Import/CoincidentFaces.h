#pragma once

#include <vector>

namespace Ovra::Geo
{
class Model;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Finds where bodies of a model touch without being joined: two faces, each of a body of
/// its own, in one place.
///
/// Faces that an attribute of either ties to the other, extruded_face for instance, are meant to be
/// apart. In a planar model, edges are looked at.
class CoincidentFaces
{
public:
    struct Pair
    {
        const Geo::ModelEntity* first; ///< the one with the lower id
        const Geo::ModelEntity* second;
    };

    /// \brief All pairs, ascending by the id of the first, then of the second.
    static std::vector<Pair> in(const Geo::Model& model);
};

} // namespace Ovra::GeoTool
