#include "PictureScene.h"

#include "Box.h"
#include "CaseFindings.h"
#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "EntityTitle.h"
#include "FaceChoice.h"
#include "MaterialKind.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <algorithm>
#include <cmath>
#include <set>

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

Point pointOf(const Vector& vector)
{
    return {vector.x(), vector.y(), vector.z()};
}

bool isFluid(const ModelEntity* body)
{
    return body && materialKind(body) == QLatin1String("fluid");
}

Box boxOf(const std::vector<int>& vertices, const std::vector<Vector>& points)
{
    Box box;
    for (const int vertex : vertices) {
        box += points[static_cast<std::size_t>(vertex)];
    }
    return box;
}

Box boxOf(const CaseSurface::Patch& patch, const std::vector<Vector>& points)
{
    Box box = boxOf(patch.triangles, points);
    box += boxOf(patch.quadrilaterals, points);
    return box;
}

/// Box::isValid() answers true for the box of nothing.
bool isEmpty(const Box& box)
{
    return box.isValid();
}

/// Of the axes along which the box has no extent, the last; -1 if there is none.
int flatAxis(const PictureData& data)
{
    const double largest = std::max(
        {data.high[0] - data.low[0], data.high[1] - data.low[1], data.high[2] - data.low[2]});
    for (const std::size_t axis : {2U, 1U, 0U}) {
        if (data.high.at(axis) - data.low.at(axis) <= 1e-6 * largest) {
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

/// Without what would break a line, and no longer than the column is wide.
std::string legendText(QString text)
{
    constexpr qsizetype longest = 26;
    for (QChar& character : text) {
        character = character.isPrint() ? character : QLatin1Char(' ');
    }
    return (text.size() > longest ? text.left(longest - 3) + QStringLiteral("...") : text)
        .toStdString();
}

} // namespace

PictureScene::PictureScene(const CaseView& view, const PictureOptions& options,
                           const CaseFindings* findings)
    : view_(view)
    , options_(options)
    , surface_(view)
    , colours_(view, options.colorBy)
    , numbers_(view.points().size(), -1)
{
    data_.width = options.width;
    data_.height = options.height;
    const std::vector<Part> parts = chosenParts();
    if (parts.empty()) {
        throw ToolError(ExitCode::Unsuitable, QStringLiteral("the case has no faces to show"));
    }
    moveApart(parts);
    look(parts);
    nameAxes();
    cut();
    isSolidShown_ = std::any_of(parts.begin(), parts.end(),
                                [](const Part& part) { return part.body && !isFluid(part.body); });
    std::size_t polygons = 0;
    for (const Part& part : parts) {
        polygons += surface_.patches()[part.patch].polygonCount();
        addPart(part);
    }
    data_.hasMeshLines = polygons <= mostPolygonsWithLines;
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
    QString text = counted(count(view_.meshEntities(dimension)), QStringLiteral("element")) +
                   QStringLiteral(" in ") +
                   counted(count(view_.modelEntities(dimension)), kindName(dimension));
    if (data_.plane) {
        text += QStringLiteral(", cut at %1 = %2")
                    .arg(QStringLiteral("xyz").at(data_.plane->axis))
                    .arg(data_.plane->at);
    }
    if (options_.hasFindings) {
        text += QStringLiteral(": ") + findingsText_;
    }
    data_.title = legendText(name);
    data_.subtitle = text.toStdString();
}

std::vector<PictureScene::Part> PictureScene::chosenParts() const
{
    const FaceChoice choice(view_, options_.faces);
    std::vector<Part> parts;
    for (std::size_t patch = 0; patch < surface_.patches().size(); ++patch) {
        if (choice.includes(surface_.patches()[patch].entity)) {
            const std::vector<Part> some = partsOf(patch);
            parts.insert(parts.end(), some.begin(), some.end());
        }
    }
    return parts;
}

/// One part for each side where the regions stand apart.
std::vector<PictureScene::Part> PictureScene::partsOf(std::size_t patch) const
{
    const ModelEntity* const entity = surface_.patches()[patch].entity;
    const bool isFace = entity && entity->dimension() < view_.elementDimension();
    const ModelEntity* const face = isFace ? entity : nullptr;
    const std::vector<const ModelEntity*> bodies =
        isFace ? bodiesOf(*entity) : std::vector<const ModelEntity*>();
    if (options_.explode == 0.0 || bodies.size() < 2) {
        return {{patch, face, isFace ? bodyShown(face) : entity}};
    }
    std::vector<Part> parts;
    for (const ModelEntity* body : bodies) {
        parts.push_back({patch, face, body});
    }
    return parts;
}

/// Of the regions on both sides, the one that is not fluid: it is what one wants to see.
const ModelEntity* PictureScene::bodyShown(const ModelEntity* face) const
{
    const std::vector<const ModelEntity*> bodies = bodiesOf(*face);
    const auto found = std::find_if_not(bodies.begin(), bodies.end(), isFluid);
    return found != bodies.end() ? *found : bodies.empty() ? nullptr : bodies.front();
}

/// By id; of an edge, those of its faces.
std::vector<const ModelEntity*> PictureScene::bodiesOf(const ModelEntity& entity) const
{
    const auto lessThan = [](const ModelEntity* a, const ModelEntity* b) {
        return a->id() < b->id();
    };
    std::set<const ModelEntity*, decltype(lessThan)> bodies(lessThan);
    const int dimension = view_.elementDimension();
    for (int i = 0; i < entity.adjacencyCount(dimension); ++i) {
        bodies.insert(entity.adjacencyAt(dimension, i));
    }
    const int faces = entity.dimension() + 1;
    for (int i = 0; faces < dimension && i < entity.adjacencyCount(faces); ++i) {
        const std::vector<const ModelEntity*> some = bodiesOf(*entity.adjacencyAt(faces, i));
        bodies.insert(some.begin(), some.end());
    }
    return {bodies.begin(), bodies.end()};
}

void PictureScene::moveApart(const std::vector<Part>& parts)
{
    std::map<const ModelEntity*, Box> boxes;
    Box whole;
    for (const Part& part : parts) {
        const Box box = boxOf(surface_.patches()[part.patch], view_.points());
        boxes[part.body] += box;
        whole += box;
    }
    const Vector middle = (whole.minimum() + whole.maximum()) / 2.0;
    for (const auto& [body, box] : boxes) {
        const Vector centre = (box.minimum() + box.maximum()) / 2.0;
        offsets_[body] = body ? pointOf((centre - middle) * options_.explode) : Point{};
    }
}

PictureScene::Point PictureScene::offsetOf(const ModelEntity* body) const
{
    const auto found = offsets_.find(body);
    return found == offsets_.end() ? Point{} : found->second;
}

void PictureScene::look(const std::vector<Part>& parts)
{
    Box box;
    for (const Part& part : parts) {
        const Point offset = offsetOf(part.body);
        const Vector move(offset[0], offset[1], offset[2]);
        const Box some = boxOf(surface_.patches()[part.patch], view_.points());
        if (!isEmpty(some)) {
            box += some.minimum() + move;
            box += some.maximum() + move;
        }
    }
    data_.low = pointOf(box.minimum());
    data_.high = pointOf(box.maximum());
    const int flat = flatAxis(data_);
    data_.from = directionOf(flat, options_.cut);
    data_.up = flat == 2 ? Point{0, 1, 0} : Point{0, 0, 1};
}

void PictureScene::nameAxes()
{
    data_.hasAxisNumbers = options_.explode == 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const QString name = QStringLiteral("xyz").at(static_cast<qsizetype>(axis));
        data_.axisTitles.at(axis) =
            (options_.unit.isEmpty() ? name : QStringLiteral("%1 [%2]").arg(name, options_.unit))
                .toStdString();
    }
}

/// What is nearer to the eye than the plane goes.
void PictureScene::cut()
{
    if (!options_.cut) {
        return;
    }
    const auto axis = static_cast<std::size_t>(options_.cut->axis);
    const double at = options_.cut->at;
    if (at <= data_.low.at(axis) || at >= data_.high.at(axis)) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("--clip: %1 = %2 lies outside of what is shown, from %3 to %4")
                .arg(QStringLiteral("xyz").at(options_.cut->axis))
                .arg(at)
                .arg(data_.low.at(axis))
                .arg(data_.high.at(axis)));
    }
    const bool keepsAbove = data_.from.at(axis) < 0;
    data_.plane = PictureData::Plane{options_.cut->axis, at, keepsAbove};
    (keepsAbove ? data_.low : data_.high).at(axis) = at;
}

