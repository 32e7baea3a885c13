#pragma once

#include "AttributeType.h"
#include "Database.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"

#include <QList>
#include <QMap>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

/// \brief A copy of a case in which every entity, of the model too, has another id, and attributes
/// that name entities name them by their new ids.
class RenumberedCase
{
public:
    RenumberedCase(Ovra::Geo::Database& original, unsigned seed)
        : original_(original)
        , random_(seed)
    {
        for (int dimension = 0; dimension < 4; ++dimension) {
            const auto slot = static_cast<std::size_t>(dimension);
            modelIds_[slot] = newIds(*original.model(), dimension);
            meshIds_[slot] = newIds(*original.mesh(), dimension);
        }
        copyModel();
        copyMesh();
    }

    Ovra::Geo::Database database;

private:
    using T = Ovra::Geo::AttributeType;
    using Map = Ovra::Geo::AttributeMap;
    using Ids = QMap<int, int>;

    /// To a shuffled order, with gaps.
    template <typename Container>
    Ids newIds(const Container& container, int dimension)
    {
        std::vector<int> numbers(static_cast<std::size_t>(container.count(dimension)));
        std::iota(numbers.begin(), numbers.end(), 1);
        std::shuffle(numbers.begin(), numbers.end(), random_);
        Ids ids;
        for (auto walk = container.iterator(dimension); walk.hasNext();) {
            ids.insert(walk.next().key(), 2 * numbers[static_cast<std::size_t>(ids.size())] + 5);
        }
        return ids;
    }

    void copyModel()
    {
        using namespace Ovra::Geo;
        const Model& from = *original_.model();
        database.model()->setVersion(from.version());
        database.model()->setBoundingBox(from.boundingBox());
        forEach(from, [&](const ModelEntity* entity) {
            ModelEntity* const copy = copyOf(*entity);
            copy->setId(modelId(*entity));
            copy->setName(entity->name());
            copy->setTag(entity->tag());
            copyAttributes(entity->attributes(), copy->attributes());
            database.model()->add(copy);
        });
        forEach(from, [&](const ModelEntity* entity) {
            for (int d = 0; d < 4; ++d) {
                for (int i = 0; i < entity->adjacencyCount(d); ++i) {
                    newOf(*entity)->addAdjacency(newOf(*entity->adjacencyAt(d, i)));
                }
            }
        });
    }

    void copyMesh()
    {
        using namespace Ovra::Geo;
        database.mesh()->setVersion(original_.mesh()->version());
        forEach(*original_.mesh(), [&](MeshEntity* entity) {
            MeshEntity* const copy = MeshEntity::create(entity->dimension());
            copy->setId(meshIds_[static_cast<std::size_t>(entity->dimension())][entity->id()]);
            copyAttributes(entity->attributes(), copy->attributes());
            if (entity->dimension() == 0) {
                static_cast<MeshVertex*>(copy)->setPoint(entity->centroid());
            }
            for (int i = 0; i < entity->adjacencyCount(0) && entity->dimension() > 0; ++i) {
                copy->addAdjacency(
                    database.mesh()->entity(0, meshIds_[0][entity->adjacencyAt(0, i)->id()]));
            }
            database.mesh()->add(copy);
            if (entity->parent()) {
                newOf(*entity->parent())->addChild(copy);
            }
        });
        database.mesh()->setUpwardAdjacencies();
    }

    template <typename Container, typename Action>
    static void forEach(const Container& container, Action action)
    {
        for (int dimension = 0; dimension < 4; ++dimension) {
            for (auto walk = container.iterator(dimension); walk.hasNext();) {
                action(walk.next().value());
            }
        }
    }

    int modelId(const Ovra::Geo::ModelEntity& entity)
    {
        return modelIds_[static_cast<std::size_t>(entity.dimension())][entity.id()];
    }

    Ovra::Geo::ModelEntity* newOf(const Ovra::Geo::ModelEntity& entity)
    {
        return database.model()->entity(entity.dimension(), modelId(entity));
    }

    static Ovra::Geo::ModelEntity* copyOf(const Ovra::Geo::ModelEntity& entity)
    {
        using namespace Ovra::Geo;
        ModelEntity* const copy = ModelEntity::create(entity.dimension());
        const auto copyShape = [&](auto* shape) {
            shape->setBoundingBox(entity.boundingBox());
            shape->setCentroid(entity.centroid());
        };
        if (auto* const vertex = dynamic_cast<ModelVertex*>(copy)) {
            vertex->setPoint(entity.centroid());
        } else if (auto* const edge = dynamic_cast<ModelEdge*>(copy)) {
            copyShape(edge);
            edge->setLength(static_cast<const ModelEdge&>(entity).length());
            edge->setNormal(entity.normal());
            edge->setPlanar(entity.isPlanar());
        } else if (auto* const face = dynamic_cast<ModelFace*>(copy)) {
            copyShape(face);
            face->setArea(static_cast<const ModelFace&>(entity).area());
            face->setNormal(entity.normal());
            face->setPlanar(entity.isPlanar());
        } else if (auto* const region = dynamic_cast<ModelRegion*>(copy)) {
            copyShape(region);
            region->setVolume(static_cast<const ModelRegion&>(entity).volume());
        }
        return copy;
    }

    void copyAttributes(const Map& from, Map& to)
    {
        const QList<T> types = from.types();
        for (const T& type : types) {
            const QVariant value = from.value(type, {});
            to.insert(type, renamed(type, value, from));
        }
    }

    QVariant renamed(const T& type, const QVariant& value, const Map& from)
    {
        const auto face = static_cast<std::size_t>(original_.model()->faceDimension());
        if (type == T::CaseFaces || type == T::HotFaces || type == T::ColdFaces) {
            QVariantList ids = value.toList();
            std::transform(ids.begin(), ids.end(), ids.begin(),
                           [&](const QVariant& id) { return modelIds_[face].value(id.toInt()); });
            return ids;
        }
        const Ids* const ids = idsNamedBy(type, from, face);
        return ids ? QVariant(ids->value(value.toInt(), value.toInt())) : value;
    }

    const Ids* idsNamedBy(const T& type, const Map& from, std::size_t face) const
    {
        static const QList<T> faces = {T::SolidFace,    T::FluidFace,    T::StatorFace,
                                       T::RotorFace,    T::ExtrudedFace, T::NonExtrudedFace,
                                       T::PeriodicFace, T::NewShellFace, T::OriginalShellFace};
        static const QList<T> regions = {T::FluidRegion, T::NewMotionRegion,
                                         T::OriginalMotionRegion};
        static const QList<T> vertices = {T::RotorVertex, T::StatorVertex, T::ShellVertex,
                                          T::NewMotionVertex, T::OriginalMotionVertex};
        if (type == T::PeriodicEntityId || type == T::ExtrudedEntityId) {
            const T& dimension =
                type == T::PeriodicEntityId ? T::PeriodicEntityType : T::ExtrudedEntityType;
            return &meshIds_[static_cast<std::size_t>(from.value(dimension, 0).toInt())];
        }
        return faces.contains(type)      ? &modelIds_[face]
               : regions.contains(type)  ? &modelIds_[face + 1]
               : vertices.contains(type) ? &meshIds_[0]
                                         : nullptr;
    }

    Ovra::Geo::Database& original_;
    std::mt19937 random_;
    std::array<Ids, 4> modelIds_;
    std::array<Ids, 4> meshIds_;
};
