#pragma once

#include "PeriodicTransform.h"
#include "PreparationStep.h"

#include <QHash>
#include <QMap>

#include <utility>

namespace Ovra::GeoTool
{

class Progress;

/// \brief Ties the vertices of periodic faces to the partner face, anew where they were tied.
class PeriodicInterpolation : public PreparationStep
{
public:
    /// \param progress for warnings; must outlive this object
    PeriodicInterpolation(Geo::Database& database, Progress& progress);

    void requireAtStart() const override;
    QString run(Geo::Solver& solver) override;

private:
    using Pair = std::pair<Geo::ModelEntity*, Geo::ModelEntity*>;
    using Pairs = QMap<int, Pair>;

    /// Where the transform takes a vertex, and the face that is to be there.
    struct Image
    {
        const Geo::ModelEntity* partner;
        Geo::Vector place;
    };
    using Images = QHash<Geo::MeshEntity*, QList<Image>>;

    Pairs pairs() const;
    void requireOneSense(const Pair& pair) const;
    void requirePlane(const Geo::ModelEntity& face) const;
    void requireSearchable(const Pairs& pairs) const;
    Geo::PeriodicTransform rehearse(Geo::Solver& solver, const Pairs& pairs) const;
    void requireUsable(const Pairs& pairs, const Geo::PeriodicTransform& transform) const;
    static Images imagesOn(const Pairs& pairs, const Geo::PeriodicTransform& transform);
    void requireWeights(const Pairs& pairs) const;
    qint64 drawCloser(const Pairs& pairs, const Images& images) const;
    void requireTies(const Pairs& pairs, const Images& images) const;
    void warnOfMisses(qint64 count, double largest) const;
    QList<Geo::MeshEntity*> verticesOn(const Pairs& pairs) const;

    Progress& progress_;
};

} // namespace Ovra::GeoTool
