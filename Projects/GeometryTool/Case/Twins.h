#pragma once

#include <QString>

#include <vector>

namespace Ovra::Geo
{
class Model;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Two entities of the model in the same place, or on either side of a sheet.
struct Twin
{
    QString relation; ///< what the copy is to the original: "solid side", "stator side", "replica"
                      ///< or "shell twin"
    const Geo::ModelEntity* original;
    const Geo::ModelEntity* copy;
};

/// \brief All twins of a case, by relation and then by the ids of the originals.
///
/// Doubled faces and replicas of regions are linked by attributes, the faces of a replica by their
/// position among those of the region. Links that the other side does not answer are left out.
std::vector<Twin> twinsOf(const Geo::Model& model);

} // namespace Ovra::GeoTool
