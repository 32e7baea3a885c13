#include "ExportLosses.h"

#include "AttributeType.h"
#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "ReturningEntities.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// \brief Whether a mesh entity stands on a model entity of its own dimension.
bool hasOwnParent(const MeshEntity* entity, int dimension)
{
    return entity->parent() && entity->parent()->dimension() == dimension;
}

std::ptrdiff_t strayCount(const std::vector<MeshEntity*>& entities, int dimension)
{
    return std::count_if(entities.begin(), entities.end(), [dimension](const MeshEntity* entity) {
        return !hasOwnParent(entity, dimension);
    });
}

/// \brief Whether it has attributes beside the link that a shell gives it anew.
bool hasAttributes(MeshEntity* entity)
{
    const AttributeMap& attributes = entity->attributes();
    return !attributes.isEmpty() &&
           attributes.count() > (attributes.contains(AttributeType::ShellVertex) ? 1 : 0);
}

} // namespace

ExportLosses::ExportLosses(const CaseView& view, const GmshFormat& format)
    : view_(view)
    , format_(format)
{
    addElements();
    addRegions();
    addEmptyRegions();
    addNames();
    addStrayElements();
    addModelAttributes();
    addMeshAttributes();
}

void ExportLosses::addElements()
{
    const int dimension = view_.elementDimension();
    if (format_.highestDimension < dimension && !view_.meshEntities(dimension).empty()) {
        const auto elements = static_cast<qsizetype>(view_.meshEntities(dimension).size());
        const auto regions = static_cast<qsizetype>(view_.modelEntities(dimension).size());
        phrases_ += QStringLiteral("%1 holds surfaces alone: the %2 of %3 %4 left out")
                        .arg(format_.title, counted(elements, QStringLiteral("element")),
                             counted(regions, QStringLiteral("region")),
                             elements == 1 ? QStringLiteral("is") : QStringLiteral("are"));
    }
}

void ExportLosses::addRegions()
{
    const int dimension = view_.elementDimension();
    const auto regions = static_cast<qsizetype>(view_.modelEntities(dimension).size());
    if (!format_.hasRegions && format_.highestDimension >= dimension && regions > 1) {
        phrases_ +=
            QStringLiteral("%1 does not tell regions apart: the elements of %2 become one mesh")
                .arg(format_.title, counted(regions, kindName(dimension)));
    }
}

void ExportLosses::addEmptyRegions()
{
    const std::vector<ModelEntity*>& regions = view_.modelEntities(view_.elementDimension());
    const auto empty = std::count_if(regions.begin(), regions.end(), [](const ModelEntity* region) {
        return !ReturningEntities::hasMesh(*region);
    });
    if (!format_.hasEmptyRegions && format_.hasRegions && empty > 0) {
        const QString what = counted(empty, kindName(view_.elementDimension()));
        phrases_ += QStringLiteral("%1 without elements %2 left out")
                        .arg(what, empty == 1 ? QStringLiteral("is") : QStringLiteral("are"));
    }
}

void ExportLosses::addNames()
{
    if (format_.names != GmshFormat::Names::Lost || format_.comesBack()) {
        return; // the attributes file has them
    }
    qsizetype count = 0;
    for (int d = 0; d <= 3; ++d) {
        const std::vector<ModelEntity*>& entities = view_.modelEntities(d);
        count += std::count_if(entities.begin(), entities.end(),
                               [](const ModelEntity* entity) { return !entity->name().isEmpty(); });
    }
    if (count > 0) {
        phrases_ += QStringLiteral("%1 has no names: %2")
                        .arg(format_.title, counted(count, QStringLiteral("entity loses its name"),
                                                    QStringLiteral("entities lose their names")));
    }
}

void ExportLosses::addStrayElements()
{
    const int highest = view_.elementDimension();
    std::ptrdiff_t lower = 0;
    for (int d = std::max(1, format_.lowestDimension); d < highest; ++d) {
        lower += strayCount(view_.meshEntities(d), d);
    }
    if (lower > 0) {
        phrases_ += counted(
            lower,
            QStringLiteral("mesh edge or face that stands on no model entity of its dimension is "
                           "left out"),
            QStringLiteral("mesh edges and faces that stand on no model entity of their dimension "
                           "are left out"));
    }
    const std::ptrdiff_t elements = strayCount(view_.meshEntities(highest), highest);
    if (elements > 0 && format_.hasRegions) {
        phrases_ += counted(
            elements,
            QStringLiteral("element that stands on no region is written as one of its own"),
            QStringLiteral("elements that stand on no region are written as one of their own"));
    }
}

void ExportLosses::addModelAttributes()
{
    const int count = format_.comesBack() ? 0 : attributedEntities();
    if (count > 0) {
        phrases_ += QStringLiteral("materials and other attributes of %1 are left out")
                        .arg(counted(count, QStringLiteral("model entity"),
                                     QStringLiteral("model entities")));
    }
}

int ExportLosses::attributedEntities() const
{
    std::ptrdiff_t count = 0;
    for (int d = 0; d <= 3; ++d) {
        const std::vector<ModelEntity*>& entities = view_.modelEntities(d);
        count += std::count_if(entities.begin(), entities.end(), [](const ModelEntity* entity) {
            return !entity->attributes().isEmpty();
        });
    }
    return static_cast<int>(count);
}

void ExportLosses::addMeshAttributes()
{
    for (int d = 0; d <= 3; ++d) {
        const std::vector<MeshEntity*>& entities = view_.meshEntities(d);
        const auto count = std::count_if(entities.begin(), entities.end(), hasAttributes);
        if (count > 0) {
            phrases_ += QStringLiteral("attributes of %1 are left out")
                            .arg(counted(count, QStringLiteral("mesh ") + kindName(d)));
        }
    }
}

} // namespace Ovra::GeoTool
