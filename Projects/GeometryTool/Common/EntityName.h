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
        Model,
        Mesh
    };

    /// \brief The dimension in the name of the model or the mesh as a whole, whose id is 0.
    static constexpr int Whole = -1;

    EntityName(Owner owner, int dimension, int id);
    explicit EntityName(const Geo::ModelEntity& entity);
    explicit EntityName(const Geo::MeshEntity& entity);

    /// \brief "mesh face 7", or "the mesh".
    QString text() const;

    Owner owner;
    int dimension;
    int id;
};

/// \brief "(0.25, 0.25, 1)", to six digits.
QString placeText(const Geo::Vector& place);

} // namespace Ovra::GeoTool
