#include "FacePair.h"

#include "MeshVertex.h"
#include "ModelFace.h"

#include <QList>

#include <cmath>
#include <utility>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

void addTriangle(Mesh& mesh, ModelEntity* face, QList<MeshEntity*> vertices, bool upward)
{
    if (!upward) {
        std::swap(vertices[1], vertices[2]);
    }
    MeshEntity* triangle = MeshEntity::create(2);
    for (MeshEntity* vertex : std::as_const(vertices)) {
        triangle->addAdjacency(vertex);
    }
    mesh.add(triangle);
    face->addChild(triangle);
}

} // namespace

FacePair::FacePair(int vertices, double height)
    : database_(std::make_unique<Database>())
{
    model().add(ModelEntity::create(3));
    const int divisions = static_cast<int>(std::lround(std::sqrt(vertices))) - 1;
    addFace(1, divisions, 0.0, false);
    addFace(2, divisions + 1, height, true);
    mesh().setUpwardAdjacencies();
}

void FacePair::addFace(int id, int divisions, double z, bool upward)
{
    auto* face = new ModelFace;
    face->setId(id);
    face->setPlanar(true);
    model().add(face);
    face->addAdjacency(model().entity(3, 1));
    model().entity(3, 1)->addAdjacency(face);

    const int points = divisions + 1;
    QList<MeshEntity*> vertices;
    for (int i = 0; i < points * points; ++i) {
        auto* vertex = new MeshVertex;
        vertex->setPoint(Vector(double(i % points) / divisions, double(i / points) / divisions, z));
        mesh().add(vertex);
        face->addChild(vertex);
        vertices.append(vertex);
    }
    for (int i = 0; i < points * divisions; ++i) {
        if (i % points == divisions) {
            continue;
        }
        addTriangle(mesh(), face, {vertices[i], vertices[i + 1], vertices[i + points + 1]}, upward);
        addTriangle(mesh(), face, {vertices[i], vertices[i + points + 1], vertices[i + points]},
                    upward);
    }
}

} // namespace Benchmarks
