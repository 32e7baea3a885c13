#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <QDataStream>
#include <QFile>
#include <QSet>
#include <QString>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

/// \brief Reads a case as a host does and checks it against rules that hold for every sound mesh.
///
/// The tables of local faces here are written from the description of the solver input, not taken
/// from the library.
class ImportedCase
{
public:
    using MeshEntity = Ovra::Geo::MeshEntity;
    using ModelEntity = Ovra::Geo::ModelEntity;
    using Vector = Ovra::Geo::Vector;

    explicit ImportedCase(const QString& name)
    {
        QFile modelFile(name + QStringLiteral(".geo_model"));
        QFile meshFile(name + QStringLiteral(".geo_mesh"));
        opened_ = modelFile.open(QIODevice::ReadOnly) && meshFile.open(QIODevice::ReadOnly);
        if (!opened_) {
            return;
        }
        QDataStream modelStream(&modelFile);
        QDataStream meshStream(&meshFile);
        database_.model()->read(modelStream);
        database_.mesh()->read(meshStream);
    }

    bool isOpen() const { return opened_; }
    Ovra::Geo::Model* model() { return database_.model(); }
    Ovra::Geo::Mesh* mesh() { return database_.mesh(); }

    std::vector<int> modelCounts()
    {
        return {model()->count(0), model()->count(1), model()->count(2), model()->count(3)};
    }
    std::vector<int> meshCounts()
    {
        return {mesh()->count(0), mesh()->count(1), mesh()->count(2), mesh()->count(3)};
    }

    std::vector<ModelEntity*> entities(int dimension)
    {
        std::vector<ModelEntity*> result;
        auto walk = model()->orderedIterator(dimension);
        while (walk.hasNext()) {
            result.push_back(walk.next());
        }
        return result;
    }

    std::vector<MeshEntity*> meshEntities(int dimension)
    {
        std::vector<MeshEntity*> result;
        auto walk = mesh()->orderedIterator(dimension);
        while (walk.hasNext()) {
            result.push_back(walk.next());
        }
        return result;
    }

    static std::vector<MeshEntity*> children(ModelEntity* entity)
    {
        std::vector<MeshEntity*> result;
        auto walk = entity->childIterator();
        while (walk.hasNext()) {
            walk.next();
            result.push_back(walk.value());
        }
        std::sort(result.begin(), result.end(), MeshEntity::lessThan);
        return result;
    }

    static std::vector<MeshEntity*> vertices(MeshEntity* element)
    {
        std::vector<MeshEntity*> result;
        for (int i = 0; i < element->adjacencyCount(0); ++i) {
            result.push_back(element->adjacencyAt(0, i));
        }
        return result;
    }

    /// \brief Volume by tetrahedra from the first vertex to the faces away from it; exact for flat
    /// faces, positive for the right node order.
    static double volume(MeshEntity* element)
    {
        const auto v = vertices(element);
        const auto& tables = outwardFaces();
        double sum = 0;
        for (const auto& face : tables.at(v.size())) {
            for (std::size_t i = 1; i + 1 < face.size(); ++i) {
                sum += (((at(v, face[0]) - at(v, 0)) ^ (at(v, face[i]) - at(v, 0))) *
                        (at(v, face[i + 1]) - at(v, 0))) /
                       6.0;
            }
        }
        return sum;
    }

    static double volume(ModelEntity* region)
    {
        double sum = 0;
        for (MeshEntity* element : children(region)) {
            sum += volume(element);
        }
        return sum;
    }

    /// \brief All that is wrong with the case, in words; empty if it is sound.
    QString faults()
    {
        return firstOf(
            {&ImportedCase::meshFaults, &ImportedCase::linkFaults, &ImportedCase::parentFaults});
    }

    /// \brief What is wrong with the elements and the mesh faces on their boundary.
    QString meshFaults()
    {
        return firstOf(
            {&ImportedCase::volumeFaults, &ImportedCase::faceFaults, &ImportedCase::coverFaults});
    }

    /// \brief Vertices less edges plus faces of the mesh on the boundary of a region.
    static int eulerCharacteristic(ModelEntity* region)
    {
        std::set<MeshEntity*> vertexSet;
        std::set<std::pair<MeshEntity*, MeshEntity*>> edgeSet;
        int faces = 0;
        for (int i = 0; i < region->adjacencyCount(2); ++i) {
            for (MeshEntity* face : children(region->adjacencyAt(2, i))) {
                const auto v = vertices(face);
                ++faces;
                vertexSet.insert(v.begin(), v.end());
                for (std::size_t n = 0; n < v.size(); ++n) {
                    edgeSet.insert(std::minmax(v[n], v[(n + 1) % v.size()]));
                }
            }
        }
        return static_cast<int>(vertexSet.size()) - static_cast<int>(edgeSet.size()) + faces;
    }

private:
    using Faces = std::vector<std::vector<int>>;

    QString firstOf(std::initializer_list<QString (ImportedCase::*)()> checks)
    {
        for (const auto check : checks) {
            const QString fault = (this->*check)();
            if (!fault.isEmpty()) {
                return fault;
            }
        }
        return QString();
    }

    static const std::map<std::size_t, Faces>& outwardFaces()
    {
        static const std::map<std::size_t, Faces> faces = {
            {4, {{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}}},
            {5, {{3, 2, 1, 0}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}},
            {6, {{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {0, 2, 1}, {3, 4, 5}}},
            {8,
             {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 3, 2, 1}, {4, 5, 6, 7}}}};
        return faces;
    }

    static Vector at(const std::vector<MeshEntity*>& v, int index)
    {
        return v[static_cast<std::size_t>(index)]->centroid();
    }

