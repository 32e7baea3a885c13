#include <QDataStream>
#include <QFile>
#include <QTextStream>

#include <Database.h>
#include <GbiWriter.h>
#include <Mesh.h>
#include <Model.h>

// Whether the file is there and whole. Streams of every release since 2013 are read.
template <typename Container>
bool readWhole(const char* path, Container* container)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    QDataStream stream(&file);
    container->read(stream);
    return stream.status() == QDataStream::Ok;
}

int main()
{
    Ovra::Geo::Database database;
    if (!readWhole("case.geo_model", database.model()) ||
        !readWhole("case.geo_mesh", database.mesh())) {
        return 1;
    }
    database.mesh()->renumber(0); // dense node numbers

    QTextStream solverInput(stdout);
    const Ovra::Geo::GbiWriter writer(&database);
    writer.writeNodes(solverInput, 0.001); // millimetres to metres
    writer.writeElements(solverInput);
}
