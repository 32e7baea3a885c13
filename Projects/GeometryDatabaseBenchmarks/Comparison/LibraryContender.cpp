#include "GbiWriter.h"
#include "Mesh.h"
#include "MeshRoads.h"

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

class LibrarySide
{
public:
    explicit LibrarySide(const QString& base)
        : database_(StoredCase::readModel(base))
    {
    }

    void read(QDataStream& stream) { mesh().read(stream); }
    void write(QDataStream& stream) { mesh().write(stream); }
    void setUpwardAdjacencies() { mesh().setUpwardAdjacencies(); }
    void clearUpwardAdjacencies() { mesh().clearUpwardAdjacencies(); }
    void clear() { mesh().clear(); }

    void writeText(QTextStream& stream)
    {
        const GbiWriter writer(database_.get());
        writer.writeNodes(stream, 0.001);
        writer.writeElements(stream);
    }

private:
    Mesh& mesh() { return *database_->mesh(); }

    std::unique_ptr<Database> database_;
};

const ContenderRegistration registration([](const QString& base) {
    addMeshRoads<LibrarySide>(base, "library");
});

} // namespace

} // namespace Benchmarks
