#pragma once

#include "PeriodicTransform.h"
#include "ZoneLayout.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Ovra::GeoTool
{

struct Twin;

/// \brief What connects a patch of one zone with a patch of another, or of the same one.
struct ZoneLink
{
    int zone = 0;
    int donorZone = 0;
    const ZonePatch* patch = nullptr;
    const ZonePatch* donor = nullptr;
    QString relation;        ///< "shared", "solid side", "stator side", "periodic" or "extruded"
    std::vector<int> points; ///< positions of vertices; empty where the meshes do not match
    std::vector<int> donors; ///< the partner of each
    std::optional<Geo::PeriodicTransform> transform; ///< takes the patch to its donor
};

/// \brief The connections between the zones of a case: faces that two zones share, faces that
/// `prepare` has doubled, periodic pairs, and faces tied by `extruded_face`.
class ZoneLinks
{
public:
    ZoneLinks(const CaseView& view, const ZoneLayout& layout);

    const std::vector<ZoneLink>& all() const { return links_; }

    /// \brief Whether a patch is connected with any other.
    bool isLinked(const ZonePatch& patch) const;

    /// \brief Periodic pairs without a stored transform, by number.
    const std::vector<int>& untiedPairs() const { return untiedPairs_; }

private:
    /// A patch at the end of the mesh, and its zone.
    struct End
    {
        int zone;
        const ZonePatch* patch;
    };

    void addShared();
    void addTwins();
    void addTwin(const Twin& twin, const std::vector<End>& originals,
                 const std::vector<End>& copies);
    void addPeriodic();
    void addExtruded();
    void addBothWays(const ZoneLink& link);
    std::vector<End> endsOf(const Geo::ModelEntity& face) const;
    void matchPlaces(ZoneLink& link) const;
    void matchTies(ZoneLink& link) const;

    const CaseView& view_;
    const ZoneLayout& layout_;
    std::vector<ZoneLink> links_;
    std::vector<int> untiedPairs_;
};

} // namespace Ovra::GeoTool
