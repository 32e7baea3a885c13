#include "Matrix.h"
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

using Breaking = void (*)(TinyCase&);
Q_DECLARE_METATYPE(Breaking)

class TestToolSolverInput : public QObject
{
    Q_OBJECT

    using T = AttributeType;

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
        for (const QString& section : allSections) {
            joined += written({"--sections", section});
        }
        QCOMPARE(written({}), joined);
    }

    void writesToStandardOutput()
    {
        const QStringList before = filesIn(QDir::currentPath());
        const ToolRun run = runTool({"solver-input", path("tiny"), "-o", "-"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, written({}));
        QCOMPARE(filesIn(QDir::currentPath()), before);
    }

    void writesAFileWithTheNameOfStandardOutput()
    {
        const QString file = path("-");
        QCOMPARE(runTool({"solver-input", path("tiny"), "-o", file}).exitCode, 0);
        QCOMPARE(contentOf(file), written({}));
        QVERIFY(QFile::remove(file));
    }

    void saysThatNobodyReads_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("solver-input") << QStringList{"solver-input", path("tiny"), "-o", "-"};
        QTest::newRow("device") << QStringList{"solver-input", path("tiny"), "-o", "/dev/stdout",
                                               "-q"};
        QTest::newRow("info") << QStringList{"info", path("tiny")};
    }

    void saysThatNobodyReads()
    {
        QFETCH(QStringList, arguments);
        const ToolRun run = runTool(arguments, QString(), closeReaderOfOutput);
        QVERIFY2(isOneErrorLine(run.errors) && run.errors.endsWith(": Broken pipe\n"),
                 run.errors.constData());
        QCOMPARE(run.exitCode, 5);
    }

    void theOrderOfTheArgumentDoesNotCount()
    {
        QCOMPARE(written({"--sections", "rotating,elements"}),
                 written({"--sections", "elements"}) + written({"--sections", "rotating"}));
    }

    void blanksAroundTheNamesDoNotCount()
    {
        QCOMPARE(written({"--sections", "nodes, elements"}),
                 written({"--sections", "nodes,elements"}));
        QCOMPARE(written({"--sections", " nodes ,\telements"}),
                 written({"--sections", "nodes,elements"}));
    }

    void everyRunGivesTheSameBytes()
    {
        TinyCase many;
        for (int i = 0; i < 500; ++i) {
            many.addVertex(Vector(i, 0, 0));
        }
        QVERIFY(many.save(path("many")));
        QByteArray first;
        for (const char* seed : {"0", "1", "20131", ""}) {
            const QString output = path("many.txt");
            const ToolRun run = runTool({"solver-input", path("many"), "-o", output}, seed);
            QCOMPARE(run.exitCode, 0);
            if (first.isEmpty()) {
                first = contentOf(output);
            }
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
        for (const char* scale : {"0", "-1", "nan", "inf", "mm"}) {
            QTest::newRow(scale) << scale;
        }
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
        QTest::addColumn<Breaking>("breaking");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, Breaking breaking, const char* text) {
            QTest::newRow(name) << breaking << QString(text);
        };
        row(
            "element without parent",
            [](TinyCase& c) {
                c.addElement(3, {1, 2, 3, 4}, nullptr);
            },
            "mesh region 2 at (0.25, 0.25, 0.25) stands on no model entity, or on one that the "
            "model does not have; a mesh region must stand on a model region");
        row(
            "fluid region missing",
            [](TinyCase& c) { c.region->attributes().insert(T::FluidRegion, 99); },
            "model region 2 at (0.25, 0.25, 0.25) names in fluid_region the model region 99, which "
            "does not exist");
        row(
            "stand-in face missing",
            [](TinyCase& c) { c.face->attributes().insert(T::NonExtrudedFace, 98); },
            "model face 3 at (0.5, 0.5, 0) names in non_extruded_face the model face 98, which "
            "does not exist");
        row(
            "shell partner missing",
            [](TinyCase& c) { c.vertices[1]->attributes().insert(T::ShellVertex, 97); },
            "mesh vertex 2 at (1, 0, 0) names in shell_vertex the mesh vertex 97, which does not "
            "exist");
        row(
            "shell partner zero",
            [](TinyCase& c) { c.vertices[1]->attributes().insert(T::ShellVertex, 0); },
            "mesh vertex 2 at (1, 0, 0) names in shell_vertex the mesh vertex 0, which does not "
            "exist");
        row(
            "shell partner of another type",
            [](TinyCase& c) {
                c.vertices[1]->attributes().insert(T::ShellVertex, QVariantList{1, 2});
            },
            "mesh vertex 2 at (1, 0, 0) names in shell_vertex the mesh vertex 0, which does not "
            "exist");
        row(
            "face between three elements",
            [](TinyCase& c) {
                c.addElement(3, {1, 2, 3, 4}, c.region);
                c.addElement(3, {1, 2, 3, 4}, c.region);
            },
            "mesh face 1 at (0.333333, 0.333333, 0) lies between 3 elements; a face has two sides");
        row(
            "not interpolated",
            [](TinyCase& c) { c.face->attributes().insert(T::PeriodicPairId, 1); },
            "no vertex of its periodic pairs is tied, on model face 3 for instance; ovrageo "
            "prepare "
            "--periodic ties them");
        row(
            "tie to nothing",
            [](TinyCase& c) {
                makePeriodic(c);
                c.vertices[2]->attributes().insert(T::PeriodicEntityId, 94);
            },
            "mesh vertex 3 at (0, 1, 0) names in periodic_entity_id the mesh vertex 94, which does "
            "not exist");
        row(
            "tie of no dimension",
            [](TinyCase& c) {
                makePeriodic(c);
                c.vertices[2]->attributes().insert(T::PeriodicEntityType, 4);
            },
            "mesh vertex 3 at (0, 1, 0) lacks its periodic_entity_type and periodic_entity_id, or "
            "they mean nothing");
        row(
            "too few weights",
            [](TinyCase& c) {
                makePeriodic(c);
                c.vertices[0]->attributes().insert(T::PeriodicEntityType, 2);
                c.vertices[0]->attributes().insert(T::PeriodicWeights, QVariantList{1.0});
            },
            "mesh vertex 1 at (0, 0, 0) has 1 value in periodic_weights for the 3 vertices of "
            "mesh face 1; at most 4 of them may be positive");
        row(
            "too many weights",
            [](TinyCase& c) {
                c.addVertex(Vector(1, 1, 0));
                c.addElement(3, {1, 2, 5, 3, 4}, c.region);
                AttributeMap& vertex = c.vertices[0]->attributes();
                vertex.insert(T::ExtrudedEntityType, 3);
                vertex.insert(T::ExtrudedEntityId, 2);
                vertex.insert(T::ExtrudedWeights, QVariantList{0.2, 0.2, 0.2, 0.2, 0.2});
            },
            "mesh vertex 1 at (0, 0, 0) has 5 values in extruded_weights for the 5 vertices of "
            "mesh region 2; at most 4 of them may be positive");
        row(
            "element of no kind on a periodic face",
            [](TinyCase& c) {
                c.addElement(3, {1, 2, 3, 4, 1, 2, 3}, c.region);
                makePeriodic(c);
            },
            "mesh region 2 at (0.285714, 0.285714, 0.142857) has 7 vertices; a region has 4, 5, 6 "
            "or 8");
        row(
            "extruded face missing",
            [](TinyCase& c) { c.face->attributes().insert(T::ExtrudedFace, 96); },
            "model face 3 at (0.5, 0.5, 0) names in extruded_face the model face 96, which does "
            "not exist");
        row(
            "original of the replica missing", [](TinyCase& c) { makeReplica(c, 95); },
            "model region 2 at (0.25, 0.25, 0.25) names in original_motion_region the model region "
            "95, which does not exist");
        row(
            "original of the replica smaller",
            [](TinyCase& c) {
                auto* const original = new ModelRegion;
                c.model()->add(original);
                makeReplica(c, original->id());
            },
            "model region 2 at (0.25, 0.25, 0.25) has 1 element, but its original, model region "
            "3, only 0");
        row(
            "stator face missing", [](TinyCase& c) { makeRotor(c, 93); },
            "model face 3 at (0.5, 0.5, 0) names in stator_face the model face 93, which does not "
            "exist");
        row(
            "rotor without partners", [](TinyCase& c) { makeRotor(c, 3); },
            "mesh vertex 1 at (0, 0, 0) stands on the rotor side model face 3 without a "
            "stator_vertex");
        row(
            "rotor face with two elements",
            [](TinyCase& c) {
                makeRotor(c, 3);
                for (MeshVertex* vertex : c.vertices) {
                    vertex->attributes().insert(T::StatorVertex, 1);
                }
                c.addElement(3, {1, 2, 3, 4}, c.region);
            },
            "mesh face 1 at (0.333333, 0.333333, 0) on the rotor or stator side model face 3 has 2 "
            "elements, not one");
        row(
            "stator face without element",
            [](TinyCase& c) {
                auto* const stator = new ModelFace;
                c.model()->add(stator);
                makeRotor(c, stator->id());
                for (MeshVertex* vertex : c.vertices) {
                    vertex->attributes().insert(T::StatorVertex, 1);
                }
                c.addVertex(Vector(1, 1, 0));
                c.addElement(2, {1, 2, 5}, stator);
            },
            "mesh face 2 at (0.666667, 0.333333, 0) on the rotor or stator side model face 4 has 0 "
            "elements, not one");
    }

    void refusesCasesThatTheWriterCannotTake()
    {
        QFETCH(Breaking, breaking);
        QFETCH(QString, text);
        TinyCase tiny;
        breaking(tiny);
        QVERIFY(tiny.save(path("faulty")));
        const ToolRun run = runTool({"solver-input", path("faulty"), "-o", path("never")});
        QCOMPARE(QString::fromUtf8(run.errors),
                 "ovrageo: error: the case is not fit for solver input: " + text + '\n');
        QCOMPARE(run.exitCode, 6);
        QVERIFY(!QFile::exists(path("never")));
    }

    void movingSectionsNeedTheFluidRegion()
    {
        TinyCase tiny;
        tiny.region->attributes().insert(T::FluidRegion, 99);
        QVERIFY(tiny.save(path("faulty")));
        const QStringList run{"solver-input", path("faulty"), "-o", path("out"), "--sections"};
        QCOMPARE(runTool(run + QStringList("moving")).exitCode, 6);
        QCOMPARE(runTool(run + QStringList("nodes,rotating")).exitCode, 0);
    }

    void asksOnlyWhatTheSectionsNeed()
    {
        TinyCase tiny;
        makeRotor(tiny, 3);
        QVERIFY(tiny.save(path("rotor")));
        const QStringList run{"solver-input", path("rotor"), "-o", path("rotor.txt"), "--sections"};
        QCOMPARE(runTool(run + QStringList("nodes,elements,periodic")).exitCode, 0);
        QCOMPARE(runTool(run + QStringList("nodes,rotating")).exitCode, 6);
    }

    void scalesPeriodicCases_data()
    {
        QTest::addColumn<Vector>("origin");
        QTest::addColumn<Vector>("translation");
        QTest::addColumn<QString>("scale");
        QTest::addColumn<QString>("sections");
        QTest::addColumn<QByteArray>("errors");
        const Vector none;
        const Vector beside(3, 0, 0);
        const QByteArray refusal =
            "ovrageo: error: the case is not fit for --scale: its periodic faces turn about an "
            "axis through (3, 0, 0), which misses the origin and is not scaled; import the case "
            "with --scale 2 instead\n";
        const QByteArray warning =
            "ovrageo: warning: the periodic translation is multiplied by the visual_scale_factor "
            "1, coordinates by 2; import the case with --scale 2 instead, or set that attribute\n";
        QTest::newRow("axis beside the origin") << beside << none << "2"
                                                << "periodic" << refusal;
        QTest::newRow("not scaled") << beside << none << "1"
                                    << "periodic" << QByteArray();
        QTest::newRow("another section") << beside << none << "2"
                                         << "nodes" << QByteArray();
        QTest::newRow("axis through the origin") << Vector(0, 0, 3) << none << "2"
                                                 << "periodic" << QByteArray();
        QTest::newRow("translation") << none << beside << "2"
                                     << "periodic" << warning;
    }

    void scalesPeriodicCases()
    {
        QFETCH(Vector, origin);
        QFETCH(Vector, translation);
        QFETCH(QString, scale);
        QFETCH(QString, sections);
        Matrix quarterTurn;
        quarterTurn.setRow(0, Vector(0, -1, 0));
        quarterTurn.setRow(1, Vector(1, 0, 0));
        quarterTurn.setRow(2, Vector(0, 0, 1));
        TinyCase tiny;
        makePeriodic(tiny);
        AttributeMap& model = tiny.model()->attributes();
        model.insert(AttributeType::PeriodicOrigin, QVariant::fromValue(origin));
        model.insert(AttributeType::PeriodicTranslation, QVariant::fromValue(translation));
        model.insert(AttributeType::PeriodicXAxis, QVariant::fromValue(Vector(1, 0, 0)));
        model.insert(AttributeType::PeriodicYAxis, QVariant::fromValue(Vector(0, 1, 0)));
        model.insert(AttributeType::PeriodicZAxis, QVariant::fromValue(Vector(0, 0, 1)));
        model.insert(AttributeType::PeriodicMatrix, QVariant::fromValue(quarterTurn));
        QVERIFY(tiny.save(path("turning")));
        const ToolRun run = runTool({"solver-input", path("turning"), "-o", path("turning.txt"),
                                     "--scale", scale, "--sections", sections});
        QTEST(run.errors, "errors");
        QCOMPARE(run.exitCode, run.errors.contains("error") ? 6 : 0);
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

    static void makeReplica(TinyCase& tiny, int original)
    {
        tiny.region->attributes().insert(T::MotionType, 1);
        tiny.region->attributes().insert(T::OriginalMotionRegion, original);
    }

    static void makeRotor(TinyCase& tiny, int stator)
    {
        tiny.region->attributes().insert(T::MaterialType, QStringLiteral("rotating_device"));
        tiny.face->attributes().insert(T::StatorFace, stator);
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolSolverInput)
#include "tst_ToolSolverInput.moc"
