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

std::map<int, int> elementsOf(const Model& model, int dimension)
{
    std::map<int, int> elements;
    auto entities = model.orderedIterator(dimension);
    while (entities.hasNext()) {
        const ModelEntity* const entity = entities.next();
        elements.emplace(entity->id(), entity->childCount());
    }
    return elements;
}

/// \param before, after numbers of elements; null for none
QJsonObject changeOf(const ModelEntity& entity, const QJsonValue& before, const QJsonValue& after)
{
    return {{"dimension", entity.dimension()},
            {"id", entity.id()},
            {"name", entity.name()},
            {"before", before},
            {"after", after}};
}

void addChanged(const std::map<int, int>& before, const Model& later, int dimension,
                QJsonArray& changes)
{
    auto entities = later.orderedIterator(dimension);
    while (entities.hasNext()) {
        const ModelEntity* const entity = entities.next();
        const auto then = before.find(entity->id());
        if (then == before.end()) {
            changes.append(changeOf(*entity, QJsonValue::Null, entity->childCount()));
        } else if (then->second != entity->childCount()) {
            changes.append(changeOf(*entity, then->second, entity->childCount()));
        }
    }
}

void addGone(const std::map<int, int>& before, const Model& earlier, const Model& later,
             int dimension, QJsonArray& changes)
{
    for (const auto& [id, elements] : before) {
        if (!later.entity(dimension, id)) {
            changes.append(changeOf(*earlier.entity(dimension, id), elements, QJsonValue::Null));
        }
    }
}

/// Those that the page lists of both.
std::vector<int> comparedDimensions(const Model& earlier, const Model& later)
{
    const std::vector<int> ofEarlier = listedDimensions(earlier);
    const std::vector<int> ofLater = listedDimensions(later);
    return ofEarlier.size() < ofLater.size() ? ofEarlier
                                             : ofLater; // edges are the last, if they are there
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
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        elements_.at(dimension) = elementsOf(*database_.model(), static_cast<int>(dimension));
    }
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
            {"changed", changedEntities(*later.model(), dimensions)},
            {"meshAdded", added},
            {"meshRemoved", removed},
            {"differences", DiffReport::differencesJson(differences)}};
}

QJsonArray EarlierCase::changedEntities(const Model& later,
                                        const std::vector<int>& dimensions) const
{
    QJsonArray changes;
    for (const int dimension : dimensions) {
        addChanged(elements_.at(static_cast<std::size_t>(dimension)), later, dimension, changes);
    }
    for (const int dimension : dimensions) {
        addGone(elements_.at(static_cast<std::size_t>(dimension)), *database_.model(), later,
                dimension, changes);
    }
    return changes;
}

} // namespace Ovra::GeoTool
