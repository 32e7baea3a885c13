#pragma once

#include "CaseSurface.h"
#include "PictureColours.h"
#include "PictureData.h"
#include "PictureOptions.h"

#include <map>

namespace Ovra::GeoTool
{

class CaseFindings;
class CaseView;

/// \brief Makes of a case, and of what is asked of its picture, what the module draws.
class PictureScene
{
public:
    /// \brief Throws ToolError Usage or Unsuitable for what cannot be done with this case.
    /// \param findings to mark; may be null
    PictureScene(const CaseView& view, const PictureOptions& options, const CaseFindings* findings);

    const PictureData& data() const { return data_; }

    /// \brief Puts the name of the case, and how large it is, above.
    void setTitle(const QString& name);

private:
    using Point = PictureData::Point;

    /// A face as it is drawn for one of the regions that it bounds.
    struct Part
    {
        std::size_t patch;
        const Geo::ModelEntity* face;
        const Geo::ModelEntity* body;
    };

    std::vector<Part> chosenParts() const;
    std::vector<Part> partsOf(std::size_t patch) const;
    const Geo::ModelEntity* bodyShown(const Geo::ModelEntity* face) const;
    std::vector<const Geo::ModelEntity*> bodiesOf(const Geo::ModelEntity& entity) const;
    void moveApart(const std::vector<Part>& parts);
    Point offsetOf(const Geo::ModelEntity* body) const;
    void addPart(const Part& part);
    bool isSeenThrough(const Part& part) const;
    void look(const std::vector<Part>& parts);
    void nameAxes();
    void cut();
    bool isCutAway(const CaseSurface::Patch& patch) const;
    void addLines();
    void addSections();
    void addMarks(const CaseFindings& findings);
    void addLegend();
    std::vector<int> renumbered(const std::vector<int>& vertices);

    const CaseView& view_;
    const PictureOptions& options_;
    CaseSurface surface_;
    PictureColours colours_;
    PictureData data_;
    std::vector<int> numbers_; ///< of the case's vertices, among those of the picture
    QString findingsText_;
    bool isSolidShown_ = false; ///< there is something within the fluid to see
    std::map<const Geo::ModelEntity*, Point> offsets_;
};

} // namespace Ovra::GeoTool
