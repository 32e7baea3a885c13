#include "GbiWriter.h"
#include "GridMesh.h"
#include "Solver.h"
#include "StreamTesting.h"

#include <QTest>

#include <thread>
#include <vector>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

constexpr int ThreadCount = 4;

GridSpec twoMaterials(unsigned idSeed)
{
    GridSpec spec;
    spec.cells = {12, 6, 6};
    spec.shape = GridSpec::Shape::Simplex;
    spec.regionOf = [](int x, int, int) { return x < 6 ? 1 : 2; };
    spec.materials = {{1, "fluid"}, {2, "solid"}};
    spec.idSeed = idSeed;
    return spec;
}

QByteArray bytesOf(Database& database)
{
    return binary([&](QDataStream& stream) {
        database.model()->write(stream);
        database.mesh()->write(stream);
    });
}

// A host's road: a mesh of its own, split, written, read into another database, and as solver input.
QByteArray roadOf(unsigned idSeed)
{
    GridMesh grid(twoMaterials(idSeed));
    Solver(grid.database()).splitFluidSolidFaces();
    const QByteArray bytes = bytesOf(*grid.database());
    Database copy;
    readFrom(bytes, [&](QDataStream& stream) {
        copy.model()->read(stream);
        copy.mesh()->read(stream);
    });
    copy.mesh()->renumber(3);
    const QString input = text([&](QTextStream& stream) {
        const GbiWriter writer(&copy);
        writer.writeNodes(stream, 0.001);
        writer.writeElements(stream);
        writer.writeSurfaceConnectivity(stream, 1.0);
    });
    return bytes + bytesOf(copy) + input.toUtf8();
}

} // namespace

/// Databases share nothing that changes: each may have a thread of its own.
class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void eachDatabaseMayHaveAThread()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        std::vector<QByteArray> alone;
        std::vector<QByteArray> together(ThreadCount);
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < ThreadCount; ++i) {
            alone.push_back(roadOf(i + 1));
        }
        for (unsigned i = 0; i < ThreadCount; ++i) {
            threads.emplace_back([&together, i] { together[i] = roadOf(i + 1); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QVERIFY(alone[0].size() > 100000);
        QVERIFY(alone[0] != alone[1]);
        QCOMPARE(together, alone);
    }
};

QTEST_APPLESS_MAIN(TestThreads)
#include "tst_Threads.moc"