/// Whether there is anything of a patch on the side of the plane that is drawn.
bool PictureScene::isCutAway(const CaseSurface::Patch& patch) const
{
    if (!data_.plane) {
        return false;
    }
    const auto axis = static_cast<std::size_t>(data_.plane->axis);
    const Box box = boxOf(patch, view_.points());
    return data_.plane->keepsAbove ? pointOf(box.maximum()).at(axis) < data_.plane->at
                                   : pointOf(box.minimum()).at(axis) > data_.plane->at;
}

void PictureScene::addPart(const Part& part)
{
    const CaseSurface::Patch& patch = surface_.patches()[part.patch];
    if (isCutAway(patch)) {
        return;
    }
    PictureData::Surface surface;
    surface.colour = colours_.of(part.face, part.body);
    surface.opacity = isSeenThrough(part) ? seeThrough : 1.0;
    surface.offset = offsetOf(part.body);
    surface.triangles = renumbered(patch.triangles);
    surface.quadrilaterals = renumbered(patch.quadrilaterals);
    data_.surfaces.push_back(std::move(surface));
}

/// A fluid that is neither cut open nor taken apart hides what lies within it.
bool PictureScene::isSeenThrough(const Part& part) const
{
    return isSolidShown_ && isFluid(part.body) && !data_.plane && options_.faces.isEmpty();
}

