#include "FaceShells.h"
#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ModelRegion.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using Counts = std::vector<int>;
using Edges = std::map<int, std::vector<int>>;
Q_DECLARE_METATYPE(Counts)
Q_DECLARE_METATYPE(Edges)

/// Shells that a CAD file holds without saying that they are solids.
class TestImportShells : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void partsFacesIntoShells_data()
    {
        QTest::addColumn<Edges>("edges");
        QTest::addColumn<QString>("shells"); // faces, a slash, free edges
        QTest::newRow("no face") << Edges{} << "";
        QTest::newRow("sphere: a seam alone") << Edges{{7, {3, 3}}} << "7/0";
        QTest::newRow("disk") << Edges{{7, {3}}} << "7/1";
        QTest::newRow("lens") << Edges{{1, {5}}, {2, {5}}} << "1 2/0";
        QTest::newRow("two lenses on one rim, by number")
            << Edges{{1, {5}}, {2, {5}}, {3, {5}}, {4, {5}}} << "1 2/0, 3 4/0";
        QTest::newRow("the face between two bodies is a side of both")
            << Edges{{1, {5}}, {2, {5}}, {3, {5}}} << "1 2/0, 1 3/0";
        QTest::newRow("a fin stands on a body")
            << Edges{{1, {5, 6}}, {2, {5, 6}}, {3, {5, 8}}} << "1 2/0, 3/2";
    }

    void partsFacesIntoShells()
    {
        QFETCH(Edges, edges);
        QStringList texts;
        const Ovra::GeoTool::FaceShells parted(edges);
        for (const auto& shell : parted.shells()) {
            QStringList faces;
            for (const int face : shell.faces) {
                faces += QString::number(face);
            }
            texts += QStringLiteral("%1/%2").arg(faces.join(' ')).arg(shell.freeEdges);
        }
        QTEST(texts.join(", "), "shells");
    }

    void makesSolids_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<std::vector<double>>("volumes");
        QTest::addColumn<QString>("warning");
        const auto both = [](const char* name, const char* script,
                             const std::vector<double>& volumes, const char* warning) {
            for (const char* suffix : {"brep", "step"}) {
                QTest::addRow("%s, %s", name, suffix) << script << suffix << volumes << warning;
            }
        };
        both("a box", "Box(1) = {0, 0, 0, 1, 1, 1};", {1}, "");
        both("two boxes apart", "Box(1) = {0, 0, 0, 1, 1, 1}; Box(2) = {3, 0, 0, 2, 1, 1};", {1, 2},
             "");
        both("a box in a box", "Box(1) = {0, 0, 0, 3, 3, 3}; Box(2) = {1, 1, 1, 1, 1, 1};", {26},
             "1 closed shell lies inside another and is taken for a hollow");
        both("a box in a hollow in a box",
             "Box(1) = {0, 0, 0, 5, 5, 5}; Box(2) = {1, 1, 1, 3, 3, 3}; "
             "Box(3) = {2, 2, 2, 1, 1, 1};",
             {98, 1}, "1 closed shell lies inside another and is taken for a hollow");
        both("a box and half of one",
             "Box(1) = {0, 0, 0, 1, 1, 1}; Box(2) = {3, 0, 0, 1, 1, 1}; Delete {Volume{2}; "
             "Surface{12};}",
             {1},
             "1 solid is made of its shells, but some faces enclose no volume: 4 edges belong "
             "to one face only; they stay surfaces");
    }

    void makesSolids()
    {
        QFETCH(QString, script);
        QFETCH(QString, suffix);
        QFETCH(std::vector<double>, volumes);
        QFETCH(QString, warning);
        writeShells(script, suffix);
        const ToolRun run = import("shells." + suffix, {"--mesh-size", "1"});
        QCOMPARE(QString::fromUtf8(run.errors), expected("shells." + suffix, warning));
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.meshFaults(), QString());
        const auto regions = imported.entities(3);
        QCOMPARE(regions.size(), volumes.size());
        for (std::size_t i = 0; i < regions.size(); ++i) {
            QVERIFY(qAbs(ImportedCase::volume(regions[i]) - volumes[i]) < 1e-6);
            auto* region = dynamic_cast<Ovra::Geo::ModelRegion*>(regions[i]);
            QVERIFY(qAbs(region->volume() - volumes[i]) < 1e-6);
        }
    }

    void tellsOfOpenShells_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("BREP") << "brep";
        QTest::newRow("STEP") << "step";
    }

    void tellsOfOpenShells()
    {
        QFETCH(QString, suffix);
        writeShells("Box(1) = {0, 0, 0, 1, 1, 1}; Delete {Volume{1}; Surface{6};}", suffix);
        const QString text = "its faces enclose no volume: 4 edges belong to one face only";
        const ToolRun run = import("shells." + suffix);
        QCOMPARE(QString::fromUtf8(run.errors),
                 expected("shells." + suffix, text + "; only the faces are imported"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(ImportedCase(path("case")).modelCounts()[3], 0);
        const ToolRun solid = import("shells." + suffix, {"--dimension", "3"});
        QCOMPARE(solid.exitCode, 6);
        QCOMPARE(QString::fromUtf8(solid.errors),
                 QStringLiteral("ovrageo: error: %1: %2\n").arg(path("shells." + suffix), text));
        const ToolRun surface = import("shells." + suffix, {"--dimension", "2"});
        QCOMPARE(surface.exitCode, 0);
        QCOMPARE(surface.errors, QByteArray());
    }

    void sewsWithinATolerance()
    {
        IgesFile iges;
        iges.addPatch({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0});
        iges.addPatch({0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {1, 1, 1});
        iges.addPatch({0, 0, 0}, {1, 0, 0}, {0, 0, 1}, {1, 0, 1});
        iges.addPatch({0, 1.000005, 0}, {1, 1, 0}, {0, 1, 1}, {1, 1, 1});
        iges.addPatch({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 1, 1});
        iges.addPatch({1, 0, 0}, {1, 1, 0}, {1, 0, 1}, {1, 1, 1});
        QVERIFY(writeContent(path("gap.igs"), iges.content()));
        const ToolRun run = import("gap.igs", {"--mesh-size", "0.5"});
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{8, 12, 6, 1}));
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 1) < 1e-4);
    }

    void tellsOfFacesBesideSolids()
    {
        writeShells("Box(1) = {0, 0, 0, 1, 1, 1}; Sphere(2) = {3, 0, 0, 0.5}; "
                    "Rectangle(20) = {5, 0, 0, 1, 1}; Delete {Volume{2};}",
                    "brep", false);
        const ToolRun run = import("shells.brep", {"--mesh-size", "0.5"});
        QCOMPARE(QString::fromUtf8(run.errors),
                 expected("shells.brep",
                          "beside its solids it holds 2 faces that bound none of them, in 1 closed "
                          "shell and open "
                          "ones, where 4 edges belong to one face only; they stay surfaces without "
                          "volume"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(ImportedCase(path("case")).modelCounts()[3], 1);
    }

    void leavesPlanarFacesAlone()
    {
        writeShells("Rectangle(1) = {0, 0, 0, 1, 1}; Rotate {{1, 1, 0}, {0, 0, 0}, Pi/5} "
                    "{Surface{1};}",
                    "step");
        const ToolRun run = import("shells.step");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(ImportedCase(path("case")).modelCounts()[2], 1);
    }

    void warnsOfSurfacesInSpace_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("advice");
        const QString script = "where they enclose one, let the script make it by Coherence, "
                               "Surface Loop and Volume, see Import.md";
        const QString filling = "--dimension 3 fills the volume that they enclose";
        QTest::newRow("script, roof") << "in.geo" << Rectangles << script;
        QTest::newRow("script, six sides") << "in.geo" << sixSides() << script;
        QTest::newRow("script, other kernel") << "in.geo" << Extruded << script;
        QTest::newRow("closed mesh") << "in.msh" << mesh(cubeTriangles()) << filling;
        QTest::newRow("script of a mesh")
            << "in.geo" << QByteArray("Merge \"cube.msh\";\n") << filling;
        QTest::newRow("open mesh") << "in.msh" << mesh(cubeTriangles().mid(1))
                                   << "its surface encloses no volume: 3 edges belong to one "
                                      "triangle only";
        QTest::newRow("quadrilaterals")
            << "in.msh"
            << mesh({"1 4 3 2", "5 6 7 8", "1 2 6 5", "2 3 7 6", "3 4 8 7", "4 1 5 8"}, 3)
            << notOfTriangles();
    }

    void warnsOfSurfacesInSpace()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, advice);
        QVERIFY(writeContent(path("cube.msh"), mesh(cubeTriangles())));
        QVERIFY(writeContent(path(file), content));
        const ToolRun run = import(file);
        QCOMPARE(
            QString::fromUtf8(run.errors),
            expected(file, "holds no volumes and becomes a case of surfaces in space; " + advice));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(import(file, {"--dimension", "2"}).errors, QByteArray());
        if (advice.startsWith("--dimension 3")) {
            QCOMPARE(import(file, {"--dimension", "3"}).errors, QByteArray());
            QCOMPARE(ImportedCase(path("case")).modelCounts()[3], 1);
        }
    }

    void fillsNoQuadrilaterals()
    {
        QVERIFY(writeContent(path("in.msh"), mesh({"1 4 3 2", "1 2 6 5"}, 3)));
        const ToolRun run = import("in.msh", {"--dimension", "3"});
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(QString::fromUtf8(run.errors),
                 QStringLiteral("ovrageo: error: %1: %2\n").arg(path("in.msh"), notOfTriangles()));
    }

    void makesAVolumeAsImportMdAdvises_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("faces that share no edges") << sixSides();
        QTest::newRow("faces that share edges") << Extruded;
    }

    void makesAVolumeAsImportMdAdvises()
    {
        QFETCH(QByteArray, script);
        const QByteArray page = contentOf(Places::documentation() + "/Import.md");
        const qsizetype begin = page.indexOf("Coherence;\nl = newsl;");
        const QByteArray advice = page.mid(begin, page.indexOf("```", begin) - begin);
        QVERIFY(begin > 0 && advice.contains("Volume("));
        QVERIFY(writeContent(path("in.geo"), script + advice));
        const ToolRun run = import("in.geo", {"--mesh-size", "0.5"});
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{8, 12, 6, 1}));
        QCOMPARE(imported.faults(), QString());
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 1) < 1e-9);
    }

    void saysThatTheFacesOfAVolumeDoNotClose()
    {
        QVERIFY(writeContent(path("in.geo"), "SetFactory(\"OpenCASCADE\");\n"
                                             "Box(1) = {0, 0, 0, 1, 1, 1};\n"
                                             "Delete {Volume{1}; Surface{6};}\nl = newsl;\n"
                                             "Surface Loop(l) = {1:5};\nVolume(9) = {l};\n"));
        const ToolRun run = import("in.geo", {"--mesh-size", "0.5"});
        QCOMPARE(run.exitCode, 6);
        QVERIFY2(run.errors.endsWith("No elements in volume 9; its faces do not close: 4 edges "
                                     "belong to one of them only\n"),
                 run.errors.constData());
    }

