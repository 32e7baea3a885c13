#include "PictureScene.h"

#include "AxisNumbers.h"
#include "CaseFindings.h"
#include "CaseView.h"
#include "Counted.h"
#include "ElementTopology.h"
#include "EntityNames.h"
#include "EntityTitle.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Point = PictureData::Point;
using Colour = PictureData::Colour;

constexpr Colour errorColour = {0.86, 0.12, 0.18};
constexpr Colour warningColour = {0.93, 0.65, 0.05};
constexpr std::size_t mostPolygonsWithLines = 100000;
constexpr double seeThrough = 0.14;

/// Of the axes along which the box has no extent, the last; -1 if there is none.
int flatAxis(const Box& box)
{
    const Point extent = pictured(box.maximum() - box.minimum());
    const double largest = std::max({extent[0], extent[1], extent[2]});
    for (const std::size_t axis : {2U, 1U, 0U}) {
        if (extent.at(axis) <= 1e-6 * largest) {
            return static_cast<int>(axis);
        }
    }
    return -1;
}

/// From ahead of a flat case; else from the front, the right, and above, and most from where the
/// case is cut open.
Point directionOf(int flatAxis, const std::optional<PictureOptions::Cut>& cut)
{
    constexpr std::array<Point, 3> ahead = {{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};
    constexpr std::array<Point, 3> towardsCut = {
        {{1.9, -1.0, 0.9}, {0.8, -1.9, 0.9}, {0.8, -1.2, 2.0}}};
    if (flatAxis >= 0) {
        return ahead.at(static_cast<std::size_t>(flatAxis));
    }
    return cut ? towardsCut.at(static_cast<std::size_t>(cut->axis)) : Point{1, -1.7, 1.1};
}

/// Null where it stands on none, or there is no such entity.
const ModelEntity* modelEntityOf(const EntityName& name, const CaseView& view)
{
    if (name.dimension == EntityName::Whole) {
        return nullptr;
    }
    if (name.owner == EntityName::Owner::Model) {
        return view.model().entity(name.dimension, name.id);
    }
    const MeshEntity* const entity = view.mesh().entity(name.dimension, name.id);
    return entity ? entity->parent() : nullptr;
}

/// Without what would break a line.
QString printable(QString text)
{
    for (QChar& character : text) {
        character = character.isPrint() ? character : QLatin1Char(' ');
    }
    return text;
}

/// No longer than the column is wide.
std::string legendText(const QString& text)
{
    constexpr qsizetype longest = 26;
    return printable(text.size() > longest ? text.left(longest - 3) + QStringLiteral("...") : text)
        .toStdString();
}

} // namespace

PictureScene::PictureScene(const CaseView& view, const PictureOptions& options,
                           const CaseFindings* findings)
    : view_(view)
    , options_(options)
    , surface_(view)
    , parts_(view, surface_, options)
    , colours_(view, options.colorBy)
    , numbers_(view.points().size(), -1)
{
    data_.width = options.width;
    data_.height = options.height;
    look();
    placeBox();
    nameAxes();
    addParts();
    addLines();
    if (data_.plane && options.faces.isEmpty()) {
        addSections();
    }
    addLegend();
    if (findings) {
        addMarks(*findings);
    }
}

void PictureScene::setTitle(const QString& name)
{
    const int dimension = view_.elementDimension();
    const auto count = [](const auto& entities) { return static_cast<qint64>(entities.size()); };
    QStringList facts = {counted(count(view_.meshEntities(dimension)), QStringLiteral("element")) +
                         QStringLiteral(" in ") +
                         counted(count(view_.modelEntities(dimension)), kindName(dimension))};
    if (!options_.faces.isEmpty()) {
        facts += QStringLiteral("shown: ") + options_.faces.join(QStringLiteral(", "));
    }
    if (data_.plane) {
        facts += QStringLiteral("cut at %1 = %2")
                     .arg(QStringLiteral("xyz").at(data_.plane->axis))
                     .arg(data_.plane->at);
    }
    if (!findingsText_.isEmpty()) {
        facts += findingsText_;
    }
    data_.title = printable(name).toStdString();
    data_.subtitle = printable(facts.join(QStringLiteral("; "))).toStdString();
}

void PictureScene::look()
{
    const Box box = parts_.box();
    const int flat = flatAxis(box);
    data_.from = directionOf(flat, options_.cut);
    data_.up = flat == 2 ? Point{0, 1, 0} : Point{0, 0, 1};
    if (options_.cut) {
        cut(box);
    }
}

