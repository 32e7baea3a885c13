#pragma once

#include "AttributeMap.h"

#include <QHash>
#include <QList>
#include <QSet>

namespace Ovra::Geo
{
class MeshEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Keeps the attributes of wedges for the tetrahedra that come from them, which the library
///        makes without any: without `in_bl` a boundary layer would no longer be told as one.
class WedgeAttributes
{
public:
    /// \param wedges on a mesh whose upward lists are set; those without attributes cost nothing
    explicit WedgeAttributes(const QList<Geo::MeshEntity*>& wedges);

    /// \brief Gives the attributes to \p tetrahedra, which come from the wedges.
    void handOver(const QList<Geo::MeshEntity*>& tetrahedra) const;

private:
    struct Wedge
    {
        QSet<Geo::MeshEntity*> vertices;
        Geo::AttributeMap attributes;
    };

    const Wedge* wedgeOf(const Geo::MeshEntity& tetrahedron) const;

    QList<Wedge> wedges_;
    QHash<Geo::MeshEntity*, QList<qsizetype>> wedgesAt_;
};

} // namespace Ovra::GeoTool
