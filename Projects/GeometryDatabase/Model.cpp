#include "Model.h"

#include "AttributeType.h"
#include "EntityTable.h"
#include "ModelEntity.h"
#include "RefinementRegion.h"

#include <QVariant>

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

const QString Model::UNKNOWN_TAG = QStringLiteral("Unknown Tag");

Model::~Model()
{
    clear();
}

int Model::coordinateSystem() const
{
    return attributes_.value(AttributeType::CoordinateSystem, QVariant(0)).toInt();
}

void Model::setCoordinateSystem(int coordinateSystem)
{
    attributes_.insert(AttributeType::CoordinateSystem, QVariant(coordinateSystem));
}

bool Model::is3d() const
{
    return count(3) > 0;
}

int Model::faceDimension() const
{
    return is3d() ? 2 : 1;
}

void Model::add(ModelEntity* entity)
{
    const auto d = static_cast<size_t>(entity->dimension());
    addToTable(entity, entities_[d], idGenerators_[d]);
}

void Model::remove(ModelEntity* entity)
{
    entities_[static_cast<size_t>(entity->dimension())].remove(entity->id());
    delete entity;
}

void Model::clear(int dimension)
{
    const auto d = static_cast<size_t>(dimension);
    clearTable(entities_[d], idGenerators_[d]);
}

void Model::clear()
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        clear(dimension);
    }
}

int Model::count(int dimension) const
{
    return static_cast<int>(entities_[static_cast<size_t>(dimension)].size());
}

ModelEntity* Model::entity(int dimension, int id) const
{
    return entities_[static_cast<size_t>(dimension)].value(id);
}

bool Model::isEmpty() const
{
    return std::all_of(entities_.cbegin(), entities_.cend(),
                       [](const auto& table) { return table.isEmpty(); });
}

HashIterator<int, ModelEntity*> Model::iterator(int dimension) const
{
    return HashIterator<int, ModelEntity*>(entities_[static_cast<size_t>(dimension)]);
}

OrderedHashIterator<int, ModelEntity*> Model::orderedIterator(int dimension) const
{
    return OrderedHashIterator<int, ModelEntity*>(&entities_[static_cast<size_t>(dimension)]);
}

void Model::addRefinementRegion(RefinementRegion* region)
{
    refinementRegions_.append(region);
}

RefinementRegion* Model::refinementRegion(int index) const
{
    return refinementRegions_.at(index);
}

int Model::refinementRegionCount() const
{
    return static_cast<int>(refinementRegions_.size());
}

QListIterator<RefinementRegion*> Model::refinementRegionIterator() const
{
    return QListIterator<RefinementRegion*>(refinementRegions_);
}

void Model::clearRefinementRegions()
{
    qDeleteAll(std::exchange(refinementRegions_, {}));
}

} // namespace Ovra::Geo
