#include "SideCheck.h"

#include "CaseView.h"
#include "Counted.h"
#include "ElementCheck.h"
#include "ElementQuality.h"
#include "FindingSink.h"
#include "InParallel.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "Progress.h"

#include <QStringList>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// It takes a third of a millisecond to look at the sides of these, several times as long as a thread to start.
constexpr std::size_t fewVertices = 2048;

bool isInsideOut(const MeshEntity& element)
{
    return ElementQuality::measureOf(element) < 0.0;
}

bool bounds(const ModelEntity& face, const ModelEntity* region)
{
    auto regions = face.adjacencyIterator(face.dimension() + 1);
    while (regions.hasNext()) {
        if (regions.next() == region) {
            return true;
        }
    }
    return false;
}

} // namespace

SideCheck::SideCheck(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
    , elements_(view.upward(view.faceDimension()))
    , sides_(view)
{
    const VertexLists& faces = view.vertexLists(view.faceDimension());
    facesByPart_ = Buckets<int>(sides_.parts().size(), [&](auto add) {
        for (std::size_t i = 0; i < faces.size(); ++i) {
            if (ElementCheck::isWellFormed(view.faceDimension(), faces.of(i))) {
                add(sides_.partOf(ElementSides::keyOf(faces.of(i))), static_cast<int>(i));
            }
        }
    });
}

void SideCheck::run(Progress& progress)
{
    const auto count = static_cast<qint64>(view_.meshEntities(0).size());
    for (std::size_t i = 0; i < sides_.parts().size(); ++i) {
        const ElementSides::Part& part = sides_.parts()[i];
        sides_.collect(part);
        cover(facesByPart_[i]);
        checkFaces(facesByPart_[i]);
        checkRuns(part);
        progress.update(part.end, count, QStringLiteral("vertices"));
    }
}

void SideCheck::cover(std::span<const int> faces)
{
    const VertexLists& lists = view_.vertexLists(view_.faceDimension());
    covered_.clear();
    for (const int face : faces) {
        covered_.push_back(ElementSides::keyOf(lists.of(static_cast<std::size_t>(face))));
    }
    std::sort(covered_.begin(), covered_.end());
}

void SideCheck::checkFaces(std::span<const int> faces)
{
    const VertexLists& lists = view_.vertexLists(view_.faceDimension());
    for (const int position : faces) {
        const auto face = static_cast<std::size_t>(position);
        checkFace(face, sides_.find(ElementSides::keyOf(lists.of(face))));
    }
}

void SideCheck::checkRuns(const ElementSides::Part& part)
{
    const auto first = static_cast<std::size_t>(part.begin);
    const std::vector<std::size_t> suspects =
        placesInParallel(static_cast<std::size_t>(part.end) - first, fewVertices,
                         [&](std::size_t i) { return isSuspect(static_cast<int>(first + i)); });
    for (const std::size_t i : suspects) {
        sides_.forEachRun(
            static_cast<int>(first + i),
            [this](const auto& key, ElementSides::Run sides) { checkRun(key, sides); });
    }
}

/// Whether at a vertex other sides meet than two within a region, from either side.
bool SideCheck::isSuspect(int vertex) const
{
    bool isSuspect = false;
    sides_.forEachRun(vertex, [&](const auto&, ElementSides::Run sides) {
        const bool arePlain = sides.size() == 2 &&
                              sides.front().isRising() != sides.back().isRising() &&
                              sides_.regionOf(sides.front()) == sides_.regionOf(sides.back());
        isSuspect = isSuspect || !arePlain;
    });
    return isSuspect;
}

void SideCheck::checkElementCount(const MeshEntity& face, std::size_t count, FindingSink& sink)
{
    if (count > 2) {
        sink.add(FindingKind::TooManyElements, face, [count] {
            return QStringLiteral("lies between %1; a face has two sides")
                .arg(counted(static_cast<qint64>(count), QStringLiteral("element")));
        });
    }
}

void SideCheck::checkFace(std::size_t position, ElementSides::Run sides)
{
    const MeshEntity& face = *view_.meshEntities(view_.faceDimension())[position];
    checkElementCount(face, elements_.of(position).size(), sink_);
    checkElementsAt(position, sides);
    if (face.parent() && face.parent()->dimension() == face.dimension()) {
        checkRegions(face, sides);
    }
}

void SideCheck::checkElementsAt(std::size_t position, ElementSides::Run sides)
{
    const int dimension = view_.elementDimension();
    const std::span<const int> elements = elements_.of(position);
    if (elements.size() == sides.size()) {
        return; // a side is one of an element that has all its vertices
    }
    for (const int each : elements) {
        const auto element = static_cast<std::size_t>(each);
        const bool isSide =
            std::ranges::binary_search(sides, element, {}, &ElementSides::Side::element);
        if (!isSide &&
            ElementCheck::isWellFormed(dimension, view_.vertexLists(dimension).of(element))) {
            sink_.add(FindingKind::NoSide, *view_.meshEntities(view_.faceDimension())[position],
                      [&other = *view_.meshEntities(dimension)[element]] {
                          return QStringLiteral("has all its vertices in %1, but is no side of it")
                              .arg(EntityName(other).text());
                      });
        }
    }
}

void SideCheck::checkRegions(const MeshEntity& face, ElementSides::Run sides)
{
    const ModelEntity& modelFace = *face.parent();
    auto regions = modelFace.adjacencyIterator(view_.elementDimension());
    while (regions.hasNext()) {
        const ModelEntity* const region = regions.next();
        if (region->childCount() == 0 || hasElementIn(sides, region)) {
            continue;
        }
        reportMissing(face, *region, sides.empty());
        if (sides.empty()) {
            return;
        }
    }
    if (modelFace.adjacencyCount(view_.elementDimension()) > 0) {
        checkForeign(face, sides);
    }
}

void SideCheck::checkForeign(const MeshEntity& face, ElementSides::Run sides)
{
    const ModelEntity& modelFace = *face.parent();
    const ModelEntity* bounded = nullptr; // most, of however many sides, are of the same
    for (const auto& side : sides) {
        const ModelEntity* const region = sides_.regionOf(side);
        if (!region || region == bounded) {
            continue;
        }
        if (bounds(modelFace, region)) {
            bounded = region;
            continue;
        }
        sink_.add(FindingKind::ForeignElement, face,
                  [&modelFace, &element = sides_.elementOf(side)] {
                      return QStringLiteral("is a side of %1 in %2, which its %3 does not bound")
                          .arg(EntityName(element).text(), EntityName(*element.parent()).text(),
                               EntityName(modelFace).text());
                  });
    }
}

bool SideCheck::hasElementIn(ElementSides::Run sides, const ModelEntity* region) const
{
    return std::any_of(sides.begin(), sides.end(),
                       [&](const auto& side) { return sides_.regionOf(side) == region; });
}

void SideCheck::reportMissing(const MeshEntity& face, const ModelEntity& region, bool isBare)
{
    const ModelEntity& modelFace = *face.parent();
    if (isBare) {
        sink_.add(FindingKind::FaceWithoutElement, face, [&region, &modelFace] {
            return QStringLiteral("is a side of no element, though its %1 bounds %2, which has a "
                                  "mesh")
                .arg(EntityName(modelFace).text(), EntityName(region).text());
        });
    } else {
        sink_.add(FindingKind::MissingNeighbour, face, [&region, &modelFace] {
            return QStringLiteral("is a side of no element of %1, which its %2 bounds")
                .arg(EntityName(region).text(), EntityName(modelFace).text());
        });
    }
}

void SideCheck::checkRun(const ElementSides::Key& key, ElementSides::Run sides)
{
    if (sides.size() > 2 && !isCovered(key)) {
        sink_.add(FindingKind::TooManyElements, sides_.elementOf(sides.front()), [&] {
            return QStringLiteral("shares its side of %1 with %2; a side lies between two elements")
                .arg(verticesText(key), elementNames(sides.subspan(1)));
        });
    }
    if (sides.size() == 2) {
        checkMeeting(key, sides);
    }
    if (sides.size() <= 2) {
        checkCover(key, sides);
    }
}

void SideCheck::checkMeeting(const ElementSides::Key& key, ElementSides::Run pair)
{
    if (pair.front().isRising() != pair.back().isRising()) {
        return;
    }
    const bool isPlanar = view_.elementDimension() == 2;
    if (!isPlanar && (isInsideOut(sides_.elementOf(pair.front())) ||
                      isInsideOut(sides_.elementOf(pair.back())))) {
        return; // which is told already
    }
    const auto kind = isPlanar ? FindingKind::MixedOrientation : FindingKind::OverlappingElements;
    sink_.add(kind, sides_.elementOf(pair.front()), [&] {
        const QString text =
            isPlanar ? QStringLiteral("runs the same way as %1 along %2; their normals are opposed")
                     : QStringLiteral("lies on the same side of %2 as %1; the two overlap");
        return text.arg(elementNames(pair.subspan(1)), verticesText(key));
    });
}

void SideCheck::checkCover(const ElementSides::Key& key, ElementSides::Run sides)
{
    const ModelEntity* const region = sides_.regionOf(sides.front());
    const ModelEntity* const other = sides_.regionOf(sides.back());
    if ((sides.size() == 2 && region == other) || isCovered(key)) {
        return;
    }
    sink_.add(FindingKind::UncoveredSide, sides_.elementOf(sides.front()), [&] {
        const QString beyond = sides.size() == 1 ? QStringLiteral("the mesh ends")
                               : other           ? EntityName(*other).text() + " begins"
                                                 : QStringLiteral("its region ends");
        return QStringLiteral("has no mesh face on its side of %1, where %2")
            .arg(verticesText(key), beyond);
    });
}

QString SideCheck::elementNames(ElementSides::Run sides) const
{
    QStringList names;
    for (const auto& side : sides) {
        names += EntityName(sides_.elementOf(side)).text();
    }
    return names.join(QStringLiteral(", "));
}

QString SideCheck::verticesText(const ElementSides::Key& key) const
{
    QStringList ids;
    for (const int vertex : key) {
        if (vertex >= 0) {
            ids += QString::number(view_.meshEntities(0)[static_cast<std::size_t>(vertex)]->id());
        }
    }
    return QStringLiteral("the mesh vertices ") + ids.join(QStringLiteral(", "));
}

bool SideCheck::isCovered(const ElementSides::Key& key) const
{
    return std::binary_search(covered_.begin(), covered_.end(), key);
}

} // namespace Ovra::GeoTool
