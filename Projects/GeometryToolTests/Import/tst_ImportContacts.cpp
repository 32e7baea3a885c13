#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ToolRun.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// Bodies that nearly touch, overlap, or touch in meshes: what import says, and that its advice
/// works.
class TestImportContacts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void advisesATolerance_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("words");
        QTest::addColumn<int>("shared"); // faces of two bodies, once they are joined
        const auto row = [](const char* name, const char* shapes, const char* words, int shared) {
            QTest::newRow(name) << QByteArray(shapes) << QByteArray(words) << shared;
        };
        row("a gap", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.002, 3, 3, 1};\n",
            "1 and 2 over an area of 9; nothing passes between them; --join --join-tolerance "
            "0.0025 cuts them along one another, see Import.md\n",
            1);
        row("sunk in", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.998, 3, 3, 1};\n",
            "1 and 2 over an area of 9; nothing passes between them; --join --join-tolerance "
            "0.0025 ",
            1);
        row("two gaps, the wider one counts",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {1, 2, 1.002, 3, 3, 1};\n"
            "Box(3) = {6, 2, 1.004, 3, 3, 1};\n",
            "2 pairs of regions touch without being joined: 1 and 2 over an area of 9, 1 and 3 "
            "over an area of 9; nothing passes between them; --join --join-tolerance 0.005 ",
            2);
        row("a contact and a gap",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {1, 2, 1, 3, 3, 1};\n"
            "Box(3) = {6, 2, 1.004, 3, 3, 1};\n",
            "--join --join-tolerance 0.005 ", 2);
        row("a nut with little play",
            "Cylinder(1) = {0, 0, 0, 0, 0, 10, 1};\nCylinder(2) = {0, 0, 4, 0, 0, 2, 2};\n"
            "Cylinder(3) = {0, 0, 3, 0, 0, 5, 1.002};\n"
            "BooleanDifference(4) = {Volume{2}; Delete;} {Volume{3}; Delete;};\n",
            "1 and 4 over an area of 12.59", 1);
        row("planar", "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1.0005, 0.5, 0, 1, 1};\n",
            "1 and 2 over a length of 0.5; nothing passes between them; --join --join-tolerance "
            "0.00063 ",
            1);
    }

    void advisesATolerance()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, words);
        QVERIFY(writeScript(shapes));
        const ToolRun run = import("bodies.geo");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(isOneWarning(run.errors) && run.errors.contains(words), run.errors.constData());
        static const QRegularExpression advice(QStringLiteral("--join-tolerance ([0-9.e-]+) "));
        const QString tolerance = advice.match(QString::fromUtf8(run.errors)).captured(1);
        const ToolRun joined = import("bodies.geo", {"--join", "--join-tolerance", tolerance});
        QCOMPARE(joined.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QTEST(sharedFacesOf(imported), "shared");
    }

    void isSilentWhereAGapIsToStay_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QStringList>("options");
        const QByteArray gap = "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.002, 3, 3, 1};\n";
        QTest::newRow("by a tolerance") << gap << QStringList{"--join-tolerance", "0.001"};
        QTest::newRow("as elements are fine") << gap << QStringList{"--mesh-size", "0.15"};
        QTest::newRow("as it is wide")
            << QByteArray("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.05, 3, 3, 1};\n")
            << QStringList();
    }

    void isSilentWhereAGapIsToStay()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QStringList, options);
        QVERIFY(writeScript("Box(9) = {0, 0, -2, 1, 1, 1};\n" + shapes));
        const ToolRun run = import("bodies.geo", options);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    void saysThatTheScriptIsNotToMesh()
    {
        QVERIFY(
            writeScript("Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\nMesh 3;\n"));
        const ToolRun run = import("bodies.geo");
        QVERIFY2(run.errors.contains("--join cuts them along one another if the script leaves out "
                                     "its Mesh command, see Import.md\n"),
                 run.errors.constData());
        QCOMPARE(import("bodies.geo", {"--join"}).exitCode, 6);
    }

    void advisesTheToleranceThatIsGiven_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("a gap")
            << QByteArray("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.002, 3, 3, 1};\n")
            << QByteArray("; --join --join-tolerance 0.005 cuts them along one another, see "
                          "Import.md\n");
        QTest::newRow("an overlap")
            << QByteArray("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.5, 3, 3, 1};\n")
            << QByteArray("; --join --join-tolerance 0.005 gives it to the smaller one, see "
                          "Import.md\n");
        QTest::newRow("a script that meshes")
            << QByteArray("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.002, 3, 3, 1};\n"
                          "Mesh 3;\n")
            << QByteArray("; --join --join-tolerance 0.005 cuts them along one another if the "
                          "script leaves out its Mesh command, see Import.md\n");
    }

    void advisesTheToleranceThatIsGiven()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, words);
        QVERIFY(writeScript(shapes));
        const ToolRun run = import("bodies.geo", {"--join-tolerance", "0.005"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(isOneWarning(run.errors) && run.errors.endsWith(words), run.errors.constData());
    }

    void advisesTheKernelThatCuts_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("planar") << square(1, 0, 0) + square(11, 1, 0.25) << QStringList()
                                << QByteArray("over a length of 0.75; nothing passes between them; "
                                              "--join cuts them along one another if ");
        QTest::newRow("in space")
            << square(1, 0, 0) + square(11, 1, 0.25) +
                   "Extrude {0, 0, 1} {Surface{1};}\nExtrude {0, 0, 1} {Surface{11};}\n"
            << QStringList()
            << QByteArray("over an area of 0.75; nothing passes between them; --join cuts them "
                          "along one another if ");
        QTest::newRow("an overlap")
            << square(1, 0, 0) + square(11, 0.5, 0.25) << QStringList()
            << QByteArray("by an area of 0.375; what they have in common is meshed for each of "
                          "them; --join gives it to the smaller one if ");
        QTest::newRow("with a tolerance")
            << square(1, 0, 0) + square(11, 1, 0.25) << QStringList{"--join-tolerance", "1e-05"}
            << QByteArray("; --join --join-tolerance 1e-05 cuts them along one another if ");
    }

    void advisesTheKernelThatCuts()
    {
        QFETCH(QByteArray, script);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, words);
        const QByteArray kernel = "SetFactory(\"OpenCASCADE\")";
        QVERIFY(writeContent(path("bodies.geo"), script));
        const ToolRun run = import("bodies.geo", options);
        QVERIFY2(isOneWarning(run.errors) && run.errors.endsWith(words + "the script begins with " +
                                                                 kernel + ", see Import.md\n"),
                 run.errors.constData());
        QVERIFY(writeContent(path("bodies.geo"), kernel + ";\n" + script));
        const ToolRun joined = import("bodies.geo", QStringList{"--join"} + options);
        QCOMPARE(joined.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QVERIFY(sharedFacesOf(imported) > 0);
    }

    void advisesTheKernelAndNotToMesh()
    {
        QVERIFY(
            writeContent(path("bodies.geo"), square(1, 0, 0) + square(11, 1, 0.25) + "Mesh 2;\n"));
        const ToolRun run = import("bodies.geo");
        QVERIFY2(run.errors.endsWith("; --join cuts them along one another if the script begins "
                                     "with SetFactory(\"OpenCASCADE\") and leaves out its Mesh "
                                     "command, see Import.md\n"),
                 run.errors.constData());
    }

    void advisesNoKernelForAMeshThatAScriptLoads()
    {
        QVERIFY(writeScript("Rectangle(1) = {0, 0, 0, 1, 1};\n"
                            "Rectangle(2) = {1, 0.25, 0, 1, 1};\n"));
        QVERIFY(writeMesh());
        QVERIFY(writeContent(path("bodies.geo"), "Merge \"bodies.msh\";\n"));
        const ToolRun run = import("bodies.geo");
        QVERIFY2(run.errors.contains("; a mesh cannot be cut: mesh them together"),
                 run.errors.constData());
    }

    void warnsOfOverlaps_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* shapes, const char* words) {
            QTest::newRow(name) << QByteArray(shapes) << QByteArray(words);
        };
        row("half sunk in",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.5, 3, 3, 1};\n"
            "Physical Volume(\"board\") = {1};\nPhysical Volume(\"chip\") = {2};\n",
            "1 pair of regions overlaps: 1 (board) and 2 (chip) by a volume of 4.5; what they have "
            "in common is meshed for each of them; ");
        row("one in another",
            "Box(1) = {0, 0, 0, 10, 10, 10};\nBox(2) = {4, 4, 4, 1, 2, 1};\n"
            "Box(3) = {7, 7, 7, 2, 2, 1};\n",
            "2 pairs of regions overlap: 1 and 2 by a volume of 2, 1 and 3 by a volume of 4;");
        row("flush at a side", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {0, 2, 0.5, 3, 3, 0.5};\n",
            "1 pair of regions overlaps: 1 and 2 by a volume of 4.5;");
        row("bars that cross",
            "Box(1) = {0, 0, 0, 10, 1, 1};\nBox(2) = {4, -4, 0.25, 1, 10, 0.5};\n",
            "1 and 2 by a volume of 0.5;");
        row("planar", "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {0.5, 0.75, 0, 1, 1};\n",
            "1 pair of faces overlaps: 1 and 2 by an area of 0.125;");
        row("hexahedra",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {0.5, 0.5, 0.25, 1, 1, 1};\n"
            "Transfinite Curve {1:24} = 4;\nTransfinite Surface {1:12};\n"
            "Transfinite Volume {1:2};\nRecombine Surface {1:12};\n",
            "1 and 2 by a volume of 0.1875;");
    }

    void warnsOfOverlaps()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, words);
        QVERIFY(writeScript(shapes));
        const ToolRun run = import("bodies.geo");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(isOneWarning(run.errors) && run.errors.contains(words) &&
                     run.errors.endsWith("--join gives it to the smaller one, see Import.md\n"),
                 run.errors.constData());
        QVERIFY(writeMesh());
        const ToolRun ofMesh = import("bodies.msh");
        QCOMPARE(ofMesh.exitCode, 0);
        QVERIFY2(isOneWarning(ofMesh.errors) && ofMesh.errors.contains(words) &&
                     ofMesh.errors.endsWith("with --join, see Import.md\n"),
                 ofMesh.errors.constData());
    }

    void saysWhereJoiningFails()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {0, 0, 0, 1, 1, 1};\n"));
        const ToolRun run = import("bodies.geo");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(
            isOneWarning(run.errors) &&
                run.errors.contains(": 1 pair of regions overlaps: 1 and 2 by a volume of 1;") &&
                run.errors.endsWith("--join fails over them, part them in the program that "
                                    "the file comes from, see Import.md\n"),
            run.errors.constData());
        QCOMPARE(import("bodies.geo", {"--join"}).exitCode, 6);
        QVERIFY(writeMesh());
        QVERIFY(import("bodies.msh").errors.contains("1 and 2 by a volume of 1;"));
    }

    void tellsOfOverlapsInTheUnitOfTheCase()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.5, 3, 3, 1};\n"));
        QVERIFY(import("bodies.geo", {"--scale", "0.1"}).errors.contains("by a volume of 0.0045;"));
        QVERIFY(writeMesh());
        QVERIFY(import("bodies.msh", {"--scale", "0.1"}).errors.contains("by a volume of 0.0045;"));
    }

    void warnsOfOverlapsOnceWhereTheyAreJoined()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.5, 3, 3, 1};\n"));
        const ToolRun run = import("bodies.geo", {"--join"});
        QVERIFY2(isOneWarning(run.errors) && run.errors.contains("which goes to region 2"),
                 run.errors.constData());
    }

    void warnsOfContactsOfMeshes_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* shapes, const char* words) {
            QTest::newRow(name) << QByteArray(shapes) << QByteArray(words);
        };
        row("a chip on a board",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1, 3, 3, 1};\n"
            "Physical Volume(\"board\") = {1};\nPhysical Volume(\"chip\") = {2};\n",
            "1 pair of regions touches without being joined: 1 (board) and 2 (chip) over an area "
            "of 9; nothing passes between them; ");
        row("over the rim, turned",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {0, 0, 1, 1, 1, 1};\n"
            "Rotate {{0, 0, 1}, {0, 0, 0}, Pi / 4} {Volume{2};}\n",
            "1 and 2 over an area of 0.5;");
        row("a gap", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.002, 3, 3, 1};\n",
            "1 and 2 over an area of 9;");
        row("sunk in", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.998, 3, 3, 1};\n",
            "1 and 2 over an area of 9");
        row("askew in space",
            "Box(1) = {0, 0, 0, 4, 4, 1};\nBox(2) = {1, 1, 1, 1, 2, 1};\n"
            "Rotate {{1, 2, 3}, {5, 0, 0}, 1} {Volume{1:2};}\n",
            "1 and 2 over an area of 2;");
        row("planar", "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1, 0.75, 0, 1, 1};\n",
            "1 pair of faces touches without being joined: 1 and 2 over a length of 0.25;");
        row("quadrilaterals",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0.5, 0.25, 1, 1, 1};\n"
            "Transfinite Curve {1:24} = 4;\nTransfinite Surface {1:12};\n"
            "Transfinite Volume {1:2};\nRecombine Surface {1:12};\n",
            "1 and 2 over an area of 0.375;");
    }

    void warnsOfContactsOfMeshes()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, words);
        QVERIFY(writeScript(shapes));
        QVERIFY(writeMesh());
        const ToolRun run = import("bodies.msh");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(isOneWarning(run.errors) && run.errors.contains(words), run.errors.constData());
    }

    void isSilentAboutMeshesThatAreSound_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        const auto row = [](const char* name, const char* shapes) {
            QTest::newRow(name) << QByteArray(shapes);
        };
        row("joined", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0.5, 0, 1, 1, 1};\nCoherence;\n");
        row("apart", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1.1, 0, 0, 1, 1, 1};\n");
        row("edge to edge", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 1, 0, 1, 1, 1};\n");
        row("an edge on a face", "Box(1) = {0, 0, 0, 4, 4, 1};\nBox(2) = {0, 0, 0, 1, 1, 1};\n"
                                 "Rotate {{0, 1, 0}, {0, 0, 0}, Pi / 4} {Volume{2};}\n"
                                 "Translate {1, 1, 1 + Sqrt(0.5)} {Volume{2};}\n");
        row("joined and round",
            "Box(1) = {-2, -2, 0, 4, 4, 2};\nSphere(2) = {0, 0, 1, 0.75};\nCoherence;\n");
        row("planar and joined", "Rectangle(1) = {0, 0, 0, 1, 1};\nDisk(2) = {1, 1, 0, 0.5};\n"
                                 "Coherence;\n");
    }

    void isSilentAboutMeshesThatAreSound()
    {
        QFETCH(QByteArray, shapes);
        QVERIFY(writeScript(shapes));
        QVERIFY(writeMesh());
        const ToolRun run = import("bodies.msh");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    // Bodies of the same box and size, and such as have a flat element.
    void isSilentAboutMeshesOfSharedNodes_data()
    {
        QTest::addColumn<QByteArray>("nodes");
        QTest::addColumn<QByteArray>("elements");
        const QByteArray cube = "8\n1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n"
                                "5 0 0 1\n6 1 0 1\n7 1 1 1\n8 0 1 1\n";
        QTest::newRow("wedges of a cube")
            << cube << QByteArray("2\n1 6 2 1 1 1 2 3 5 6 7\n2 6 2 2 2 1 3 4 5 7 8\n");
        QTest::newRow("triangles of a square")
            << cube << QByteArray("2\n1 2 2 1 1 1 2 3\n2 2 2 2 2 1 3 4\n");
        const QByteArray diamond = "6\n1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n5 .5 .5 -1\n6 .5 .5 1\n";
        QTest::newRow("a flat element above")
            << diamond
            << QByteArray("5\n1 4 2 1 1 1 3 2 5\n2 4 2 1 1 1 4 3 5\n3 4 2 2 2 1 2 4 6\n"
                          "4 4 2 2 2 2 3 4 6\n5 4 2 2 2 1 4 3 2\n");
        QTest::newRow("a flat element below")
            << diamond
            << QByteArray("5\n1 4 2 1 1 1 3 2 5\n2 4 2 1 1 1 4 3 5\n3 4 2 2 2 1 2 4 6\n"
                          "4 4 2 2 2 2 3 4 6\n5 4 2 1 1 1 2 3 4\n");
    }

    void isSilentAboutMeshesOfSharedNodes()
    {
        QFETCH(QByteArray, nodes);
        QFETCH(QByteArray, elements);
        QVERIFY(writeContent(path("bodies.msh"), "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n" +
                                                     nodes + "$EndNodes\n$Elements\n" + elements +
                                                     "$EndElements\n"));
        const ToolRun run = import("bodies.msh");
        QVERIFY2(!run.errors.contains("overlap"), run.errors.constData());
        QCOMPARE(run.exitCode, 0);
    }

    void isSilentWhereAGapOfStlIsToStay()
    {
        QVERIFY(writeContent(path("bodies.stl"), solid("board", {0, 0, 0}, {10, 10, 1}) +
                                                     solid("chip", {2, 2, 1.001}, {5, 5, 2})));
        QCOMPARE(import("bodies.stl", {"--join-tolerance", "0.0001"}).errors, QByteArray());
    }

    // Two bodies of an STL file, each of which is closed.
    void warnsOfContactsOfStlFiles_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<QByteArray>("words");
        const QByteArray area = "1 pair of regions touches without being joined: 1 (board) and 2 "
                                "(chip) over an area of 9; nothing passes between them; a mesh "
                                "cannot be cut: mesh them together in the program that the file "
                                "comes from, or import their geometry (STEP, IGES, BREP) with "
                                "--join, see Import.md\n";
        QTest::newRow("touching") << 1.0 << area;
        QTest::newRow("a gap") << 1.001 << area;
        QTest::newRow("overlapping") << 0.5
                                     << QByteArray("1 pair of regions overlaps: 1 (board) and 2 "
                                                   "(chip) by a volume of 4.5;");
    }

    void warnsOfContactsOfStlFiles()
    {
        QFETCH(double, height);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path("bodies.stl"), solid("board", {0, 0, 0}, {10, 10, 1}) +
                                                     solid("chip", {2, 2, height}, {5, 5, 2})));
        const ToolRun run = import("bodies.stl");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(isOneWarning(run.errors) && run.errors.contains(words), run.errors.constData());
    }

