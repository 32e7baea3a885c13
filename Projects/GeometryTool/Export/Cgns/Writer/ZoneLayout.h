#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace Ovra::Geo
{
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;
class Partition;

/// \brief Entities of the mesh that have one number of vertices, as positions in their list.
struct ZoneSection
{
    const Geo::ModelEntity* owner = nullptr; ///< the region or face that they stand on, or null
    int dimension = 0;
    int vertexCount = 0;
    std::vector<int> entities;
};

/// \brief The part of a model face in one zone that has the same behind it.
struct ZonePatch
{
    const Geo::ModelEntity* face = nullptr; ///< null for what lies between parts of a region
    int other = 0; ///< the zone behind it, this one too, or ZoneLayout::Outside
    std::vector<ZoneSection> sections;
    std::vector<int> vertices; ///< positions, ascending
};

/// \brief A part of the elements with all vertices that they use.
struct Zone
{
    const Geo::ModelEntity* region = nullptr; ///< of all its elements; null if there are several
    std::vector<ZoneSection> sections;        ///< by region, then by number of vertices
    std::vector<int> vertices;                ///< positions, ascending
    std::vector<ZonePatch> patches;           ///< by id of the model face, then by the zone behind

    /// \brief The position of a vertex in the zone, from 0. \pre it is one of the zone
    int localOf(int vertex) const;

    std::size_t elementCount() const;
};

/// \brief Divides the elements of a case into zones and tells what lies between these.
class ZoneLayout
{
public:
    /// What is behind a patch at the end of the mesh.
    static constexpr int Outside = -1;

    /// \brief A zone for each region that has elements, and one for those that stand on none.
    static ZoneLayout byRegion(const CaseView& view);

    /// \brief All elements in one zone.
    static ZoneLayout asOne(const CaseView& view);

    /// \brief A zone for each part that has elements, with what lies between parts away from model faces too: patches
    /// without a face, of vertices alone.
    static ZoneLayout byPart(const CaseView& view, const Partition& partition);

    const std::vector<Zone>& zones() const { return zones_; }

    /// \brief The part of a partition that each zone is, from 0; empty if they are none.
    const std::vector<int>& parts() const { return parts_; }

    /// \brief Number of mesh faces on model faces that no element is behind.
    int looseFaceCount() const { return looseFaces_; }

private:
    using PatchKey = std::pair<int, int>; ///< zone, and zone behind

    ZoneLayout(const CaseView& view, const std::vector<int>& zoneOfElement, int count);

    void addElements(const CaseView& view, int count);
    void addPatches(const CaseView& view, const Geo::ModelEntity& face);
    void addSidesBetween(const CaseView& view);
    std::vector<PatchKey> keysOf(std::span<const int> elements) const;

    std::vector<int> zoneOfElement_;
    std::vector<Zone> zones_;
    int looseFaces_ = 0;
    std::vector<int> parts_;
};

} // namespace Ovra::GeoTool
