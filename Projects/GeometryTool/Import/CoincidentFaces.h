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
/// its own, in one place as a whole. All that can be told of a mesh without geometry.
///
/// Faces that an attribute of either ties to the other, extruded_face for instance, are meant to be
/// apart. In a model without regions, edges are looked at.
class CoincidentFaces
{
public:
    struct Pair
    {
        const Geo::ModelEntity* first; ///< the one with the lower id
        const Geo::ModelEntity* second;
        double size; ///< area, or length, that the two have in common
    };

    /// \brief All pairs, ascending by the id of the first, then of the second.
    static std::vector<Pair> in(const Geo::Model& model);

    /// \brief Whether an attribute of one of the faces names the other.
    static bool areTied(const Geo::ModelEntity& face, const Geo::ModelEntity& other);
};

} // namespace Ovra::GeoTool
