#pragma once

#include "PreparationStep.h"

#include <QHash>

#include <functional>

namespace Ovra::GeoTool
{

/// \brief What splitting and the doubling of peripheral faces have in common.
class FaceDoubling : public PreparationStep
{
public:
    using PreparationStep::PreparationStep;

protected:
    /// \brief Carries out \p operation, which adds model faces that name the old ones in \p link,
    ///        and takes along what it leaves behind.
    ///
    /// Throws ToolError Unsuitable if mesh faces have come apart from their elements.
    /// \param side which side the new faces are: the suffix of their names
    /// \param which which faces they are, for the report
    /// \param fault what must be the reason when they have
    QString doubleFaces(const Geo::AttributeType& link, const QString& side,
                        const std::function<void()>& operation, const QString& which,
                        const QString& fault);

    /// \brief Regions by the side that they are on; those that are missing are on none.
    using Sides = QHash<const Geo::ModelEntity*, int>;

    /// \brief Refuses a vertex that elements on different sides share. The library moves vertices
    ///        of doubled faces alone: where two sides meet along an edge or at a point only, they
    ///        would go on hanging together.
    /// \param rule what the case would have to keep to
    void requireApart(const Sides& sides, const QString& rule) const;

private:
    /// \brief Vertices that elements of more than one region share, by id. Few of all: the walk
    ///        over the elements in their order spares one over the elements about each vertex.
    QList<const Geo::MeshEntity*> verticesBetweenRegions() const;

    /// \brief What \p face, which is new, needs besides.
    virtual void settle(Geo::ModelEntity& face) const;

    /// \brief What the library leaves undone on \p added, by the ids of the originals, which they
    ///        name in \p link: names and measures, and whether they look across shells.
    void describe(const QList<Geo::ModelEntity*>& added, const Geo::AttributeType& link,
                  const QString& side) const;

    QList<Geo::ModelEntity*> facesWith(const Geo::AttributeType& link) const;
};

} // namespace Ovra::GeoTool
