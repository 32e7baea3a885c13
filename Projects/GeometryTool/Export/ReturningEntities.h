#pragma once

#include "GmshFormat.h"

#include <array>
#include <map>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Which model entities an import of an exported file finds in it, and by which ids.
class ReturningEntities
{
public:
    /// \pre the entities come back, see GmshFormat::comesBack()
    ReturningEntities(const CaseView& view, const GmshFormat& format);

    /// \brief The id by which an entity comes back; 0 if it does not.
    int idOf(int dimension, int id) const;

    /// \brief Whether the entity has elements of its own; vertices have none else than mesh vertices.
    static bool hasMesh(const Geo::ModelEntity& entity);

private:
    std::array<std::map<int, int>, 4> ids_;
};

} // namespace Ovra::GeoTool
