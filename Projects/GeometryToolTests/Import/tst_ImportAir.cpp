#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ModelFace.h"
#include "ToolRun.h"

#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

/// Parts that import puts into a box of air.
class TestImportAir : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        const GmshFixture gmsh;
        gmsh::model::occ::addBox(0, 0, 0, 10, 10, 1);
        gmsh::model::occ::addBox(2, 2, 1, 3, 3, 1);
        gmsh::model::occ::synchronize();
        GmshFixture::writeStep(path("board.step"), "set", {"board", "chip"});
    }

    void surroundsThePartsByAFactor()
    {
        const ToolRun run = import("board.step", {"--air", "3"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        // The parts reach from (0, 0, 0) to (10, 10, 2); the box is three times as long each way.
        QVERIFY((imported.model()->boundingBox().minimum() - Vector(-10, -10, -2)).length() < 1e-5);
        QVERIFY((imported.model()->boundingBox().maximum() - Vector(20, 20, 4)).length() < 1e-5);
        QCOMPARE(regionsOf(imported), QStringList({"air 5291", "board 100", "chip 9"}));
        QCOMPARE(sidesOf(imported), QStringList({"air-xmax 180", "air-xmin 180", "air-ymax 180",
                                                 "air-ymin 180", "air-zmax 900", "air-zmin 900"}));
        QCOMPARE(imported.model()->count(2), 6 + 6 + 6); // the footprint of the chip is one of six
    }

    void surroundsThePartsByABox()
    {
        const ToolRun run = import("board.step", {"--air-box", "-1,-2,-3,12,13,14"});
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(regionsOf(imported), QStringList({"air 3206", "board 100", "chip 9"}));
        for (auto* face : imported.entities(2)) {
            if (face->name().startsWith(QLatin1String("air-"))) {
                static const QMap<QString, Vector> places = {
                    {"air-xmin", {-1, 5.5, 5.5}}, {"air-xmax", {12, 5.5, 5.5}},
                    {"air-ymin", {5.5, -2, 5.5}}, {"air-ymax", {5.5, 13, 5.5}},
                    {"air-zmin", {5.5, 5.5, -3}}, {"air-zmax", {5.5, 5.5, 14}}};
                QVERIFY((face->centroid() - places.value(face->name())).length() < 1e-9);
                QCOMPARE(face->adjacencyCount(3), 1);
            }
        }
    }

    void makesAirFluidUnlessToldOtherwise()
    {
        QVERIFY(writeContent(path("a.json"),
                             "{\"names\": {\"board\": {\"material_type\": \"solid\"}},"
                             " \"groups\": {\"air-xmin\": {\"material_id\": 4}}}"));
        QCOMPARE(import("board.step", {"--air", "2", "--attributes", path("a.json")}).errors,
                 withoutMaterial("a.json", "1 region: 2 (Shapes/set/2/chip)"));
        ImportedCase imported(path("case"));
        QCOMPARE(materialsOf(imported), QStringList({"air fluid", "board solid", "chip "}));
        int walls = 0;
        for (auto* face : imported.entities(2)) {
            walls += face->attributes().contains(Ovra::Geo::AttributeType::MaterialId) ? 1 : 0;
        }
        QCOMPARE(walls, 1);
        QVERIFY(writeContent(path("b.json"),
                             "{\"names\": {\"air\": {\"material_type\": \"resistance\"},"
                             " \"air-*\": {\"material_id\": 4}}}"));
        QCOMPARE(import("board.step", {"--air", "2", "--attributes", path("b.json")}).errors,
                 withoutMaterial("b.json", "2 regions: 2 (Shapes/set/2/chip), 4 "
                                           "(Shapes/set/1/board)"));
        ImportedCase other(path("case"));
        QCOMPARE(materialsOf(other), QStringList({"air resistance", "board ", "chip "}));
    }

    void aPatternReachesAirAndPartsByAllNames_data()
    {
        QTest::addColumn<QByteArray>("names");
        QTest::addColumn<QStringList>("materials");
        QTest::newRow("all") << QByteArray(R"("*": {"material_type": "solid"})")
                             << QStringList{"air solid", "board solid", "chip solid"};
        QTest::newRow("all but the air")
            << QByteArray(R"("*": {"material_type": "solid"}, "air": {"material_type": "fluid"})")
            << QStringList{"air fluid", "board solid", "chip solid"};
        QTest::newRow("part of a name")
            << QByteArray(
                   R"("*a*": {"material_type": "solid"}, "c*p": {"material_type": "resistance"})")
            << QStringList{"air solid", "board solid", "chip resistance"};
    }

    // Of these parts, Gmsh knows groups and no names of their own.
    void aPatternReachesAirAndPartsByAllNames()
    {
        QFETCH(QByteArray, names);
        QVERIFY(writeContent(path("parts.geo"),
                             "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 10, 10, 1};\n"
                             "Box(2) = {2, 2, 1, 3, 3, 1};\nPhysical Volume(\"board\") = {1};\n"
                             "Physical Volume(\"chip\") = {2};\n"));
        QVERIFY(writeContent(path("all.json"), "{\"names\": {" + names + "}}"));
        const ToolRun run = import("parts.geo", {"--air", "2", "--attributes", path("all.json")});
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QTEST(materialsOf(imported), "materials");
    }

    void goesTheWholeRoad()
    {
        QVERIFY(
            writeContent(path("road.json"),
                         "{\"names\": {\"*\": {\"material_type\": \"solid\", \"material_id\": 2},"
                         " \"air\": {\"material_type\": \"fluid\", \"material_id\": 1}}}"));
        const ToolRun imported = import(
            "board.step", {"--air", "3", "--mesh-size", "2", "--attributes", path("road.json")});
        QCOMPARE(imported.errors, QByteArray());
        const ToolRun verified = runTool({"verify", path("case")});
        QVERIFY2(verified.exitCode == 0, verified.output.constData());
        const ToolRun prepared = runTool({"prepare", path("case"), "-o", path("ready"), "--all"});
        QCOMPARE(prepared.errors, QByteArray());
        QCOMPARE(prepared.exitCode, 0);
        const ToolRun verifiedAgain = runTool({"verify", path("ready")});
        QVERIFY2(verifiedAgain.exitCode == 0, verifiedAgain.output.constData());
        const ToolRun written = runTool({"solver-input", path("ready"), "-o", path("input")});
        QCOMPARE(written.errors, QByteArray());
        QCOMPARE(written.exitCode, 0);
        // Of the board and the chip, each face towards the air is split; their contact is not.
        ImportedCase before(path("case"));
        ImportedCase after(path("ready"));
        QCOMPARE(after.model()->count(2), before.model()->count(2) + 11);
    }

    void keepsToClosedHollows()
    {
        QVERIFY(
            writeContent(path("shell.geo"),
                         "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 3, 3, 3};\n"
                         "Box(2) = {1, 1, 1, 1, 1, 1};\n"
                         "BooleanDifference(3) = {Volume{1}; Delete;} {Volume{2}; Delete;};\n"));
        QCOMPARE(import("shell.geo", {"--air", "2"}).errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(regionsOf(imported), QStringList({" 26", "air 1", "air 189"}));
    }

    void warnsOfPartsThatTouchASide()
    {
        const ToolRun run = import("board.step", {"--air-box", "0,-5,-5,15,15,5"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.startsWith("ovrageo: warning: ") && run.errors.count('\n') == 1 &&
                     run.errors.contains("/board) touches the side air-xmin of the box; no air is "
                                         "there\n"),
                 run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(regionsOf(imported), QStringList({"air 2891", "board 100", "chip 9"}));
        QVERIFY(sidesOf(imported).contains("air-xmin 190"));
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* shapes, const QStringList& options,
                            int exitCode, const char* words) {
            QTest::newRow(name) << QByteArray(shapes) << options << exitCode << QByteArray(words);
        };
        const char* const box = "Box(1) = {0, 0, 0, 1, 1, 1};\nPhysical Volume(\"chip\") = {1};\n";
        row("a part that pokes out", box, {"--air-box", "-1,-1,-1,2,2,0.5"}, 6,
            ": region 1 (chip) reaches out of the box of air; make that larger\n");
        row("a part outside", box, {"--air-box", "5,5,5,6,6,6"}, 6,
            ": region 1 (chip) reaches out of the box of air; make that larger\n");
        row("a part around the box", box, {"--air-box", "0.25,0.25,0.25,0.5,0.5,0.5"}, 6,
            ": region 1 (chip) reaches out of the box of air; make that larger\n");
        row("no room for air", box, {"--air-box", "0,0,0,1,1,1"}, 6,
            ": nothing is left of region 2 (air), as other bodies fill its place\n");
        row("a group of the name",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nPhysical Volume(\"air\") = {1};\n", {"--air", "2"}, 6,
            ": has the name \"air\" already, which the air is to get\n");
        row("a side of the name",
            "Box(1) = {0, 0, 0, 1, 1, 1};\nPhysical Surface(\"air-ymin\") = {1};\n", {"--air", "2"},
            6, ": has the name \"air-ymin\" already, which the air is to get\n");
        row("planar", "Rectangle(1) = {0, 0, 0, 1, 1};\n", {"--air", "2"}, 6,
            ": holds no volumes that air could surround\n");
        for (const char* factor : {"1", "0.5", "-2", "nan", "inf"}) {
            row(factor, box, {"--air", factor}, 2, "--air must be a number above 1\n");
        }
        row("corners in the wrong order", box, {"--air-box", "0,0,0,1,-1,1"}, 2,
            "--air-box must be X0,Y0,Z0,X1,Y1,Z1 with X0 below X1, Y0 below Y1 and Z0 below Z1\n");
        row("five numbers", box, {"--air-box", "0,0,0,1,1"}, 2, "--air-box");
        row("both", box, {"--air-box", "0,0,0,1,1,1", "--air", "2"}, 2, "--air");
    }

    void refuses()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path("bodies.geo"), "SetFactory(\"OpenCASCADE\");\n" + shapes));
        const ToolRun run = import("bodies.geo", options);
        QTEST(run.exitCode, "exitCode");
        QVERIFY2(isOneErrorLine(run.errors) && run.errors.contains(words), run.errors.constData());
    }

private:
    using Vector = Ovra::Geo::Vector;

    QString path(const char* name) const { return directory_.filePath(QString::fromLatin1(name)); }

    ToolRun import(const char* file, const QStringList& options)
    {
        return runTool(QStringList{"import", path(file), "-o", path("case")} + options);
    }

    QByteArray withoutMaterial(const char* attributes, const QByteArray& regions) const
    {
        return "ovrageo: warning: " + path(attributes).toUtf8() + ": gives no material_type to " +
               regions + "; without one, a region counts as neither fluid nor solid\n";
    }

    static QString nameAndSize(Ovra::Geo::ModelEntity* entity, double size)
    {
        return entity->name().section('/', -1) + ' ' +
               QString::number(std::round(size * 1e3) / 1e3);
    }

    /// \brief Last part of the name and volume of each region, sorted.
    static QStringList regionsOf(ImportedCase& imported)
    {
        QStringList regions;
        for (auto* region : imported.entities(3)) {
            regions.append(nameAndSize(region, ImportedCase::volume(region)));
        }
        regions.sort();
        return regions;
    }

    /// \brief Name and area of each side of the box, sorted.
    static QStringList sidesOf(ImportedCase& imported)
    {
        QStringList sides;
        for (auto* face : imported.entities(2)) {
            if (face->name().startsWith(QLatin1String("air-"))) {
                const auto* surface = dynamic_cast<const Ovra::Geo::ModelFace*>(face);
                sides.append(nameAndSize(face, surface->area()));
            }
        }
        sides.sort();
        return sides;
    }

    /// \brief Last part of the name and material_type of each region, sorted.
    static QStringList materialsOf(ImportedCase& imported)
    {
        QStringList types;
        for (auto* region : imported.entities(3)) {
            types.append(region->name().section('/', -1) + ' ' +
                         region->attributes()
                             .value(Ovra::Geo::AttributeType::MaterialType, QVariant())
                             .toString());
        }
        types.sort();
        return types;
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportAir)
#include "tst_ImportAir.moc"