void PictureScene::nameAxes()
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (options_.explode == 0.0) {
            data_.axisNumbers.at(axis) = axisNumbers(data_.low.at(axis), data_.high.at(axis));
        }
        const QString name = QStringLiteral("xyz").at(static_cast<qsizetype>(axis));
        data_.axisTitles.at(axis) = legendText(
            options_.unit.isEmpty() ? name : QStringLiteral("%1 [%2]").arg(name, options_.unit));
    }
}

/// What is nearer to the eye than the plane goes.
void PictureScene::cut(const Box& box)
{
    const auto axis = static_cast<std::size_t>(options_.cut->axis);
    const double at = options_.cut->at;
    const double low = pictured(box.minimum()).at(axis);
    const double high = pictured(box.maximum()).at(axis);
    if (at <= low || at >= high) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("--clip: %1 = %2 does not cut what is shown, from %3 to %4")
                            .arg(QStringLiteral("xyz").at(options_.cut->axis))
                            .arg(at)
                            .arg(low)
                            .arg(high));
    }
    const bool keepsAbove = data_.from.at(axis) < 0;
    data_.plane = PictureData::Plane{options_.cut->axis, at, keepsAbove};
}

/// Of what is drawn of a part, where it is drawn: it is cut first, and moved then.
Box PictureScene::boxOf(const PictureParts::Part& part) const
{
    const Box box = parts_.boxOf(part);
    Point low = pictured(box.minimum());
    Point high = pictured(box.maximum());
    if (data_.plane) {
        const auto axis = static_cast<std::size_t>(data_.plane->axis);
        double& side = (data_.plane->keepsAbove ? low : high).at(axis);
        side = data_.plane->keepsAbove ? std::max(side, data_.plane->at)
                                       : std::min(side, data_.plane->at);
    }
    const Point offset = parts_.offsetOf(part.body);
    const Vector move(offset[0], offset[1], offset[2]);
    return {Vector(low[0], low[1], low[2]) + move, Vector(high[0], high[1], high[2]) + move};
}

void PictureScene::placeBox()
{
    Box whole;
    for (const PictureParts::Part& part : parts_.all()) {
        if (!isCutAway(part)) {
            whole += boxOf(part);
        }
    }
    data_.low = pictured(whole.minimum());
    data_.high = pictured(whole.maximum());
}

/// Whether nothing of a part is on the side of the plane that is drawn.
bool PictureScene::isCutAway(const PictureParts::Part& part) const
{
    if (!data_.plane) {
        return false;
    }
    const auto axis = static_cast<std::size_t>(data_.plane->axis);
    const Box box = parts_.boxOf(part);
    return data_.plane->keepsAbove ? pictured(box.maximum()).at(axis) < data_.plane->at
                                   : pictured(box.minimum()).at(axis) > data_.plane->at;
}

void PictureScene::addParts()
{
    const std::vector<PictureParts::Part>& parts = parts_.all();
    const bool isSolidShown = std::any_of(parts.begin(), parts.end(), [](const auto& part) {
        return part.body && !isFluid(part.body);
    });
    // A fluid that is neither cut open nor taken apart hides what lies within it.
    const bool isFluidClear = isSolidShown && !data_.plane && options_.faces.isEmpty();
    std::size_t polygons = 0;
    for (const PictureParts::Part& part : parts) {
        polygons += surface_.patches()[part.patch].polygonCount();
        const bool isClear = isFluidClear && isFluid(part.body) && !colours_.isMarked(part.face);
        addPart(part, isClear ? seeThrough : 1.0);
    }
    data_.hasMeshLines = polygons <= mostPolygonsWithLines;
}

void PictureScene::addPart(const PictureParts::Part& part, double opacity)
{
    const CaseSurface::Patch& patch = surface_.patches()[part.patch];
    if (isCutAway(part)) {
        return;
    }
    PictureData::Surface surface;
    surface.colour = colours_.of(part.face, part.body);
    surface.opacity = opacity;
    surface.isBehind = !colours_.hasValue(part.face, part.body);
    surface.offset = parts_.offsetOf(part.body);
    surface.triangles = renumbered(patch.triangles);
    surface.quadrilaterals = renumbered(patch.quadrilaterals);
    data_.surfaces.push_back(std::move(surface));
}

void PictureScene::addLines()
{
    for (const CaseSurface::Line& line : surface_.lines()) {
        if (!parts_.hasEdge(*line.entity)) {
            continue;
        }
        for (const Point& offset : parts_.offsetsOf(line.entity)) {
            data_.lines.push_back({offset, renumbered(line.ends)});
        }
    }
}

