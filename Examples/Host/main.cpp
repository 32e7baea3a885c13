#include <QTextStream>

#include <Database.h>
#include <GbiWriter.h>
#include <Mesh.h>
#include <MeshVertex.h>
#include <Model.h>
#include <ModelRegion.h>

using namespace Ovra::Geo;

int main()
{
    Database database;
    ModelEntity* block = ModelEntity::create(3);
    block->attributes().insert(AttributeType::MaterialId, 7);
    database.model()->add(block);

    MeshEntity* tetrahedron = MeshEntity::create(3);
    for (const Vector& point :
         {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)}) {
        auto* vertex = new MeshVertex;
        vertex->setPoint(point);
        database.mesh()->add(vertex);
        tetrahedron->addAdjacency(vertex);
    }
    database.mesh()->add(tetrahedron);
    block->addChild(tetrahedron);

    QTextStream out(stdout);
    GbiWriter(&database).writeElements(out);
}