private:
    static inline const QByteArray Rectangles = "SetFactory(\"OpenCASCADE\");\n"
                                                "Rectangle(1) = {0, 0, 0, 1, 1};\n"
                                                "Rectangle(2) = {0, 0, 1, 1, 1};\n";
    static inline const QByteArray Extruded =
        "Point(1) = {0, 0, 0}; Point(2) = {1, 0, 0}; Point(3) = {1, 1, 0}; Point(4) = {0, 1, 0};\n"
        "Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4}; Line(4) = {4, 1};\n"
        "Curve Loop(1) = {1:4}; Plane Surface(1) = {1};\n"
        "Extrude {0, 0, 1} {Surface{1};}\nDelete {Volume{1};}\n";

    /// A cube of rectangles that share no edges.
    static QByteArray sixSides()
    {
        const QByteArray upright = "{1, 0, 0}, {0, 0, 0}, Pi/2";
        const QByteArray sideways = "{0, 1, 0}, {0, 0, 0}, -Pi/2";
        return Rectangles + turnedSquare("3", upright) + turnedSquare("4", upright) +
               turnedSquare("5", sideways) + turnedSquare("6", sideways) +
               "Translate {0, 1, 0} {Surface{4};}\nTranslate {1, 0, 0} {Surface{6};}\n";
    }

    static QByteArray turnedSquare(const QByteArray& number, const QByteArray& turn)
    {
        return "Rectangle(" + number + ") = {0, 0, 0, 1, 1}; Rotate {" + turn + "} {Surface{" +
               number + "};}\n";
    }

    static QByteArrayList cubeTriangles()
    {
        return {"1 4 3", "1 3 2", "5 6 7", "5 7 8", "1 2 6", "1 6 5",
                "2 3 7", "2 7 6", "3 4 8", "3 8 7", "4 1 5", "4 5 8"};
    }

    /// Faces between the corners of a unit cube, of a type of Gmsh.
    static QByteArray mesh(const QByteArrayList& faces, int type = 2)
    {
        QByteArray text = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n8\n1 0 0 0\n2 1 0 0\n"
                          "3 1 1 0\n4 0 1 0\n5 0 0 1\n6 1 0 1\n7 1 1 1\n8 0 1 1\n$EndNodes\n"
                          "$Elements\n" +
                          QByteArray::number(faces.size()) + '\n';
        for (qsizetype i = 0; i < faces.size(); ++i) {
            text += QByteArray::number(i + 1) + ' ' + QByteArray::number(type) + " 2 1 1 " +
                    faces[i] + '\n';
        }
        return text + "$EndElements\n";
    }

    static QString notOfTriangles()
    {
        return "its surface is not of plain triangles alone and cannot be filled; make triangles "
               "of it, or a volume in the program that the file comes from";
    }

    QString path(const QString& name) const { return directory_.filePath(name); }

    QString expected(const QString& file, const QString& warning) const
    {
        return warning.isEmpty()
                   ? QString()
                   : QStringLiteral("ovrageo: warning: %1: %2\n").arg(path(file), warning);
    }

    /// \brief What a script makes, without its solids, as a file of faces.
    void writeShells(const QString& script, const QString& suffix, bool withoutSolids = true)
    {
        const QByteArray text = "SetFactory(\"OpenCASCADE\");\n" + script.toUtf8() +
                                (withoutSolids ? "\nDelete {Volume{:};}\n" : "\n");
        QVERIFY(writeContent(path("make.geo"), text));
        const GmshFixture gmsh;
        gmsh::open(path("make.geo").toStdString());
        gmsh::write(path("shells." + suffix).toStdString());
    }

    ToolRun import(const QString& file, const QStringList& options = {})
    {
        QFile::remove(path("case.geo_model"));
        QFile::remove(path("case.geo_mesh"));
        return runTool(QStringList{"import", path(file), "-o", path("case")} + options);
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportShells)
#include "tst_ImportShells.moc"
