#pragma once

#include "ImportOptions.h"

#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

/// \brief A box of air around the bodies of Gmsh's current model.
///
/// The volume is named "air" and its sides "air-xmin", "air-xmax", "air-ymin" and so on, as entities
/// and as physical groups.
class AirBox
{
public:
    explicit AirBox(const AirExtent& extent);

    /// \brief Adds the box to the model; its number. It overlaps the bodies until they are joined.
    int add() const;

    /// \brief The name of the volume.
    static QString name();

    /// \brief One of the names of the box that the model has already, as a group or an entity's;
    /// empty if there is none.
    static QString nameInUse();

private:
    Geo::Box corners() const;
    static QStringList sideNames();

    AirExtent extent_;
};

} // namespace Ovra::GeoTool
