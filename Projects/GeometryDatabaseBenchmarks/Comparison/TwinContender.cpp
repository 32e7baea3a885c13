#include "MeshRoads.h"
#include "TwinMesh.h"

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

class TwinSide
{
public:
    explicit TwinSide(const QString& base)
        : database_(StoredCase::readModel(base))
        , mesh_(database_->model())
    {
    }

    void read(QDataStream& stream) { mesh_.read(stream); }
    void write(QDataStream& stream) { mesh_.write(stream, MeshSerializer::Format2014a); }
    void setUpwardAdjacencies() { mesh_.setUpwardAdjacencies(); }
    void clearUpwardAdjacencies() { mesh_.clearUpwardAdjacencies(); }
    void clear() { mesh_.clear(); }

    void writeText(QTextStream& stream)
    {
        mesh_.writeNodes(stream, 0.001);
        mesh_.writeElements(stream);
    }

private:
    std::unique_ptr<Database> database_;
    TwinMesh mesh_;
};

const ContenderRegistration registration([](const QString& base) {
    addMeshRoads<TwinSide>(base, "twin");
});

} // namespace

} // namespace Benchmarks