    QString volumeFaults()
    {
        for (MeshEntity* each : meshEntities(3)) {
            if (!(volume(each) > 0)) {
                return QStringLiteral("element %1 has no positive volume").arg(each->id());
            }
        }
        return QString();
    }

    /// A face has an element on the side of each meshed region; the local number fits the
    /// vertices.
    QString faceFaults()
    {
        for (ModelEntity* face : entities(2)) {
            int regions = 0;
            for (int i = 0; i < face->adjacencyCount(3); ++i) {
                regions += face->adjacencyAt(3, i)->childCount() > 0 ? 1 : 0;
            }
            for (MeshEntity* child : children(face)) {
                if (model()->is3d() && child->adjacencyCount(3) != regions) {
                    return QStringLiteral(
                               "mesh face %1 has %2 elements, its face %3 meshed regions")
                        .arg(child->id())
                        .arg(child->adjacencyCount(3))
                        .arg(regions);
                }
                for (int i = 0; i < child->adjacencyCount(3); ++i) {
                    const QString fault = localFault(child, child->adjacencyAt(3, i));
                    if (!fault.isEmpty()) {
                        return fault;
                    }
                }
            }
        }
        return QString();
    }

    static QString localFault(MeshEntity* face, MeshEntity* element)
    {
        const int local = Ovra::Geo::Utility::getLocalFaceIndex(face, element);
        const auto v = vertices(element);
        const auto& rows = outwardFaces().at(v.size());
        if (local < 0 || static_cast<std::size_t>(local) >= rows.size()) {
            return QStringLiteral("face %1 is none of element %2")
                .arg(face->id())
                .arg(element->id());
        }
        std::set<MeshEntity*> expected;
        for (const int vertex : rows[static_cast<std::size_t>(local)]) {
            expected.insert(v[static_cast<std::size_t>(vertex)]);
        }
        const auto own = vertices(face);
        if (expected != std::set<MeshEntity*>(own.begin(), own.end())) {
            return QStringLiteral("face %1 is not local face %2 of element %3")
                .arg(face->id())
                .arg(local)
                .arg(element->id());
        }
        return QString();
    }

    /// Each side of an element that its region does not go on behind is a mesh face, and no other.
    QString coverFaults()
    {
        std::map<std::set<int>, std::vector<MeshEntity*>> sides;
        for (MeshEntity* each : meshEntities(3)) {
            const auto v = vertices(each);
            for (const auto& row : outwardFaces().at(v.size())) {
                std::set<int> key;
                for (const int vertex : row) {
                    key.insert(v[static_cast<std::size_t>(vertex)]->id());
                }
                sides[key].push_back(each);
            }
        }
        std::set<std::set<int>> needed;
        for (const auto& [key, elements] : sides) {
            if (elements.size() > 2) {
                return QStringLiteral("a face has %1 elements").arg(elements.size());
            }
            if (elements.size() == 1 || elements[0]->parent() != elements[1]->parent()) {
                needed.insert(key);
            }
        }
        if (!model()->is3d()) {
            return QString();
        }
        std::set<std::set<int>> present;
        for (MeshEntity* each : meshEntities(2)) {
            std::set<int> key;
            for (MeshEntity* vertex : vertices(each)) {
                key.insert(vertex->id());
            }
            present.insert(key);
        }
        if (!std::includes(present.begin(), present.end(), needed.begin(), needed.end())) {
            return QStringLiteral("sides of elements on the boundary have no mesh face");
        }
        return QString();
    }

    /// Links go both ways, are there once, and join all that touch.
    QString linkFaults()
    {
        for (int d = 0; d <= 3; ++d) {
            for (ModelEntity* entity : entities(d)) {
                for (int other = 0; other <= 3; ++other) {
                    std::set<ModelEntity*> seen;
                    for (int i = 0; i < entity->adjacencyCount(other); ++i) {
                        ModelEntity* const neighbour = entity->adjacencyAt(other, i);
                        if (!seen.insert(neighbour).second || !neighbour->isAdjacentTo(entity)) {
                            return QStringLiteral("entity %1 of dimension %2: wrong link to %3 of "
                                                  "dimension %4")
                                .arg(entity->id())
                                .arg(d)
                                .arg(neighbour->id())
                                .arg(other);
                        }
                        for (int low = 0; low < other && other < d; ++low) {
                            for (int j = 0; j < neighbour->adjacencyCount(low); ++j) {
                                if (!entity->isAdjacentTo(neighbour->adjacencyAt(low, j))) {
                                    return QStringLiteral("entity %1 of dimension %2 is not linked "
                                                          "to what bounds its boundary")
                                        .arg(entity->id())
                                        .arg(d);
                                }
                            }
                        }
                    }
                }
            }
        }
        return QString();
    }

    /// Each mesh entity has a parent, elements one of their own dimension, vertices on model
    /// vertices sit where these are.
    QString parentFaults()
    {
        for (int d = 0; d <= 3; ++d) {
            for (MeshEntity* each : meshEntities(d)) {
                const ModelEntity* parent = each->parent();
                if (parent == nullptr || (d > 0 && parent->dimension() != d)) {
                    return QStringLiteral("mesh entity %1 of dimension %2 has no proper parent")
                        .arg(each->id())
                        .arg(d);
                }
                if (d == 0 && parent->dimension() == 0 &&
                    (parent->centroid() - each->centroid()).length() > 1e-9) {
                    return QStringLiteral("vertex %1 is off its model vertex").arg(each->id());
                }
            }
        }
        return QString();
    }

    Ovra::Geo::Database database_;
    bool opened_ = false;
};
