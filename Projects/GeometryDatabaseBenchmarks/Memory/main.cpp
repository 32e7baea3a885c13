// The memory of a mesh: geometry-memory BASE library|twin reads the mesh and writes what was allocated
// before, at the peak of the read and after it, as a line of JSON.

#include "HeapWatch.h"
#include "Mesh.h"
#include "StoredCase.h"
#include "TwinMesh.h"

#include <cstdio>

using namespace Ovra::Geo;
namespace StoredCase = Benchmarks::StoredCase;

namespace
{

void print(std::size_t before, int elements, int entities)
{
    const double kept = static_cast<double>(HeapWatch::allocated() - before);
    const double peak = static_cast<double>(HeapWatch::peak() - before);
    std::printf("{\"elements\": %d, \"entities\": %d, \"kept\": %.0f, \"peak\": %.0f}\n", elements,
                entities, kept, peak);
}

template <typename AnyMesh>
void printOf(std::size_t before, const AnyMesh& mesh)
{
    print(before, mesh.count(3), mesh.count(0) + mesh.count(1) + mesh.count(2) + mesh.count(3));
}

std::size_t start()
{
    HeapWatch::resetPeak();
    return HeapWatch::allocated();
}

void readLibrary(const QString& base)
{
    const auto database = StoredCase::readModel(base);
    const std::size_t before = start();
    StoredCase::readMesh(base, [&](QDataStream& stream) { database->mesh()->read(stream); });
    printOf(before, *database->mesh());
}

void readTwin(const QString& base)
{
    const auto database = StoredCase::readModel(base);
    const std::size_t before = start();
    Benchmarks::TwinMesh mesh(database->model());
    StoredCase::readMesh(base, [&](QDataStream& stream) { mesh.read(stream); });
    printOf(before, mesh);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("geometry-memory BASE library|twin\n", stderr);
        return 1;
    }
    const QString base = QString::fromLocal8Bit(argv[1]);
    QString::fromLocal8Bit(argv[2]) == QLatin1String("twin") ? readTwin(base) : readLibrary(base);
    return 0;
}
