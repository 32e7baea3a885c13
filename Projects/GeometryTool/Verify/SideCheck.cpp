#include "SideCheck.h"

#include "CaseView.h"
#include "Counted.h"
#include "ElementCheck.h"
#include "FindingSink.h"
#include "MeshEntity.h"
#include "MeshQuality.h"
#include "ModelEntity.h"

#include <QStringList>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QString elementNames(ElementSides::Run sides)
{
    QStringList names;
    for (const auto& side : sides) {
        names += EntityName(*side.element).text();
    }
    return names.join(QStringLiteral(", "));
}

QString verticesText(const ElementSides::Key& key)
{
    QStringList ids;
    for (const int id : key) {
        if (id != 0) {
            ids += QString::number(id);
        }
    }
    return QStringLiteral("the mesh vertices ") + ids.join(QStringLiteral(", "));
}

bool isInsideOut(const MeshEntity& element)
{
    return MeshQuality::measureOf(element) < 0.0;
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

bool hasElementIn(ElementSides::Run sides, const ModelEntity* region)
{
    return std::any_of(sides.begin(), sides.end(),
                       [=](const auto& side) { return side.element->parent() == region; });
}

} // namespace

SideCheck::SideCheck(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
    , sides_(view)
{
    for (const MeshEntity* face : view.meshEntities(view.faceDimension())) {
        if (ElementCheck::isWellFormed(*face)) {
            covered_.push_back(ElementSides::keyOf(*face));
        }
    }
    std::sort(covered_.begin(), covered_.end());
}

void SideCheck::run()
{
    for (const MeshEntity* face : view_.meshEntities(view_.faceDimension())) {
        if (ElementCheck::isWellFormed(*face)) {
            checkFace(*face);
        }
    }
    sides_.forEachRun([this](ElementSides::Run sides) { checkRun(sides); });
}

void SideCheck::checkElementCount(const MeshEntity& face, FindingSink& sink)
{
    const int count = face.adjacencyCount(face.dimension() + 1);
    if (count > 2) {
        sink.add(FindingKind::TooManyElements, face, [count] {
            return QStringLiteral("lies between %1; a face has two sides")
                .arg(counted(count, QStringLiteral("element")));
        });
    }
}

void SideCheck::checkFace(const MeshEntity& face)
{
    const ElementSides::Run sides = sides_.find(ElementSides::keyOf(face));
    checkElementCount(face, sink_);
    checkListedElements(face, sides);
    if (face.parent() && face.parent()->dimension() == face.dimension()) {
        checkRegions(face, sides);
    }
}

void SideCheck::checkListedElements(const MeshEntity& face, ElementSides::Run sides)
{
    auto elements = face.adjacencyIterator(view_.elementDimension());
    while (elements.hasNext()) {
        const MeshEntity* const element = elements.next();
        const bool isSide = std::any_of(sides.begin(), sides.end(),
                                        [=](const auto& side) { return side.element == element; });
        if (!isSide && ElementCheck::isWellFormed(*element)) {
            sink_.add(FindingKind::NoSide, face, [element] {
                return QStringLiteral("has all its vertices in %1, but is no side of it")
                    .arg(EntityName(*element).text());
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
    for (const auto& side : sides) {
        const ModelEntity* const region = side.element->parent();
        if (region && modelFace.adjacencyCount(view_.elementDimension()) > 0 &&
            !bounds(modelFace, region)) {
            sink_.add(FindingKind::ForeignElement, face, [&modelFace, element = side.element] {
                return QStringLiteral("is a side of %1 in %2, which its %3 does not bound")
                    .arg(EntityName(*element).text(), EntityName(*element->parent()).text(),
                         EntityName(modelFace).text());
            });
        }
    }
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

void SideCheck::checkRun(ElementSides::Run sides)
{
    if (sides.size() > 2 && !isCovered(sides.front().key)) {
        sink_.add(FindingKind::TooManyElements, *sides.front().element, [sides] {
            return QStringLiteral("shares its side of %1 with %2; a side lies between two elements")
                .arg(verticesText(sides.front().key), elementNames(sides.subspan(1)));
        });
    }
    if (sides.size() == 2) {
        checkMeeting(sides);
    }
    if (sides.size() <= 2 && !isCovered(sides.front().key)) {
        checkCover(sides);
    }
}

void SideCheck::checkMeeting(ElementSides::Run pair)
{
    if (pair.front().rising != pair.back().rising) {
        return;
    }
    const bool isPlanar = view_.elementDimension() == 2;
    if (!isPlanar && (isInsideOut(*pair.front().element) || isInsideOut(*pair.back().element))) {
        return; // which is told already
    }
    const auto kind = isPlanar ? FindingKind::MixedOrientation : FindingKind::OverlappingElements;
    sink_.add(kind, *pair.front().element, [pair, isPlanar] {
        const QString text =
            isPlanar ? QStringLiteral("runs the same way as %1 along %2; their normals are opposed")
                     : QStringLiteral("lies on the same side of %2 as %1; the two overlap");
        return text.arg(elementNames(pair.subspan(1)), verticesText(pair.front().key));
    });
}

void SideCheck::checkCover(ElementSides::Run sides)
{
    const ModelEntity* const region = sides.front().element->parent();
    const ModelEntity* const other = sides.back().element->parent();
    if (sides.size() == 2 && region == other) {
        return;
    }
    sink_.add(FindingKind::UncoveredSide, *sides.front().element, [sides, other] {
        const QString beyond = sides.size() == 1 ? QStringLiteral("the mesh ends")
                               : other           ? EntityName(*other).text() + " begins"
                                                 : QStringLiteral("its region ends");
        return QStringLiteral("has no mesh face on its side of %1, where %2")
            .arg(verticesText(sides.front().key), beyond);
    });
}

bool SideCheck::isCovered(const ElementSides::Key& key) const
{
    return std::binary_search(covered_.begin(), covered_.end(), key);
}

} // namespace Ovra::GeoTool
