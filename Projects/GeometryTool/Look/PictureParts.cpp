#include "PictureParts.h"

#include "CaseView.h"
#include "MaterialKind.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <algorithm>
#include <set>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

Box boxOfPoints(const std::vector<int>& vertices, const std::vector<Vector>& points)
{
    Box box;
    for (const int vertex : vertices) {
        box += points[static_cast<std::size_t>(vertex)];
    }
    return box;
}

} // namespace

bool isFluid(const ModelEntity* body)
{
    return body && materialKind(body) == QLatin1String("fluid");
}

PictureData::Point pictured(const Vector& point)
{
    return {point.x(), point.y(), point.z()};
}

PictureParts::PictureParts(const CaseView& view, const CaseSurface& surface,
                           const PictureOptions& options)
    : view_(view)
    , surface_(surface)
    , options_(options)
    , choice_(view, options.faces)
{
    choose();
    if (parts_.empty()) {
        throw ToolError(ExitCode::Unsuitable, QStringLiteral("the case has no faces to show"));
    }
    moveApart();
}

void PictureParts::choose()
{
    for (std::size_t patch = 0; patch < surface_.patches().size(); ++patch) {
        if (choice_.includes(surface_.patches()[patch].entity)) {
            add(patch);
        }
    }
}

/// One part for each side where the regions stand apart.
void PictureParts::add(std::size_t patch)
{
    const ModelEntity* const entity = surface_.patches()[patch].entity;
    const bool isFace = entity && entity->dimension() < view_.elementDimension();
    if (!isFace) {
        parts_.push_back({patch, nullptr, entity});
        return;
    }
    const std::vector<const ModelEntity*> bodies = bodiesOf(*entity);
    if (options_.explode == 0.0 || bodies.size() < 2) {
        parts_.push_back({patch, entity, bodyShown(*entity)});
        return;
    }
    for (const ModelEntity* body : bodies) {
        parts_.push_back({patch, entity, body});
    }
}

/// Of the regions on both sides, the one that is not fluid: it is what one wants to see.
const ModelEntity* PictureParts::bodyShown(const ModelEntity& face) const
{
    const std::vector<const ModelEntity*> bodies = bodiesOf(face);
    const auto found = std::find_if_not(bodies.begin(), bodies.end(), isFluid);
    return found != bodies.end() ? *found : bodies.empty() ? nullptr : bodies.front();
}

std::vector<const ModelEntity*> PictureParts::bodiesOf(const ModelEntity& entity) const
{
    const int dimension = view_.elementDimension();
    if (entity.dimension() == dimension) {
        return {&entity};
    }
    const auto lessThan = [](const ModelEntity* a, const ModelEntity* b) {
        return a->id() < b->id();
    };
    std::set<const ModelEntity*, decltype(lessThan)> bodies(lessThan);
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

Box PictureParts::boxOf(const Part& part) const
{
    const CaseSurface::Patch& patch = surface_.patches()[part.patch];
    Box box = boxOfPoints(patch.triangles, view_.points());
    box += boxOfPoints(patch.quadrilaterals, view_.points());
    return box;
}

void PictureParts::moveApart()
{
    if (options_.explode == 0.0) {
        return;
    }
    std::map<const ModelEntity*, Box> boxes;
    for (const Part& part : parts_) {
        boxes[part.body] += boxOf(part);
    }
    const Box whole = box();
    const Vector middle = (whole.minimum() + whole.maximum()) / 2.0;
    for (const auto& [body, box] : boxes) {
        const Vector centre = (box.minimum() + box.maximum()) / 2.0;
        offsets_[body] =
            body ? pictured((centre - middle) * options_.explode) : PictureData::Point{};
    }
}

bool PictureParts::hasEdge(const ModelEntity& edge) const
{
    const int faces = view_.faceDimension();
    bool isShown = choice_.includes(&edge); // itself a face of a case without regions
    for (int i = 0; !isShown && faces > 1 && i < edge.adjacencyCount(faces); ++i) {
        isShown = choice_.includes(edge.adjacencyAt(faces, i));
    }
    return isShown;
}

PictureData::Point PictureParts::offsetOf(const ModelEntity* body) const
{
    const auto found = offsets_.find(body);
    return found == offsets_.end() ? PictureData::Point{} : found->second;
}

std::vector<PictureData::Point> PictureParts::offsetsOf(const ModelEntity* entity) const
{
    std::vector<PictureData::Point> offsets;
    if (entity && options_.explode != 0.0) {
        for (const ModelEntity* body : bodiesOf(*entity)) {
            if (offsets_.count(body) > 0) {
                offsets.push_back(offsetOf(body));
            }
        }
    }
    return offsets.empty() ? std::vector(1, PictureData::Point{}) : offsets;
}

Box PictureParts::box() const
{
    Box whole;
    for (const Part& part : parts_) {
        whole += boxOf(part);
    }
    return whole;
}

} // namespace Ovra::GeoTool
