#include "GeometryDatabaseTests/GridMesh.h"
#include "PreparationCase.h"
#include "Programs.h"
#include "SavedCase.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

/// \brief Exports in parts, as programs under MPI read them.
class VtkPartsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        GridSpec spec = PreparationCase::plan(QStringList(12, QStringLiteral("1122")),
                                              {{1, "fluid"}, {2, "solid"}}, GridSpec::Shape::Wedge);
        GridMesh grid(spec);
        QCOMPARE(PreparationCase::prepare(*grid.database(), {"split-fluid-solid"}).refusal,
                 QString());
        cells_ = grid.mesh()->count(3);
        points_ = grid.mesh()->count(0);
        QVERIFY(SavedCase::save(*grid.database(), path("case")));
    }

    void isReadByAProcessForEachPart()
    {
        const ToolRun run = runTool(
            {"export", path("case"), "-o", path("case.pvtu"), "--parts", "3", "--keep-interfaces"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.startsWith(path("case.pvtu").toUtf8() + ": 3 parts of ") &&
                     run.output.endsWith(" between them\n"),
                 run.output.constData());
        QCOMPARE(filesIn(path("case")), (QStringList{"part_0.vtu", "part_1.vtu", "part_2.vtu"}));
        if (Programs::isMissing("mpirun")) {
            QSKIP("there is no mpirun");
        }
        const QByteArray counts = readUnderMpi(path("case.pvtu"));
        const QByteArray expected = QByteArray::number(cells_) + " cells, " +
                                    QByteArray::number(points_) + " points, volume 48, ";
        QVERIFY2(counts.startsWith(expected) && counts.endsWith(" ghosts\n"), counts.constData());
        QVERIFY(!counts.endsWith(", 0 ghosts\n"));
    }

    void writesThemOfAVtuToo()
    {
        const ToolRun run = runTool({"export", path("case"), "-o", path("b.vtu"), "--parts", "2"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.startsWith(path("b.pvtu").toUtf8() + ": 2 parts of "),
                 run.output.constData());
        QVERIFY(!QFile::exists(path("b.vtu")));
        QVERIFY(QFile::exists(path("b.pvtu")));
        QCOMPARE(filesIn(path("b")), (QStringList{"part_0.vtu", "part_1.vtu"}));
    }

    /// What the index that is replaced refers to, and nothing else in the folder.
    void takesTheFilesOfAnEarlierExportAway()
    {
        const auto write = [&](const char* parts) {
            return runTool({"export", path("case"), "-o", path("e.pvtu"), "--parts", parts})
                .exitCode;
        };
        QCOMPARE(write("3"), 0);
        QVERIFY(writeContent(path("e/part_7.vtu"), "of another"));
        QVERIFY(writeContent(path("part_2.vtu"), "beside"));
        QCOMPARE(runTool({"export", path("case"), "-o", path("e.pvtu"), "--parts", "999"}).exitCode,
                 6);
        QCOMPARE(filesIn(path("e")),
                 (QStringList{"part_0.vtu", "part_1.vtu", "part_2.vtu", "part_7.vtu"}));
        QCOMPARE(write("2"), 0);
        QCOMPARE(filesIn(path("e")), (QStringList{"part_0.vtu", "part_1.vtu", "part_7.vtu"}));
        const QByteArray index = contentOf(path("e.pvtu"));
        QVERIFY(writeContent(path("e.pvtu"), QByteArray(index).replace("e/part_1", "part_2")));
        QCOMPARE(write("2"), 0);
        QVERIFY(QFile::exists(path("part_2.vtu")));
        QVERIFY(writeContent(path("e.pvtu"), index.first(index.size() - 10)));
        QCOMPARE(write("1"), 0);
        QCOMPARE(filesIn(path("e")), (QStringList{"part_0.vtu", "part_1.vtu", "part_7.vtu"}));
    }

    void hasTheSameBytesInEveryRun()
    {
        QCOMPARE(runTool({"export", path("case"), "-o", path("c.pvtu"), "--parts", "3"}).exitCode,
                 0);
        QCOMPARE(runTool({"export", path("case"), "-o", path("d.pvtu"), "--parts", "3"}).exitCode,
                 0);
        QVERIFY(!contentOf(path("c/part_2.vtu")).isEmpty());
        QCOMPARE(contentOf(path("d/part_2.vtu")), contentOf(path("c/part_2.vtu")));
    }

    void refusesPartsThatCannotBe_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("error");

        QTest::newRow("none") << QStringList{"-o", "x.vtu", "--parts", "0"} << 2
                              << QByteArray("--parts must be a number above 0\n");
        QTest::newRow("of a surface")
            << QStringList{"-o", "x.vtp", "--parts", "2"} << 2
            << QByteArray("a .vtp file is not written in parts; those that are: .vtu, .pvtu");
        QTest::newRow("interfaces alone")
            << QStringList{"-o", "x.vtu", "--keep-interfaces"} << 2
            << QByteArray("--keep-interfaces requires --parts; see ovrageo export --help\n");
        QTest::newRow("more than elements")
            << QStringList{"-o", path("x.vtu"), "--parts", "1000"} << 6
            << QByteArray("cannot cut 96 elements in 1000 parts\n");
    }

    void refusesPartsThatCannotBe()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, error);
        const ToolRun run = runTool(QStringList{"export", path("case")} + arguments);
        QCOMPARE(run.exitCode, exitCode);
        QVERIFY2(run.errors.startsWith("ovrageo: error: " + error), run.errors.constData());
    }

private:
    QString path(const char* name) const { return directory_.filePath(QLatin1String(name)); }

    static QByteArray readUnderMpi(const QString& file)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("OMPI_ALLOW_RUN_AS_ROOT", "1");
        environment.insert("OMPI_ALLOW_RUN_AS_ROOT_CONFIRM", "1");
        environment.insert("ASAN_OPTIONS", "detect_leaks=0"); // MPI keeps what it has until the end
        process.setProcessEnvironment(environment);
        process.start("mpirun", {"-n", "3", "--oversubscribe", OVRA_VTK_PIECE_READER, file});
        process.waitForFinished(-1);
        return process.exitCode() == 0 ? process.readAllStandardOutput()
                                       : process.readAllStandardError();
    }

    QTemporaryDir directory_;
    int cells_ = 0;
    int points_ = 0;
};

QTEST_GUILESS_MAIN(VtkPartsTest)
#include "tst_VtkParts.moc"
