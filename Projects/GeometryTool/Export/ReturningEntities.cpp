#include "ReturningEntities.h"

#include "CaseView.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

ReturningEntities::ReturningEntities(const CaseView& view, const GmshFormat& format)
{
    for (int d = format.lowestDimension; d <= view.elementDimension(); ++d) {
        const bool keepsEmpty = format.hasEmptyRegions && d == view.elementDimension();
        std::map<int, int>& ids = ids_.at(static_cast<std::size_t>(d));
        for (const ModelEntity* entity : view.modelEntities(d)) {
            if (keepsEmpty || hasMesh(*entity)) {
                const int next = static_cast<int>(ids.size()) + 1;
                const bool isCounted = format.numbers == GmshFormat::Numbers::Counted;
                ids.emplace(entity->id(), isCounted ? next : entity->id());
            }
        }
    }
}

int ReturningEntities::idOf(int dimension, int id) const
{
    const std::map<int, int>& ids = ids_.at(static_cast<std::size_t>(dimension));
    const auto found = ids.find(id);
    return found == ids.end() ? 0 : found->second;
}

bool ReturningEntities::hasMesh(const ModelEntity& entity)
{
    for (auto walk = entity.childIterator(); walk.hasNext();) {
        walk.next();
        if (walk.value()->dimension() == entity.dimension()) {
            return true;
        }
    }
    return false;
}

} // namespace Ovra::GeoTool
