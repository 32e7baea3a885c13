#include "PreparationCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;
using namespace PreparationCase;

namespace
{

GridSpec fluidAndSolid()
{
    return plan({"12"}, {{1, "fluid"}, {2, "solid"}}, GridSpec::Shape::Wedge);
}

} // namespace

class TestToolPrepare : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        GridMesh grid(fluidAndSolid());
        QVERIFY(save(*grid.database(), path("case")));
    }

    void saysWhatEachOperationDid()
    {
        const ToolRun run = runTool({"prepare", path("case"), "-o", path("done"), "--all"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output,
                 QByteArray("decompose-wedges: 4 wedges cut into 12 tetrahedra, 7 quadrilateral "
                            "mesh faces into 14 triangles\n"
                            "replicate-moving: nothing to do\n"
                            "split-fluid-solid: 1 model face between fluid and something else "
                            "doubled, with 2 new mesh faces and 4 new vertices\n"
                            "peripheral: nothing to do\n"
                            "remove-unreferenced: nothing to do\n"
                            "renumber: 24 faces given new ids\n"
                            "periodic: nothing to do\n"
                            "extruded: nothing to do\n"));
    }

    void aPreparedCaseHasNothingLeftToDo()
    {
        QCOMPARE(runTool({"prepare", path("case"), "-o", path("once"), "--all"}).exitCode, 0);
        const ToolRun again = runTool({"prepare", path("once"), "-o", path("twice"), "--all"});
        QCOMPARE(again.output.count(": nothing to do\n"), 8);
        QCOMPARE(contents("twice"), contents("once"));
    }

    void theOrderOfTheOptionsDoesNotCount()
    {
        const ToolRun forward =
            runTool({"prepare", path("case"), "-o", path("forward"), "--decompose-wedges",
                     "--split-fluid-solid", "--renumber"});
        const ToolRun backward =
            runTool({"prepare", path("case"), "-o", path("backward"), "--renumber",
                     "--split-fluid-solid", "--decompose-wedges"});
        QCOMPARE(forward.exitCode, 0);
        QCOMPARE(backward.output, forward.output);
        QCOMPARE(forward.output.count('\n'), 3);
        QCOMPARE(contents("backward"), contents("forward"));
    }

    void everyRunGivesTheSameBytes()
    {
        QList<QByteArray> first;
        for (const char* seed : {"0", "1", "20131", ""}) {
            QCOMPARE(runTool({"prepare", path("case"), "-o", path("seed"), "--all"}, seed).exitCode,
                     0);
            if (first.isEmpty()) {
                first = contents("seed");
            }
            QCOMPARE(contents("seed"), first);
        }
    }

    void aCaseMayReplaceItself()
    {
        GridMesh grid(fluidAndSolid());
        QVERIFY(save(*grid.database(), path("itself")));
        QCOMPARE(runTool({"prepare", path("itself"), "-o", path("itself"), "--all"}).exitCode, 0);
        QCOMPARE(runTool({"prepare", path("case"), "-o", path("other"), "--all"}).exitCode, 0);
        QCOMPARE(contents("itself"), contents("other"));
    }

    void aRefusalLeavesFilesUntouched()
    {
        GridMesh grid(plan({"12"}, {{1, "solid"}, {2, "solid"}}));
        setAttribute(grid.region(2), AttributeType::MotionType, 1);
        QVERIFY(save(*grid.database(), path("refused")));
        const QList<QByteArray> before = contents("refused");
        const ToolRun run = runTool({"prepare", path("refused"), "-o", path("refused"), "--all"});
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(run.errors,
                 QByteArray("ovrageo: error: model region 2 (material_type \"solid\") moves, but "
                            "no region beside it is plain fluid at rest that could take its "
                            "place\n"));
        QCOMPARE(contents("refused"), before);
    }

    void wrongArgumentsAreUsageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no operation")
            << QStringList{}
            << QByteArray("prepare needs --all or the operations to run: --decompose-wedges, "
                          "--replicate-moving, --split-fluid-solid, --peripheral, "
                          "--remove-unreferenced, --renumber, --periodic, --extruded");
        QTest::newRow("negative tolerance")
            << QStringList{"--extruded", "--extrusion-tolerance", "-1"}
            << QByteArray("--extrusion-tolerance must be a number from 0 to 1");
        QTest::newRow("no number")
            << QStringList{"--extruded", "--extrusion-tolerance", "nan"}
            << QByteArray("--extrusion-tolerance must be a number from 0 to 1");
        QTest::newRow("no weight is that large")
            << QStringList{"--extruded", "--extrusion-tolerance", "1.01"}
            << QByteArray("--extrusion-tolerance must be a number from 0 to 1");
    }

    void wrongArgumentsAreUsageErrors()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, text);
        const ToolRun run =
            runTool(QStringList{"prepare", path("case"), "-o", path("never")} + arguments);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.errors, "ovrageo: error: " + text + '\n');
        QVERIFY(!QFile::exists(path("never.geo_model")));
    }

    void allExcludesTheOthers()
    {
        const ToolRun run =
            runTool({"prepare", path("case"), "-o", path("never"), "--all", "--renumber"});
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
    }

    void whatIsPreparedIsSound()
    {
        GridSpec spec = plan({"1111", "1231", "1411"},
                             {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}, {4, "solid"}},
                             GridSpec::Shape::Simplex);
        GridMesh grid(spec);
        setAttribute(grid.region(4), AttributeType::MotionType, 1);
        QVERIFY(save(*grid.database(), path("whole")));
        QCOMPARE(runTool({"verify", path("whole")}).exitCode, 0);
        const ToolRun run = runTool({"prepare", path("whole"), "-o", path("prepared"), "--all"});
        QCOMPARE(run.errors, QByteArray());
        const ToolRun verified = runTool({"verify", path("prepared")});
        QVERIFY2(verified.exitCode == 0, verified.output.constData());
        QCOMPARE(runTool({"solver-input", path("prepared"), "-o", path("input")}).exitCode, 0);
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    QList<QByteArray> contents(const QString& name) const
    {
        return {contentOf(path(name + ".geo_model")), contentOf(path(name + ".geo_mesh"))};
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolPrepare)
#include "tst_ToolPrepare.moc"
