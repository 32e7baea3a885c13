#include <QTextStream>

#include <Database.h>
#include <GbiWriter.h>
#include <Mesh.h>
#include <Model.h>

int main()
{
    Ovra::Geo::Database database;
    database.model()->read(L"case.geo_model");
    database.mesh()->read(L"case.geo_mesh"); // any format since 2013
    database.mesh()->renumber(0);            // dense node numbers

    QTextStream solverInput(stdout);
    const Ovra::Geo::GbiWriter writer(&database);
    writer.writeNodes(solverInput, 0.001); // millimetres to metres
    writer.writeElements(solverInput);
}