bool PictureScene::isCutAway(const Vector& place) const
{
    if (!data_.plane) {
        return false;
    }
    const double at = pictured(place).at(static_cast<std::size_t>(data_.plane->axis));
    return data_.plane->keepsAbove ? at < data_.plane->at : at > data_.plane->at;
}

/// Whether the vertices lie on both sides of the plane, or on it.
bool PictureScene::isCut(std::span<const int> vertices) const
{
    const auto axis = static_cast<std::size_t>(data_.plane->axis);
    bool isBelow = false;
    bool isAbove = false;
    for (const int vertex : vertices) {
        const Vector& point = view_.points()[static_cast<std::size_t>(vertex)];
        const double place = pictured(point).at(axis);
        isBelow = isBelow || place <= data_.plane->at;
        isAbove = isAbove || place >= data_.plane->at;
    }
    return isBelow && isAbove;
}

void PictureScene::addSections()
{
    if (view_.elementDimension() < 3) {
        return;
    }
    std::map<int, std::pair<const ModelEntity*, PictureData::Section>> sections;
    const VertexLists& lists = view_.vertexLists(3);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const auto vertices = lists.of(i);
        const bool isOfKnownKind = ElementTopology::find(3, static_cast<int>(vertices.size()));
        if (isOfKnownKind && isCut(vertices) && surface_.isDrawable(vertices)) {
            const ModelEntity* const body = view_.meshEntities(3)[i]->parent();
            auto& [owner, section] = sections[body ? body->id() : 0];
            owner = body;
            const std::vector<int> own = renumbered({vertices.begin(), vertices.end()});
            section.vertices.insert(section.vertices.end(), own.begin(), own.end());
            section.starts.push_back(static_cast<int>(section.vertices.size()));
        }
    }
    for (auto& [id, each] : sections) {
        each.second.colour = colours_.of(nullptr, each.first);
        each.second.offset = parts_.offsetOf(each.first);
        data_.sections.push_back(std::move(each.second));
    }
}

void PictureScene::addMarks(const CaseFindings& findings)
{
    for (const auto& [kind, group] : findings.groups()) {
        const bool isError = findingSeverity(kind) == Severity::Error;
        const Colour colour = isError ? errorColour : warningColour;
        for (const Finding& finding : group.first) {
            if (finding.place && std::isfinite(finding.place->length())) {
                addMark(finding, colour);
            }
        }
        data_.legend.push_back(
            {colour, legendText(QStringLiteral("%1 (%2)").arg(findingName(kind)).arg(group.count)),
             true});
    }
    tellOf(findings);
}

/// It goes with what is cut away, and moves with what it stands on.
void PictureScene::addMark(const Finding& finding, const Colour& colour)
{
    if (isCutAway(*finding.place)) {
        ++marksCutAway_;
        return;
    }
    for (const Point& offset : parts_.offsetsOf(modelEntityOf(finding.entity, view_))) {
        const Point place = pictured(*finding.place);
        data_.marks.push_back(
            {colour, {place[0] + offset[0], place[1] + offset[1], place[2] + offset[2]}});
    }
}

void PictureScene::tellOf(const CaseFindings& findings)
{
    findingsText_ = counted(findings.errorCount(), QStringLiteral("error")) + QStringLiteral(", ") +
                    counted(findings.warningCount(), QStringLiteral("warning"));
    if (marksCutAway_ > 0) {
        findingsText_ +=
            QStringLiteral(" (%1 cut away)").arg(counted(marksCutAway_, QStringLiteral("mark")));
    }
}

void PictureScene::addLegend()
{
    constexpr std::size_t mostEntries = 20;
    data_.legendTitle = legendText(colours_.by());
    data_.legend = colours_.legend();
    const std::size_t count = data_.legend.size();
    if (count > mostEntries) {
        data_.legend.resize(mostEntries - 1);
        data_.legend.push_back(
            {{1, 1, 1},
             QStringLiteral("and %1 more").arg(count - mostEntries + 1).toStdString(),
             false});
    }
    if (const auto entry = colours_.neutralEntry()) {
        data_.legend.push_back(*entry);
    }
    for (PictureData::LegendEntry& entry : data_.legend) {
        entry.text = legendText(QString::fromStdString(entry.text));
    }
}

std::vector<int> PictureScene::renumbered(const std::vector<int>& vertices)
{
    std::vector<int> result;
    result.reserve(vertices.size());
    for (const int vertex : vertices) {
        int& number = numbers_[static_cast<std::size_t>(vertex)];
        if (number < 0) {
            number = static_cast<int>(data_.points.size());
            data_.points.push_back(pictured(view_.points()[static_cast<std::size_t>(vertex)]));
        }
        result.push_back(number);
    }
    return result;
}

} // namespace Ovra::GeoTool