private:
    using Point = std::array<double, 3>;

    QString path(const char* name) const { return directory_.filePath(QString::fromLatin1(name)); }

    ToolRun import(const char* file, const QStringList& options = {})
    {
        return runTool(QStringList{"import", path(file), "-o", path("case")} + options);
    }

    /// \brief A unit square of the built-in kernel, whose entities are numbered from \p first.
    static QByteArray square(int first, double x, double y)
    {
        QByteArray corners;
        QByteArray sides;
        for (int i = 0; i < 4; ++i) {
            const double cornerX = x + (i == 1 || i == 2 ? 1 : 0);
            const double cornerY = y + i / 2;
            corners += "Point(" + QByteArray::number(first + i) + ") = {" +
                       QByteArray::number(cornerX) + ", " + QByteArray::number(cornerY) + ", 0};\n";
            sides += "Line(" + QByteArray::number(first + i) + ") = {" +
                     QByteArray::number(first + i) + ", " +
                     QByteArray::number(first + (i + 1) % 4) + "};\n";
        }
        const QByteArray number = QByteArray::number(first);
        return corners + sides + "Curve Loop(" + number + ") = {" + number + ":" +
               QByteArray::number(first + 3) + "};\nPlane Surface(" + number + ") = {" + number +
               "};\n";
    }

    bool writeScript(const QByteArray& shapes)
    {
        return writeContent(path("bodies.geo"), "SetFactory(\"OpenCASCADE\");\n" + shapes);
    }

    /// \brief What Gmsh makes of the script, as a mesh without geometry.
    bool writeMesh()
    {
        const GmshFixture gmsh;
        gmsh::open(path("bodies.geo").toStdString());
        gmsh::model::mesh::generate(gmsh::model::getDimension());
        GmshFixture::write(path("bodies.msh"));
        return QFile::exists(path("bodies.msh"));
    }

    static bool isOneWarning(const QByteArray& errors)
    {
        return errors.startsWith("ovrageo: warning: ") && errors.count('\n') == 1;
    }

    static int sharedFacesOf(ImportedCase& imported)
    {
        const int dimension = imported.model()->faceDimension();
        int shared = 0;
        for (const auto* face : imported.entities(dimension)) {
            shared += face->adjacencyCount(dimension + 1) == 2 ? 1 : 0;
        }
        return shared;
    }

    /// \brief A box of twelve triangles, turned outwards.
    static QByteArray solid(const QByteArray& name, const Point& low, const Point& high)
    {
        static const int sides[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                        {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
        const auto corner = [&](int i) {
            QByteArray line = "vertex";
            for (int axis = 0; axis < 3; ++axis) {
                const auto at = static_cast<std::size_t>(axis);
                line += ' ' + QByteArray::number((i >> axis) % 2 == 0 ? low[at] : high[at]);
            }
            return line + '\n';
        };
        QByteArray text = "solid " + name + '\n';
        for (const auto& side : sides) {
            for (const int last : {2, 3}) {
                text += "facet normal 0 0 0\nouter loop\n" + corner(side[0]) +
                        corner(side[last - 1]) + corner(side[last]) + "endloop\nendfacet\n";
            }
        }
        return text + "endsolid " + name + '\n';
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportContacts)
#include "tst_ImportContacts.moc"
