#pragma once

#include "Vector.h"

#include <QString>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Which entity a message speaks of; good for longer than the entity itself.
struct EntityName
{
    enum class Owner
    {
        Case, ///< the model or the mesh as a whole; dimension and id mean nothing
        Model,
        Mesh
    };

    EntityName() = default;
    EntityName(Owner owner, int dimension, int id);
    explicit EntityName(const Geo::ModelEntity& entity);
    explicit EntityName(const Geo::MeshEntity& entity);

    /// \brief "mesh face 7", or "the case".
    QString text() const;

    Owner owner = Owner::Case;
    int dimension = 0;
    int id = 0;
};

/// \brief "(0.25, 0.25, 1)", to six digits.
QString placeText(const Geo::Vector& place);

} // namespace Ovra::GeoTool
