#include "GmshMesh.h"

#include "AttributeType.h"
#include "Database.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QMap>

#include <algorithm>
#include <array>
#include <cmath>
#include <gmsh.h>
#include <vector>

using namespace Ovra::Geo;

namespace Benchmarks::GmshMesh
{

namespace
{

constexpr std::array<int, 4> elementTypes{15, 1, 2, 4}; // simplices by dimension

class Session
{
public:
    Session()
    {
        gmsh::initialize();
        gmsh::option::setNumber("General.Terminal", 0);
        gmsh::option::setNumber("General.NumThreads", 1);
        gmsh::option::setNumber("Mesh.Binary", 1);
        gmsh::option::setNumber("Mesh.MshFileVersion", 4.1);
        gmsh::option::setNumber("Mesh.SaveAll", 1);
    }
    ~Session() { gmsh::finalize(); }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
};

std::size_t meshCube(double elementSize)
{
    gmsh::model::mesh::clear();
    gmsh::option::setNumber("Mesh.MeshSizeMax", elementSize);
    gmsh::model::mesh::generate(3);
    std::vector<std::size_t> tags;
    std::vector<std::size_t> nodes;
    gmsh::model::mesh::getElementsByType(elementTypes[3], tags, nodes);
    return tags.size();
}

// The surface takes a larger part of a coarse mesh, so the number of elements follows no fixed power of
// their size, and a second try is better.
void meshCubeOf(int elements)
{
    constexpr double hxt = 10;
    constexpr double elementsOfUnitSize = 6.34; // in a fine mesh of the cube
    constexpr double closeEnough = 0.02;
    gmsh::model::occ::addBox(0, 0, 0, 1, 1, 1);
    gmsh::model::occ::synchronize();
    gmsh::option::setNumber("Mesh.Algorithm3D", hxt);
    double size = std::cbrt(elementsOfUnitSize / elements);
    const auto made = static_cast<double>(meshCube(size));
    if (std::fabs(made / elements - 1) > closeEnough) {
        size *= std::cbrt(made / elements);
        meshCube(size);
    }
}

void addModelEntities(Model& model)
{
    gmsh::vectorpair entities;
    gmsh::model::getEntities(entities);
    for (const auto& [dimension, tag] : entities) {
        ModelEntity* entity = ModelEntity::create(dimension);
        entity->setId(tag);
        model.add(entity);
    }
    for (const auto& [dimension, tag] : entities) {
        gmsh::vectorpair boundary;
        gmsh::model::getBoundary({{dimension, tag}}, boundary, false, false);
        for (const auto& [boundaryDimension, boundaryTag] : boundary) {
            ModelEntity* entity = model.entity(dimension, tag);
            ModelEntity* side = model.entity(boundaryDimension, boundaryTag);
            entity->addAdjacency(side);
            side->addAdjacency(entity);
        }
    }
    model.entity(3, 1)->attributes().insert(AttributeType::MaterialType, QStringLiteral("fluid"));
    model.entity(3, 1)->attributes().insert(AttributeType::MaterialId, 1);
}

void addVertices(ModelEntity& parent, Mesh& mesh)
{
    std::vector<std::size_t> tags;
    std::vector<double> points;
    std::vector<double> parameters;
    gmsh::model::mesh::getNodes(tags, points, parameters, parent.dimension(), parent.id(), false,
                                false);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        auto* vertex = new MeshVertex;
        vertex->setId(static_cast<int>(tags[i]));
        vertex->setPoint(Vector(points[3 * i], points[3 * i + 1], points[3 * i + 2]));
        mesh.add(vertex);
        parent.addChild(vertex);
    }
}

void addElements(ModelEntity& parent, Mesh& mesh)
{
    std::vector<std::size_t> tags;
    std::vector<std::size_t> nodes;
    gmsh::model::mesh::getElementsByType(elementTypes[size_t(parent.dimension())], tags, nodes,
                                         parent.id());
    const auto perElement = static_cast<std::size_t>(parent.dimension() + 1);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        MeshEntity* element = MeshEntity::create(parent.dimension());
        for (std::size_t corner = 0; corner < perElement; ++corner) {
            element->addAdjacency(mesh.entity(0, static_cast<int>(nodes[i * perElement + corner])));
        }
        mesh.add(element);
        parent.addChild(element);
    }
}

