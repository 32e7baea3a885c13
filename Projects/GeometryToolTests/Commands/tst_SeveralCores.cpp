#include "MeshEntity.h"
#include "MeshVertex.h"
#include "ModelEntity.h"
#include "Places.h"
#include "Programs.h"
#include "SavedCase.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <array>

using namespace Ovra::Geo;

namespace
{

constexpr int Cells = 36; // on each edge of a cube

int vertexId(int x, int y, int z)
{
    return 1 + x + (Cells + 1) * (y + (Cells + 1) * z);
}

/// The tetrahedra of a cell share its diagonal.
void addCell(Database& database, int x, int y, int z)
{
    static constexpr std::array<std::array<int, 2>, 6> paths = {
        {{1, 2}, {2, 4}, {4, 1}, {2, 1}, {4, 2}, {1, 4}}};
    const auto corner = [=](int bits) {
        return vertexId(x + bits % 2, y + bits / 2 % 2, z + bits / 4);
    };
    for (const auto& [first, second] : paths) {
        MeshEntity* const element = MeshEntity::create(3);
        for (const int bits : {0, first, first + second, 7}) {
            element->addAdjacency(database.mesh()->entity(0, corner(bits)));
        }
        database.mesh()->add(element);
        database.model()->entity(3, 1 + x % 2)->addChild(element);
    }
}

/// 279,936 tetrahedra in two regions, half of them inside out and no side of them covered: enough for
/// all that is shared out, and for sides in parts, with much to tell of.
bool saveCube(const QString& name)
{
    Database database;
    for (int i = 0; i < 2; ++i) {
        database.model()->add(ModelEntity::create(3));
    }
    for (int z = 0; z <= Cells; ++z) {
        for (int y = 0; y <= Cells; ++y) {
            for (int x = 0; x <= Cells; ++x) {
                auto* const vertex = new MeshVertex;
                vertex->setPoint(Vector(x, y, z));
                database.mesh()->add(vertex);
            }
        }
    }
    for (int z = 0; z < Cells; ++z) {
        for (int y = 0; y < Cells; ++y) {
            for (int x = 0; x < Cells; ++x) {
                addCell(database, x, y, z);
            }
        }
    }
    return SavedCase::save(database, name);
}

} // namespace

/// What the tool gives does not depend on the cores that it has.
class TestSeveralCores : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (Programs::isMissing("taskset")) {
            QSKIP("there is no taskset here (Debian's package util-linux)");
        }
        QVERIFY(saveCube(path("cube")));
    }

    void givesTheSameOnOne_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("verify") << QStringList{"verify", path("cube"), "--limit", "1000"};
        QTest::newRow("info") << QStringList{"info", path("cube"), "--json"};
        for (const char* suffix : {"vtu", "vtm", "msh"}) {
            QTest::newRow(suffix) << QStringList{"export", path("cube"), "-o",
                                                 path("out") + "." + suffix};
        }
        QTest::newRow("picture") << QStringList{"picture", path("cube"), "-o", path("out.png")};
        QTest::newRow("report") << QStringList{"report", path("cube"), "-o", path("out.html")};
    }

    void givesTheSameOnOne()
    {
        QFETCH(QStringList, arguments);
        const QByteArray onAll = resultOf(Places::tool(), arguments);
        const QByteArray onOne =
            resultOf(Programs::find("taskset"), QStringList{"-c", "0", Places::tool()} + arguments);
        QVERIFY(onAll.size() > 50);
        QCOMPARE(onOne, onAll);
    }

private:
    QString path(const char* name) const { return directory_.filePath(QLatin1String(name)); }

    /// All that a run prints and writes.
    QByteArray resultOf(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished(-1);
        QByteArray result = QByteArray::number(process.exitCode()) +
                            process.readAllStandardOutput() + process.readAllStandardError();
        for (const QString& file : QDir(directory_.path()).entryList({"out*"}, QDir::Files)) {
            QFile written(directory_.filePath(file));
            if (written.open(QIODevice::ReadOnly)) {
                result += written.readAll();
            }
            written.remove();
        }
        QDir(path("out")).removeRecursively();
        return result;
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestSeveralCores)
#include "tst_SeveralCores.moc"
