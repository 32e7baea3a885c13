#include "EarlierCase.h"

#include "CaseComparison.h"
#include "CaseSummary.h"
#include "DiffReport.h"
#include "EntityTable.h"
#include "InfoJson.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"

#include <QJsonDocument>

#include <algorithm>
#include <iterator>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Of each kind and part.
constexpr int differenceLimit = 100;

std::array<std::vector<int>, 4> meshIdsOf(const Database& database)
{
    std::array<std::vector<int>, 4> ids;
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        auto entities = database.mesh()->iterator(static_cast<int>(dimension));
        while (entities.hasNext()) {
            ids[dimension].push_back(entities.next().value()->id());
        }
        std::sort(ids[dimension].begin(), ids[dimension].end());
    }
    return ids;
}

/// How many of some ids are not among others.
qint64 countMissing(const std::vector<int>& some, const std::vector<int>& others)
{
    std::vector<int> missing;
    std::set_difference(some.begin(), some.end(), others.begin(), others.end(),
                        std::back_inserter(missing));
    return static_cast<qint64>(missing.size());
}

QJsonArray entitiesOf(const Model& model)
{
    QJsonArray array;
    for (const int dimension : listedDimensions(model)) {
        auto entities = model.orderedIterator(dimension);
        while (entities.hasNext()) {
            const ModelEntity* const entity = entities.next();
            array.append(QJsonObject{{"dimension", dimension},
                                     {"id", entity->id()},
                                     {"name", entity->name()},
                                     {"elements", entity->childCount()}});
        }
    }
    return array;
}

/// Those that the page lists of both.
std::vector<int> comparedDimensions(const Model& earlier, const Model& later)
{
    const std::vector<int> ofEarlier = listedDimensions(earlier);
    const std::vector<int> ofLater = listedDimensions(later);
    return ofEarlier.size() < ofLater.size() ? ofEarlier : ofLater; // edges are the last, if they are there
}

QJsonArray entitiesOfDimensions(const QJsonArray& entities, const std::vector<int>& dimensions)
{
    QJsonArray array;
    for (const auto& entity : entities) {
        if (std::find(dimensions.begin(), dimensions.end(),
                      entity.toObject()["dimension"].toInt()) != dimensions.end()) {
            array.append(entity);
        }
    }
    return array;
}

QJsonArray jsonOf(const std::vector<int>& numbers)
{
    QJsonArray array;
    std::copy(numbers.begin(), numbers.end(), std::back_inserter(array));
    return array;
}

} // namespace

EarlierCase::EarlierCase(const QString& name, Progress& progress)
{
    CaseFiles files(name);
    files.load(database_, progress);
    info_ = QJsonDocument::fromJson(infoJson(CaseSummary(files, database_, progress))).object();
    entities_ = entitiesOf(*database_.model());
    meshIds_ = meshIdsOf(database_);
    database_.mesh()->clear(); // it takes many times what the model does
}

QJsonObject EarlierCase::changesTo(const Database& later) const
{
    const std::array<std::vector<int>, 4> laterIds = meshIdsOf(later);
    QJsonArray added;
    QJsonArray removed;
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        added.append(countMissing(laterIds[dimension], meshIds_[dimension]));
        removed.append(countMissing(meshIds_[dimension], laterIds[dimension]));
    }
    const CaseDifferences differences =
        CaseComparison::compareModels(database_, later, differenceLimit);
    const std::vector<int> dimensions = comparedDimensions(*database_.model(), *later.model());
    return {{"info", info_},
            {"dimensions", jsonOf(dimensions)},
            {"entities", entitiesOfDimensions(entities_, dimensions)},
            {"meshAdded", added},
            {"meshRemoved", removed},
            {"differences", DiffReport::differencesJson(differences)}};
}

} // namespace Ovra::GeoTool