void take(Database& database)
{
    addModelEntities(*database.model());
    for (int dimension = 0; dimension <= 3; ++dimension) {
        for (auto walk = database.model()->iterator(dimension); walk.hasNext();) {
            addVertices(*walk.next().value(), *database.mesh());
        }
    }
    for (int dimension = 1; dimension <= 3; ++dimension) {
        for (auto walk = database.model()->iterator(dimension); walk.hasNext();) {
            addElements(*walk.next().value(), *database.mesh());
        }
    }
}

struct Nodes
{
    std::vector<std::size_t> tags;
    std::vector<double> points;
};

// Gmsh holds the nodes by the entity that they are classified on, and entities by dimension.
void giveVertices(Mesh& mesh)
{
    QMap<std::pair<int, int>, Nodes> byParent;
    for (auto walk = mesh.iterator(0); walk.hasNext();) {
        const MeshEntity* vertex = walk.next().value();
        const Vector point = vertex->centroid();
        Nodes& nodes = byParent[{vertex->parent()->dimension(), vertex->parent()->id()}];
        nodes.tags.push_back(static_cast<std::size_t>(vertex->id()));
        nodes.points.insert(nodes.points.end(), {point.x(), point.y(), point.z()});
    }
    for (auto i = byParent.cbegin(); i != byParent.cend(); ++i) {
        gmsh::model::mesh::addNodes(i.key().first, i.key().second, i->tags, i->points);
    }
}

/// The tag of Gmsh's for the elements of \p dimension on \p parent, which may be null.
int tagFor(const ModelEntity* parent, int dimension)
{
    constexpr int withoutParent = 1000;
    if (parent != nullptr) {
        return parent->id();
    }
    gmsh::model::addDiscreteEntity(dimension, withoutParent);
    return withoutParent;
}

void giveElements(Mesh& mesh, int dimension)
{
    QMap<ModelEntity*, std::vector<std::size_t>> nodes;
    for (auto walk = mesh.iterator(dimension); walk.hasNext();) {
        const MeshEntity* element = walk.next().value();
        std::vector<std::size_t>& list = nodes[element->parent()];
        for (int i = 0; i < element->adjacencyCount(0); ++i) {
            list.push_back(static_cast<std::size_t>(element->adjacencyAt(0, i)->id()));
        }
    }
    for (auto i = nodes.cbegin(); i != nodes.cend(); ++i) {
        gmsh::model::mesh::addElementsByType(tagFor(i.key(), dimension),
                                             elementTypes[size_t(dimension)], {}, i.value());
    }
}

void give(Database& database)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        for (auto walk = database.model()->iterator(dimension); walk.hasNext();) {
            gmsh::model::addDiscreteEntity(dimension, walk.next().value()->id());
        }
    }
    giveVertices(*database.mesh());
    for (int dimension = 1; dimension <= 3; ++dimension) {
        giveElements(*database.mesh(), dimension);
    }
}

} // namespace

void makeCube(int elements, Database& database, const QString& msh)
{
    const Session session;
    meshCubeOf(elements);
    gmsh::write(msh.toStdString());
    take(database);
}

void write(Database& database, const QString& msh)
{
    const Session session;
    give(database);
    gmsh::write(msh.toStdString());
}

void load(const QString& msh)
{
    const Session session;
    gmsh::open(msh.toStdString());
}

void save(const QString& msh, const QString& copy)
{
    const Session session;
    gmsh::open(msh.toStdString());
    gmsh::write(copy.toStdString());
}

} // namespace Benchmarks::GmshMesh
