#pragma once

#include "Box.h"
#include "CaseSurface.h"
#include "FaceChoice.h"
#include "PictureData.h"
#include "PictureOptions.h"

#include <map>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief What of a case a picture shows, piece by piece: the faces that are asked for, each for one
/// of the regions that it bounds, and where these regions stand.
class PictureParts
{
public:
    /// \brief A face as it is drawn for one of the regions that it bounds.
    struct Part
    {
        std::size_t patch;            ///< position in CaseSurface::patches()
        const Geo::ModelEntity* face; ///< null for sides of elements that no mesh face covers
        const Geo::ModelEntity* body; ///< null where there is none
    };

    /// \brief Throws ToolError Unsuitable where there is nothing to show, or no face of a name.
    /// \param view, surface, options not owned; must outlive this object
    PictureParts(const CaseView& view, const CaseSurface& surface, const PictureOptions& options);

    const std::vector<Part>& all() const { return parts_; }

    /// \brief The regions that an entity is a part of, by id; of an edge, those of its faces, and
    /// itself of a region.
    std::vector<const Geo::ModelEntity*> bodiesOf(const Geo::ModelEntity& entity) const;

    /// \brief Whether a model edge is one of a face that is shown; all are where all faces are.
    bool hasEdge(const Geo::ModelEntity& edge) const;

    /// \brief By how much a region is moved from its place; not at all where none are.
    PictureData::Point offsetOf(const Geo::ModelEntity* body) const;

    /// \brief By how much what stands on an entity is moved: once for each region that it is a part
    /// of and that is shown, for it is drawn with each of them; else once, and not at all.
    /// \param entity may be null
    std::vector<PictureData::Point> offsetsOf(const Geo::ModelEntity* entity) const;

    /// \brief Of all parts where they lie in the case.
    Geo::Box box() const;

    /// \brief Of a part where it lies in the case.
    Geo::Box boxOf(const Part& part) const;

private:
    void choose();
    void add(std::size_t patch);
    const Geo::ModelEntity* bodyShown(const Geo::ModelEntity& face) const;
    void moveApart();

    const CaseView& view_;
    const CaseSurface& surface_;
    const PictureOptions& options_;
    FaceChoice choice_;
    std::vector<Part> parts_;
    std::map<const Geo::ModelEntity*, PictureData::Point> offsets_;
};

/// \brief Whether what flows is in a region; of none it is not.
bool isFluid(const Geo::ModelEntity* body);

/// \brief A point in the plain numbers of PictureData.
PictureData::Point pictured(const Geo::Vector& point);

} // namespace Ovra::GeoTool
