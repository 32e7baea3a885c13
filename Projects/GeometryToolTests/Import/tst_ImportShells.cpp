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

    void warnsOfSurfacesInSpace()
    {
        QVERIFY(writeContent(path("roof.geo"),
                             "SetFactory(\"OpenCASCADE\");\nRectangle(1) = {0, 0, 0, 1, 1};\n"
                             "Rectangle(2) = {2, 0, 1, 1, 1};\n"));
        const ToolRun run = import("roof.geo");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(QString::fromUtf8(run.errors),
                 expected("roof.geo",
                          "holds no volumes and becomes a planar case, although its faces do not "
                          "lie in a plane; --dimension 3 fills what they enclose where the input "
                          "is a mesh"));
        QCOMPARE(import("roof.geo", {"--dimension", "2"}).errors, QByteArray());
    }

private:
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
