#include "GmshFixture.h"
#include "ImportChecks.h"
#include "Places.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

/// What import says of bodies that touch, joined or not.
class TestImportBodies : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void warnsOfBodiesThatTouchWithoutAJoint_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* shapes, const char* words) {
            QTest::newRow(name) << QByteArray(shapes) << QByteArray(words);
        };
        row("two boxes", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\n",
            "1 pair of regions touches without being joined: 1 and 2 over an area of 1; nothing "
            "passes between them; --join cuts them along one another, see Import.md\n");
        row("names",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\n"
            "Physical Volume(\"air\") = {1};\nPhysical Volume(\"chip\") = {2};\n",
            ": 1 (air) and 2 (chip) over an area of 1;");
        row("four boxes about an edge",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\n"
            "Box(3) = {0, 1, 0, 1, 1, 1};\nBox(4) = {1, 1, 0, 1, 1, 1};\n",
            "4 pairs of regions touch without being joined: 1 and 2 over an area of 1, 1 and 3 "
            "over "
            "an area of 1, 2 and 4 over an area of 1, 3 and 4 over an area of 1;");
        row("small and far away",
            "Box(1) = {5, 5, 5, 1e-3, 1e-3, 1e-3};\nBox(2) = {5.001, 5, 5, 1e-3, 1e-3, 1e-3};\n",
            "1 and 2 over an area of 1e-06;");
        row("cylinder in a hole",
            "Box(1) = {-1, -1, 0, 2, 2, 1};\nCylinder(2) = {0, 0, 0, 0, 0, 1, 0.5};\n"
            "BooleanDifference(3) = {Volume{1}; Delete;} {Volume{2}; Delete;};\n"
            "Cylinder(4) = {0, 0, 0, 0, 0, 1, 0.5};\n",
            "3 and 4 over an area of 3.14159;");
        row("shifted", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0.01, 0, 1, 1, 1};\n",
            "1 and 2 over an area of 0.99;");
        row("two chips on a board",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1, 3, 3, 1};\n"
            "Box(3) = {9, 6, 1, 2, 2, 1};\n",
            "2 pairs of regions touch without being joined: 1 and 2 over an area of 9, 1 and 3 "
            "over "
            "an area of 2;");
        row("turned by 45 degrees",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {0, 0, 1, 1, 1, 1};\n"
            "Rotate {{0, 0, 1}, {0, 0, 0}, Pi / 4} {Volume{2};}\n",
            "1 and 2 over an area of 0.5;");
        row("a gap far below the elements",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.00001, 3, 3, 1};\n",
            "1 and 2 over an area of 9;");
        row("an overlap far below the elements",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.99999, 3, 3, 1};\n",
            "1 and 2 over an area of 9;");
        row("a nut on a bolt",
            "Cylinder(1) = {0, 0, 0, 0, 0, 10, 1};\nCylinder(2) = {0, 0, 4, 0, 0, 2, 2};\n"
            "Cylinder(3) = {0, 0, 3, 0, 0, 5, 1};\nRotate {{0, 0, 1}, {0, 0, 0}, 0.7} "
            "{Volume{2}; Volume{3};}\n"
            "BooleanDifference(4) = {Volume{2}; Delete;} {Volume{3}; Delete;};\n",
            "1 and 4 over an area of 12.5664;");
        row("a ball in its socket",
            "Box(1) = {-2, -2, -2, 4, 4, 2};\nSphere(2) = {0, 0, 0, 1};\nSphere(3) = {0, 0, 0, "
            "1};\n"
            "BooleanDifference(4) = {Volume{1}; Delete;} {Volume{2}; Delete;};\n",
            "3 and 4 over an area of 6.28319;");
        row("through two faces at once",
            "Box(1) = {0, 0, 0, 2, 1, 1};\nBox(2) = {0, 0, 1, 1, 1, 1};\nBox(3) = {1, 0, 1, 1, 1, "
            "1};\n",
            "3 pairs of regions");
        row("planar", "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1, 0, 0, 1, 1};\n",
            "1 pair of faces touches without being joined: 1 and 2 over a length of 1;");
        row("planar, in part",
            "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1, 0.75, 0, 1, 1};\n",
            "1 and 2 over a length of 0.25;");
        row("planar, a disk in its hole",
            "Rectangle(1) = {-2, -2, 0, 4, 4};\nDisk(2) = {0, 0, 0, 1};\n"
            "BooleanDifference(3) = {Surface{1}; Delete;} {Surface{2}; Delete;};\n"
            "Disk(4) = {0, 0, 0, 1};\n",
            "3 and 4 over a length of 6.28319;");
        row("more than ten",
            "Box(1) = {0, 0, 0, 24, 1, 1};\nFor i In {0 : 11}\nBox(2 + i) = {2 * i, 0, 1, 1, 1, "
            "1};\n"
            "EndFor\n",
            "12 pairs of regions touch without being joined: 1 and 2 over an area of 1, 1 and 3 "
            "over "
            "an area of 1, 1 and 4 over an area of 1, 1 and 5 over an area of 1, 1 and 6 over an "
            "area of 1, 1 and 7 over an area of 1, 1 and 8 over an area of 1, 1 and 9 over an area "
            "of 1, 1 and 10 over an area of 1, 1 and 11 over an area of 1, and 2 more;");
    }

    void warnsOfBodiesThatTouchWithoutAJoint()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, words);
        QVERIFY(writeScript(shapes));
        const ToolRun run = import("bodies.geo");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(isOneWarning(run.errors) && run.errors.contains(words), run.errors.constData());
    }

    void isSilentOtherwise_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        const auto row = [](const char* name, const char* shapes) {
            QTest::newRow(name) << QByteArray(shapes);
        };
        row("joined", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\nCoherence;\n");
        row("joined about an edge",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\n"
            "Box(3) = {0, 1, 0, 1, 1, 1};\nBox(4) = {1, 1, 0, 1, 1, 1};\nCoherence;\n");
        row("a gap", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1.01, 0, 0, 1, 1, 1};\n");
        row("an edge on a face", "Box(1) = {0, 0, 0, 4, 4, 1};\nBox(2) = {0, 0, 0, 1, 1, 1};\n"
                                 "Rotate {{0, 1, 0}, {0, 0, 0}, Pi / 4} {Volume{2};}\n"
                                 "Translate {1, 1, 1 + Sqrt(0.5)} {Volume{2};}\n");
        row("edge to edge", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 1, 0, 1, 1, 1};\n");
        row("in one plane", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {0, 0, 1.5, 1, 1, 1};\n");
        row("a nut with play",
            "Cylinder(1) = {0, 0, 0, 0, 0, 10, 1};\nCylinder(2) = {0, 0, 4, 0, 0, 2, 2};\n"
            "Cylinder(3) = {0, 0, 3, 0, 0, 5, 1.01};\n"
            "BooleanDifference(4) = {Volume{2}; Delete;} {Volume{3}; Delete;};\n");
        row("one in another, about the same centre",
            "Box(1) = {-1, -1, -1, 2, 2, 2};\nBox(2) = {-0.5, -0.5, -0.5, 1, 1, 1};\nCoherence;\n");
        row("planar and joined",
            "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1, 0, 0, 1, 1};\nCoherence;\n");
    }

    void isSilentOtherwise()
    {
        QFETCH(QByteArray, shapes);
        QVERIFY(writeScript(shapes));
        const ToolRun run = import("bodies.geo");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void isSilentAboutFacesThatAreTied()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\n"));
        QVERIFY(writeContent(path("tied.json"),
                             "{\"entities\": {\"3:1\": {\"material_type\": \"solid\"},"
                             " \"3:2\": {\"material_type\": \"solid\"},"
                             " \"2:7\": {\"extruded_face\": 2}}}"));
        const ToolRun run = import("bodies.geo", {"--attributes", path("tied.json")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void warnsOfMeshesThatAreNotConnected()
    {
        {
            const GmshFixture gmsh;
            gmsh::model::occ::addBox(0, 0, 0, 1, 1, 1);
            gmsh::model::occ::addBox(1, 0, 0, 1, 1, 1);
            gmsh::model::occ::synchronize();
            gmsh::model::mesh::generate(3);
            GmshFixture::write(path("apart.msh"));
        }
        const ToolRun run = import("apart.msh");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains(
                     "1 pair of regions touches without being joined: 1 and 2 over an area of 1; "
                     "nothing passes between them; a mesh cannot be cut: mesh them together in the "
                     "program that the file comes from, or import their geometry (STEP, IGES, "
                     "BREP) with --join, see Import.md\n"),
                 run.errors.constData());
    }

    void joinsAnAssemblyWithTheScriptOfTheManual()
    {
        {
            const GmshFixture gmsh;
            gmsh::model::occ::addBox(0, 0, 0, 1, 1, 1);
            gmsh::model::occ::addBox(1, 0, 0, 1, 1, 1);
            gmsh::model::occ::addBox(0.25, 0.25, 1, 0.5, 0.5, 0.2); // a chip on the first
            gmsh::model::occ::synchronize();
            GmshFixture::write(path("board.step"));
        }
        QVERIFY(import("board.step").errors.contains("2 pairs of regions"));
        QVERIFY(writeContent(path("board.geo"), scriptOfTheManual()));
        const ToolRun run = import("board.geo");
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        int shared = 0;
        for (const auto* face : imported.entities(2)) {
            shared += face->adjacencyCount(3) == 2 ? 1 : 0;
        }
        QCOMPARE(shared, 2);
    }

private:
    QString path(const char* name) const { return directory_.filePath(QString::fromLatin1(name)); }

    ToolRun import(const char* file, const QStringList& options = {})
    {
        return runTool(QStringList{"import", path(file), "-o", path("case")} + options);
    }

    bool writeScript(const QByteArray& shapes)
    {
        return writeContent(path("bodies.geo"), "SetFactory(\"OpenCASCADE\");\n" + shapes);
    }

    static bool isOneWarning(const QByteArray& errors)
    {
        return errors.startsWith("ovrageo: warning: ") && errors.count('\n') == 1;
    }

    static QByteArray scriptOfTheManual()
    {
        const QByteArray manual = contentOf(Places::documentation() + QStringLiteral("/Import.md"));
        const QByteArray mark = "<!-- file joined.geo -->\n```geo\n";
        const qsizetype begin = manual.indexOf(mark) + mark.size();
        return manual.mid(begin, manual.indexOf("```", begin) - begin);
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportBodies)
#include "tst_ImportBodies.moc"
