#include "ModelLinkCheck.h"

#include "CaseView.h"
#include "FindingSink.h"
#include "ModelEntity.h"

#include <algorithm>
#include <utility>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// From and to. The search by address costs no walk over the lists of large neighbours, and no
/// finding depends on the order of addresses.
using Links = std::vector<std::pair<const ModelEntity*, const ModelEntity*>>;

Links sortedLinks(const CaseView& view)
{
    Links links;
    for (int from = 0; from < 4; ++from) {
        for (const ModelEntity* entity : view.modelEntities(from)) {
            for (int to = 0; to < 4; ++to) {
                auto neighbours = entity->adjacencyIterator(to);
                while (neighbours.hasNext()) {
                    links.emplace_back(entity, neighbours.next());
                }
            }
        }
    }
    std::sort(links.begin(), links.end());
    return links;
}

void checkNeighbour(const ModelEntity& entity, const ModelEntity& neighbour, bool answered,
                    bool again, FindingSink& sink)
{
    if (!answered) {
        sink.add(FindingKind::OneWayLink, entity, [&neighbour] {
            return QStringLiteral("lists %1, which does not list it; links run both ways")
                .arg(EntityName(neighbour).text());
        });
    }
    if (again) {
        sink.add(FindingKind::RepeatedLink, entity, [&neighbour] {
            return QStringLiteral("lists %1 more than once").arg(EntityName(neighbour).text());
        });
    }
}

void checkLists(const ModelEntity& entity, const Links& links, FindingSink& sink)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        if (dimension == entity.dimension()) {
            continue; // no file keeps these
        }
        std::vector<const ModelEntity*> neighbours;
        auto walk = entity.adjacencyIterator(dimension);
        while (walk.hasNext()) {
            neighbours.push_back(walk.next());
        }
        std::sort(neighbours.begin(), neighbours.end(),
                  [](const ModelEntity* a, const ModelEntity* b) { return a->id() < b->id(); });
        for (auto each = neighbours.begin(); each != neighbours.end();) {
            const auto next = std::find_if(each, neighbours.end(),
                                           [each](const ModelEntity* n) { return n != *each; });
            const bool answered =
                std::binary_search(links.begin(), links.end(), std::pair(*each, &entity));
            checkNeighbour(entity, **each, answered, next - each > 1, sink);
            each = next;
        }
    }
}

void checkRegions(const ModelEntity& face, int elementDimension, FindingSink& sink)
{
    const int count = face.adjacencyCount(elementDimension);
    if (count > 2) {
        sink.add(FindingKind::TooManyRegions, face, [=] {
            return QStringLiteral("bounds %1 model %2; it has two sides")
                .arg(count)
                .arg(elementDimension == 3 ? QStringLiteral("regions") : QStringLiteral("faces"));
        });
    }
}

} // namespace

void ModelLinkCheck::run(const CaseView& view, FindingSink& sink)
{
    const Links links = sortedLinks(view);
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (const ModelEntity* entity : view.modelEntities(dimension)) {
            checkLists(*entity, links, sink);
        }
    }
    for (const ModelEntity* face : view.modelEntities(view.faceDimension())) {
        checkRegions(*face, view.elementDimension(), sink);
    }
}

} // namespace Ovra::GeoTool
