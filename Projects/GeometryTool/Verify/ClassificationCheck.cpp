#include "ClassificationCheck.h"

#include "CaseView.h"
#include "FindingSink.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QString expectation(int dimension)
{
    static const std::array<const char*, 4> texts = {"", "a mesh edge must stand on a model edge",
                                                     "a mesh face must stand on a model face",
                                                     "a mesh region must stand on a model region"};
    return QLatin1String(texts.at(static_cast<std::size_t>(dimension)));
}

} // namespace

void ClassificationCheck::run(const CaseView& view, FindingSink& sink)
{
    for (int dimension = 1; dimension < 4; ++dimension) {
        for (const MeshEntity* entity : view.meshEntities(dimension)) {
            checkEntity(*entity, sink);
        }
    }
}

void ClassificationCheck::checkEntity(const MeshEntity& entity, FindingSink& sink)
{
    const ModelEntity* const parent = entity.parent();
    if (!parent) {
        sink.add(FindingKind::NoParent, entity, [dimension = entity.dimension()] {
            return QStringLiteral("stands on no model entity, or on one that the model does not "
                                  "have; %1")
                .arg(expectation(dimension));
        });
    } else if (parent->dimension() != entity.dimension()) {
        sink.add(FindingKind::WrongDimension, entity, [parent, dimension = entity.dimension()] {
            return QStringLiteral("stands on %1; %2")
                .arg(EntityName(*parent).text(), expectation(dimension));
        });
    }
}

} // namespace Ovra::GeoTool
