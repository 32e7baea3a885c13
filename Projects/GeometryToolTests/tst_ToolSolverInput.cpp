#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;

namespace
{

const QByteArray plainTransform = "0 0 0\n0 0 0\n0 0 0 0 0 0 0 0 0\n0 0 0 0 0 0 0 0 0\n";

const QStringList allSections = {"nodes",   "elements", "part-surfaces", "surface-connectivity",
                                 "shells",  "periodic", "extrusion",     "moving",
                                 "rotating"};

} // namespace

class TestToolSolverInput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        TinyCase tiny;
        QVERIFY(tiny.save(path("tiny")));
    }

    void writesExactSections_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("elements") << "elements" << QByteArray("1 4 4 7 2 0 1 2 3 4\n-1\n");
        QTest::newRow("part-surfaces")
            << "part-surfaces" << QByteArray("2 1 box\n0.5 0.5 0.5\n3 \n-1\n");
        QTest::newRow("surface-connectivity")
            << "surface-connectivity"
            << QByteArray("3 2 1 3 inlet\n1 1 0 0 0 -1\n1 2 3 \n1 1 3 2 0\n-1\n");
        QTest::newRow("shells") << "shells" << QByteArray("-1\n-1\n-1 -1 -1\n");
        QTest::newRow("periodic") << "periodic"
                                  << "0\n0\n0\n0\n" + plainTransform;
        QTest::newRow("extrusion") << "extrusion" << QByteArray("0\n0\n");
        QTest::newRow("moving") << "moving" << QByteArray("0\n");
        QTest::newRow("rotating") << "rotating" << QByteArray("0 0 0\n");
    }

    void writesExactSections()
    {
        QFETCH(QString, section);
        QTEST(written({"--scale", "2", "--sections", section}), "text");
    }

    void writesNodesScaled()
    {
        // Nodes come in hash order; what is fixed is the set of lines and the terminator.
        QList<QByteArray> lines = written({"--scale", "2", "--sections", "nodes"}).split('\n');
        QCOMPARE(lines.takeLast(), QByteArray());
        QCOMPARE(lines.takeLast(), QByteArray("-1"));
        std::sort(lines.begin(), lines.end());
        QCOMPARE(lines, QList<QByteArray>({"1 0 0 0", "2 2 0 0", "3 0 2 0", "4 0 0 2"}));
    }

    void writesLabelledForms_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("elements") << "elements" << QByteArray("1 4 4 7 2 0 1 2 3 4\n-1\n");
        QTest::newRow("periodic")
            << "periodic"
            << "--- nPeriodic ---\n0\n--- node_per_status ---\n0\n--- AFaceList ---\n0\n"
               "--- BFaceList ---\n0\n--- ANodeList ---\n0\n--- BNodeList ---\n0\n"
               "--- nMaxANabors ---\n4\n--- nMaxBNabors ---\n4\n"
               "--- ALinksCon and ALinksWht ---\n0\n--- BLinksCon and BLinksWht ---\n0\n"
               "--- Transform ---\n0\n" +
                   plainTransform;
        QTest::newRow("extrusion")
            << "extrusion"
            << QByteArray("0\n--- i_extrusion ---\n--- f_extrusion ---\n--- EFaceList ---\n0\n");
        QTest::newRow("moving")
            << "moving"
            << QByteArray("--- nReplicate ---\n0\n--- RepElems ---\n0\n--- RepNodes ---\n0\n");
        QTest::newRow("rotating") << "rotating"
                                  << QByteArray("--- nRotSystems ---\n0\n--- RotatingNodeList ---\n"
                                                "--- RotorFaceList ---\n--- StatorFaceList ---\n");
    }

    void writesLabelledForms()
    {
        QFETCH(QString, section);
        QTEST(written({"--labelled", "--sections", section}), "text");
    }

    void writesAllSectionsInTheDocumentedOrder()
    {
        QByteArray joined;
        for (const QString& section : allSections)
            joined += written({"--sections", section});
        QCOMPARE(written({}), joined);
    }

    void theOrderOfTheArgumentDoesNotCount()
    {
        QCOMPARE(written({"--sections", "rotating,elements"}),
                 written({"--sections", "elements"}) + written({"--sections", "rotating"}));
    }

    void everyRunGivesTheSameBytes()
    {
        TinyCase many;
        for (int i = 0; i < 500; ++i)
            many.addVertex(Vector(i, 0, 0));
        QVERIFY(many.save(path("many")));
        QByteArray first;
        for (const char* seed : {"0", "1", "20131", ""}) {
            const QString output = path("many.txt");
            const ToolRun run = runTool({"solver-input", path("many"), "-o", output}, seed);
            QCOMPARE(run.exitCode, 0);
            if (first.isEmpty())
                first = contentOf(output);
            QCOMPARE(contentOf(output), first);
        }
        QCOMPARE(first.count('\n') > 504, true);
    }

    void plainPeriodicFaceListsAreFilled()
    {
        TinyCase tiny;
        makePeriodic(tiny);
        QVERIFY(tiny.save(path("periodic")));
        QCOMPARE(written({"--sections", "periodic"}, "periodic"),
                 "3\n1 1 1 1 1 \n2 1 1 2 1 \n3 1 1 3 1 \n0\n1\n1 3\n0\n" + plainTransform);
    }

    void labelledExtrusionLeavesLaterSectionsAlone()
    {
        TinyCase tiny;
        makePeriodic(tiny);
        tiny.model()->attributes().insert(AttributeType::PeriodicTranslation,
                                          QVariant::fromValue(Vector(1.23456789012, 0, 0)));
        QVERIFY(tiny.save(path("precise")));
        QVERIFY(written({"--labelled"}, "precise").contains("\n1.23456789012 0 0\n"));
    }

    void refusesUnknownSectionsByListingTheNames()
    {
        const QString output = path("untouched");
        QVERIFY(writeContent(output, "old"));
        const ToolRun run =
            runTool({"solver-input", path("tiny"), "-o", output, "--sections", "nodes,nods"});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.errors,
                 QStringLiteral("ovrageo: error: unknown section \"nods\"; the sections "
                                "are %1\n")
                     .arg(allSections.join(", "))
                     .toUtf8());
        QCOMPARE(contentOf(output), QByteArray("old"));
    }

    void refusesBadScales_data()
    {
        QTest::addColumn<QString>("scale");
        for (const char* scale : {"0", "-1", "nan", "inf", "mm"})
            QTest::newRow(scale) << scale;
    }

    void refusesBadScales()
    {
        QFETCH(QString, scale);
        const ToolRun run =
            runTool({"solver-input", path("tiny"), "-o", path("never"), "--scale", scale});
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY(!QFile::exists(path("never")));
    }

    void refusesCasesThatTheWriterCannotTake_data()
    {
        QTest::addColumn<int>("fault");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("element without parent")
            << 0 << QByteArray("mesh region 2 stands on no model entity");
        QTest::newRow("fluid region missing")
            << 1
            << QByteArray(
                   "fluid_region of model region 2 names the model region 99, which does not "
                   "exist");
        QTest::newRow("stand-in face missing")
            << 2
            << QByteArray(
                   "non_extruded_face of model face 3 names the model face 98, which does not "
                   "exist");
        QTest::newRow("shell partner missing")
            << 3
            << QByteArray("shell_vertex of mesh vertex 2 names the mesh vertex 97, which does not "
                          "exist");
        QTest::newRow("not interpolated")
            << 4
            << QByteArray("mesh vertex 1 lacks its periodic_entity_type and periodic_entity_id, or "
                          "they name no mesh entity");
        QTest::newRow("too few weights")
            << 5
            << QByteArray(
                   "periodic_weights of mesh vertex 1 has 1 values for the 3 vertices of mesh "
                   "face 1");
        QTest::newRow("extruded face missing")
            << 6
            << QByteArray("extruded_face of model face 3 names the model face 96, which does not "
                          "exist");
        QTest::newRow("original of the replica missing")
            << 7
            << QByteArray("model region 2 is a replica of the region 95, which does not exist");
        QTest::newRow("rotor without partners")
            << 8 << QByteArray("mesh vertex 1 on the rotor side model face 3 has no stator_vertex");
    }

    void refusesCasesThatTheWriterCannotTake()
    {
        QFETCH(int, fault);
        QFETCH(QByteArray, text);
        TinyCase tiny;
        addFault(tiny, fault);
        QVERIFY(tiny.save(path("faulty")));
        const ToolRun run = runTool({"solver-input", path("faulty"), "-o", path("never")});
        QCOMPARE(run.errors,
                 "ovrageo: error: the case is not fit for solver input: " + text + '\n');
        QCOMPARE(run.exitCode, 6);
        QVERIFY(!QFile::exists(path("never")));
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    QByteArray written(const QStringList& options, const QString& name = "tiny")
    {
        const QString output = path("output.txt");
        QFile::remove(output);
        const ToolRun run =
            runTool(QStringList{"solver-input", path(name), "-o", output} + options);
        return run.exitCode == 0 && run.output.isEmpty() && run.errors.isEmpty() ? contentOf(output)
                                                                                 : run.errors;
    }

    static void makePeriodic(TinyCase& tiny)
    {
        tiny.face->attributes().insert(AttributeType::PeriodicPairId, 1);
        tiny.face->attributes().insert(AttributeType::PeriodicSideId, 1);
        for (MeshVertex* vertex : tiny.vertices) {
            vertex->attributes().insert(AttributeType::PeriodicEntityType, 0);
            vertex->attributes().insert(AttributeType::PeriodicEntityId, vertex->id());
        }
    }

    static void addFault(TinyCase& tiny, int fault)
    {
        AttributeMap& vertex = tiny.vertices[0]->attributes();
        AttributeMap& face = tiny.face->attributes();
        AttributeMap& region = tiny.region->attributes();
        switch (fault) {
        case 0:
            tiny.addElement(3, {1, 2, 3, 4}, nullptr);
            break;
        case 1:
            region.insert(AttributeType::FluidRegion, 99);
            break;
        case 2:
            face.insert(AttributeType::NonExtrudedFace, 98);
            break;
        case 3:
            tiny.vertices[1]->attributes().insert(AttributeType::ShellVertex, 97);
            break;
        case 4:
            face.insert(AttributeType::PeriodicPairId, 1);
            break;
        case 5:
            makePeriodic(tiny);
            vertex.insert(AttributeType::PeriodicEntityType, 2);
            vertex.insert(AttributeType::PeriodicWeights, QVariantList{1.0});
            break;
        case 6:
            face.insert(AttributeType::ExtrudedFace, 96);
            break;
        case 7:
            region.insert(AttributeType::MotionType, 1);
            region.insert(AttributeType::OriginalMotionRegion, 95);
            break;
        default:
            region.insert(AttributeType::MaterialType, QStringLiteral("rotating_device"));
            face.insert(AttributeType::StatorFace, 3);
        }
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolSolverInput)
#include "tst_ToolSolverInput.moc"