void PictureScene::addLines()
{
    for (const CaseSurface::Line& line : surface_.lines()) {
        std::vector<const ModelEntity*> bodies = bodiesOf(*line.entity);
        if (options_.explode == 0.0 || bodies.empty()) {
            bodies = {nullptr};
        }
        for (const ModelEntity* body : bodies) {
            data_.lines.push_back({offsetOf(body), renumbered(line.ends)});
        }
    }
}

void PictureScene::addSections()
{
    if (view_.elementDimension() < 3) {
        return;
    }
    const auto coordinate = [&](int vertex) {
        const Vector& point = view_.points()[static_cast<std::size_t>(vertex)];
        return pointOf(point).at(static_cast<std::size_t>(data_.plane->axis));
    };
    std::map<int, std::pair<const ModelEntity*, PictureData::Section>> sections;
    const VertexLists& lists = view_.vertexLists(3);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const auto vertices = lists.of(i);
        const bool isBelow = std::any_of(vertices.begin(), vertices.end(), [&](int vertex) {
            return coordinate(vertex) <= data_.plane->at;
        });
        const bool isAbove = std::any_of(vertices.begin(), vertices.end(), [&](int vertex) {
            return coordinate(vertex) >= data_.plane->at;
        });
        const ModelEntity* const body = view_.meshEntities(3)[i]->parent();
        if (isBelow && isAbove && body && surface_.isDrawable(vertices)) {
            auto& [owner, section] = sections[body->id()];
            owner = body;
            const std::vector<int> own = renumbered({vertices.begin(), vertices.end()});
            section.vertices.insert(section.vertices.end(), own.begin(), own.end());
            section.starts.push_back(static_cast<int>(section.vertices.size()));
        }
    }
    for (auto& [id, each] : sections) {
        each.second.colour = colours_.of(nullptr, each.first);
        each.second.offset = offsetOf(each.first);
        data_.sections.push_back(std::move(each.second));
    }
}

void PictureScene::addMarks(const CaseFindings& findings)
{
    findingsText_ = counted(findings.errorCount(), QStringLiteral("error")) + QStringLiteral(", ") +
                    counted(findings.warningCount(), QStringLiteral("warning"));
    for (const auto& [kind, group] : findings.groups()) {
        const bool isError = findingSeverity(kind) == Severity::Error;
        const Colour colour = isError ? errorColour : warningColour;
        for (const Finding& finding : group.first) {
            if (finding.place && std::isfinite(finding.place->length())) {
                data_.marks.push_back({colour, pointOf(*finding.place)});
            }
        }
        data_.legend.push_back(
            {colour, legendText(QStringLiteral("%1 (%2)").arg(findingName(kind)).arg(group.count)),
             true});
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
            data_.points.push_back(pointOf(view_.points()[static_cast<std::size_t>(vertex)]));
        }
        result.push_back(number);
    }
    return result;
}

} // namespace Ovra::GeoTool
