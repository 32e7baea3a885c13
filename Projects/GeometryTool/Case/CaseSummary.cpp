#include "CaseSummary.h"

#include "CaseView.h"
#include "ElementTopology.h"
#include "Flatness.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"
#include "Twins.h"

#include <QSet>

#include <algorithm>
#include <tuple>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

std::size_t slot(int dimension)
{
    return static_cast<std::size_t>(dimension);
}

QString tagOf(const AttributeType& type)
{
    return type.isValid() ? type.toString() : QStringLiteral("(unknown)");
}

void addId(IdSummary& summary, int id)
{
    ++summary.count;
    summary.largestId = std::max(summary.largestId, id);
    summary.gaps = summary.largestId - summary.count;
}

QString kindOf(int dimension, int vertexCount)
{
    const ElementTopology* const topology = ElementTopology::find(dimension, vertexCount);
    return topology ? QLatin1String(topology->plural) : QStringLiteral("unknown");
}

std::map<QString, int> kindsOf(int dimension, const std::map<int, int>& byVertexCount)
{
    std::map<QString, int> kinds;
    for (const auto& [vertexCount, count] : byVertexCount) {
        kinds[kindOf(dimension, vertexCount)] += count;
    }
    return kinds;
}

bool isOfMaterial(const MaterialSummary& material, const QString& type, const QVariant& id)
{
    return material.type == type && material.hasId == id.isValid() && material.id == id.toInt();
}

MaterialSummary& materialOf(std::vector<MaterialSummary>& materials, const ModelEntity& region)
{
    const QString type = region.attributes().value(AttributeType::MaterialType, {}).toString();
    const QVariant id = region.attributes().value(AttributeType::MaterialId, {});
    const auto found = std::find_if(materials.begin(), materials.end(), [&](const auto& material) {
        return isOfMaterial(material, type, id);
    });
    if (found != materials.end()) {
        return *found;
    }
    MaterialSummary material;
    material.type = type;
    material.id = id.toInt();
    material.hasId = id.isValid();
    materials.push_back(material);
    return materials.back();
}

} // namespace

CaseSummary::CaseSummary(const CaseFiles& files, const Database& database, Progress& progress)
    : CaseSummary(files, CaseView(database), progress)
{
}

CaseSummary::CaseSummary(const CaseFiles& files, const CaseView& view, Progress& progress)
    : name(files.name())
    , modelFile(files.modelFacts())
    , meshFile(files.meshFacts())
    , is3d(view.model().is3d())
    , coordinateSystem(view.model().coordinateSystem())
    , refinementRegionCount(view.model().refinementRegionCount())
    , modelBox(view.model().boundingBox())
{
    progress.phase(QStringLiteral("counting"));
    countModel(view.model());
    countMesh(view, progress);
    countMaterials(view);
    listNames(view);
    listTwins(view.model());
    isPlanar = Flatness::isFlat(view.points());
    progress.phase(QStringLiteral("judging the elements"));
    for (int dimension = 1; dimension < 4; ++dimension) {
        if (!view.meshEntities(dimension).empty()) {
            quality.emplace_back(dimension, view.quality(dimension, progress));
        }
    }
    progress.finish();
}

void CaseSummary::countModel(Model& ofCase)
{
    for (const AttributeType& type : ofCase.attributes().types()) {
        attributes[tagOf(type)].model = 1;
    }
    for (int dimension = 0; dimension < 4; ++dimension) {
        auto entities = ofCase.iterator(dimension);
        while (entities.hasNext()) {
            entities.next();
            const ModelEntity& entity = *entities.value();
            addId(model[slot(dimension)], entity.id());
            for (const AttributeType& type : entity.attributes().types()) {
                ++attributes[tagOf(type)].modelEntities[slot(dimension)];
            }
        }
    }
}

void CaseSummary::countMesh(const CaseView& view, Progress& progress)
{
    for (const AttributeType& type : view.mesh().attributes().types()) {
        attributes[tagOf(type)].mesh = 1;
    }
    for (int dimension = 0; dimension < 4; ++dimension) {
        const std::vector<MeshEntity*>& entities = view.meshEntities(dimension);
        std::map<int, int> byVertexCount; // a name for each of a million entities takes longer
        for (MeshEntity* const entity : entities) {
            countMeshEntity(*entity);
            ++byVertexCount[entity->adjacencyCount(0)];
            progress.update(mesh[slot(dimension)].count, static_cast<qint64>(entities.size()),
                            QStringLiteral("entities"));
        }
        if (dimension > 0) {
            kinds[slot(dimension)] = kindsOf(dimension, byVertexCount);
        }
    }
}

void CaseSummary::countMeshEntity(MeshEntity& entity)
{
    const std::size_t place = slot(entity.dimension());
    addId(mesh[place], entity.id());
    if (!entity.attributes().isEmpty()) { // few have any, and to list none takes its time
        for (const AttributeType& type : entity.attributes().types()) {
            ++attributes[tagOf(type)].meshEntities[place];
        }
    }
    if (!entity.parent()) {
        ++unclassified[place];
    } else if (entity.parent()->dimension() != entity.dimension()) {
        ++onOtherDimension[place];
    }
    if (entity.dimension() == 0) {
        meshBox += entity.centroid();
    }
}

void CaseSummary::countMaterials(const CaseView& view)
{
    for (const ModelEntity* region : view.modelEntities(view.elementDimension())) {
        MaterialSummary& material = materialOf(materials, *region);
        ++material.modelEntityCount;
        material.elementCount += region->childCount();
    }
    std::sort(materials.begin(), materials.end(), [](const auto& a, const auto& b) {
        return std::tie(a.type, a.hasId, a.id) < std::tie(b.type, b.hasId, b.id);
    });
}

void CaseSummary::listNames(const CaseView& view)
{
    for (const int dimension : {view.elementDimension(), view.faceDimension()}) {
        QMap<QString, std::vector<int>> ids;
        for (const ModelEntity* entity : view.modelEntities(dimension)) {
            for (const QString& each : QSet<QString>{entity->name(), entity->tag()}) {
                if (!each.isEmpty()) {
                    ids[each].push_back(entity->id());
                }
            }
        }
        for (auto each = ids.begin(); each != ids.end(); ++each) {
            names.push_back({dimension, each.key(), each.value()});
        }
    }
}

void CaseSummary::listTwins(const Model& ofCase)
{
    for (const Twin& twin : twinsOf(ofCase)) {
        twins.push_back({twin.relation, twin.copy->dimension(), twin.original->id(),
                         twin.original->name(), twin.copy->id(), twin.copy->name()});
    }
}

QString meshFormatName(int format)
{
    static const std::array<const char*, 3> names = {"2013", "2014", "2014a"};
    return QLatin1String(names.at(static_cast<std::size_t>(format - 1)));
}

} // namespace Ovra::GeoTool
