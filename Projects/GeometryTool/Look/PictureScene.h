#pragma once

#include "Box.h"
#include "CaseSurface.h"
#include "PictureColours.h"
#include "PictureData.h"
#include "PictureOptions.h"
#include "PictureParts.h"

#include <span>

namespace Ovra::GeoTool
{

class CaseFindings;
class CaseView;
struct Finding;

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
    void look();
    void cut(const Geo::Box& box);
    Geo::Box boxOf(const PictureParts::Part& part) const;
    void placeBox();
    void nameAxes();
    bool isCutAway(const PictureParts::Part& part) const;
    bool isCutAway(const Geo::Vector& place) const;
    bool isCut(std::span<const int> vertices) const;
    void addParts();
    void addPart(const PictureParts::Part& part, double opacity);
    void addLines();
    void addSections();
    void addMarks(const CaseFindings& findings);
    void addMark(const Finding& finding, const PictureData::Colour& colour);
    void tellOf(const CaseFindings& findings);
    void addLegend();
    std::vector<int> renumbered(const std::vector<int>& vertices);

    const CaseView& view_;
    const PictureOptions& options_;
    CaseSurface surface_;
    PictureParts parts_;
    PictureColours colours_;
    PictureData data_;
    std::vector<int> numbers_; ///< of the case's vertices, among those of the picture
    qint64 marksCutAway_ = 0;
    QString findingsText_;
};

} // namespace Ovra::GeoTool
