#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ToolRun.h"

#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <numeric>

/// What import --join makes of bodies that touch or overlap.
class TestImportJoining : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        writeAssembly();
    }

    void joins_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QList<double>>("volumes");
        QTest::addColumn<QList<double>>("shared");
        const auto row = [](const char* name, const char* shapes, const QList<double>& volumes,
                            const QList<double>& shared) {
            QTest::newRow(name) << QByteArray(shapes) << volumes << shared;
        };
        row("side by side", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {1, 0, 0, 1, 1, 1};\n", {1, 1},
            {1});
        row("a chip on a board", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1, 3, 3, 1};\n",
            {100, 9}, {9});
        row("a chip over the rim", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {8, 2, 1, 3, 3, 1};\n",
            {100, 9}, {6});
        row("a gap", "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.00001, 3, 3, 1};\n",
            {100, 9}, {9});
        row("an overlap within the tolerance",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.99999, 3, 3, 1};\n", {100, 9}, {9});
        row("a gap at a rim in common",
            "Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {0, 0, 1.00001, 10, 5, 1};\n", {100, 50},
            {50});
        row("a stack",
            "Box(1) = {0, 0, 0, 3, 3, 1};\nBox(2) = {1, 1, 1, 3, 3, 1};\n"
            "Box(3) = {2, 2, 2, 3, 3, 1};\n",
            {9, 9, 9}, {4, 4});
        row("apart", "Box(1) = {0, 0, 0, 1, 1, 1};\nBox(2) = {2, 0, 0, 1, 1, 1};\n", {1, 1}, {});
        row("one body", "Box(1) = {0, 0, 0, 1, 1, 1};\n", {1}, {});
    }

    void joins()
    {
        QFETCH(QByteArray, shapes);
        QVERIFY(writeScript(shapes));
        const ToolRun run = import("bodies.geo", {"--join"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QTEST(volumesOf(imported), "volumes");
        QTEST(sharedAreasOf(imported), "shared");
        QCOMPARE(runTool({"verify", path("case")}).exitCode, 0);
    }

    void joinsRoundBodies()
    {
        QVERIFY(writeScript("Cylinder(1) = {0, 0, 0, 0, 0, 10, 1};\n"
                            "Cylinder(2) = {0, 0, 4, 0, 0, 2, 2};\n"
                            "Cylinder(3) = {0, 0, 3, 0, 0, 5, 1};\n"
                            "Rotate {{0, 0, 1}, {0, 0, 0}, 0.7} {Volume{2}; Volume{3};}\n"
                            "BooleanDifference(4) = {Volume{2}; Delete;} {Volume{3}; Delete;};\n"));
        const ToolRun run = import("bodies.geo", {"--join", "--mesh-size", "0.2"});
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        const QList<double> shared = sharedAreasOf(imported);
        const double sum = std::accumulate(shared.begin(), shared.end(), 0.0);
        QVERIFY2(qAbs(sum / (4 * M_PI) - 1) < 0.01, qPrintable(QString::number(sum)));
    }

    void closesGapsUpToTheGivenTolerance()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1.002, 3, 3, 1};\n"));
        QVERIFY(import("bodies.geo", {"--join-tolerance", "0.005"})
                    .errors.contains("1 and 2 over an area of 9;"));
        QCOMPARE(import("bodies.geo", {"--join", "--join-tolerance", "0.001"}).errors,
                 QByteArray());
        ImportedCase apart(path("case"));
        QCOMPARE(sharedAreasOf(apart), QList<double>());
        const ToolRun run = import("bodies.geo", {"--join", "--join-tolerance", "0.005"});
        QCOMPARE(run.errors, QByteArray());
        ImportedCase joined(path("case"));
        QCOMPARE(joined.faults(), QString());
        QCOMPARE(sharedAreasOf(joined), QList<double>{9});
    }

    void carriesGroupsOver()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1, 3, 3, 1};\n"
                            "Physical Volume(\"board\") = {1};\nPhysical Volume(\"chip\") = {2};\n"
                            "Physical Surface(\"above\") = {6};\n"
                            "Physical Surface(\"below\") = {5};\n"
                            "Physical Surface(\"foot\") = {11};\n"
                            "Physical Curve(\"rim\", 40) = {9, 10};\n"));
        QCOMPARE(import("bodies.geo", {"--join"}).errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(namesOf(imported, 3), QStringList({"board 100", "chip 9"}));
        QCOMPARE(namesOf(imported, 2), QStringList({"above 9", "above 91", "below 100"}));
        QCOMPARE(namesOf(imported, 1), QStringList({"rim", "rim"}));
        // The footprint lies in two groups; the second is no name, but can be reached.
        QVERIFY(writeContent(path("foot.json"),
                             "{\"names\": {\"board\": {\"material_type\": \"solid\"}},"
                             " \"groups\": {\"foot\": {\"material_id\": 7},"
                             " \"chip\": {\"material_type\": \"solid\", \"hot_faces\": "
                             "[\"above\"]}}}"));
        QCOMPARE(import("bodies.geo", {"--join", "--attributes", path("foot.json")}).errors,
                 QByteArray());
        ImportedCase attributed(path("case"));
        int feet = 0;
        for (auto* face : attributed.entities(2)) {
            feet += face->attributes().contains(Ovra::Geo::AttributeType::MaterialId) ? 1 : 0;
        }
        QCOMPARE(feet, 1);
        for (auto* region : attributed.entities(3)) {
            const auto hot =
                region->attributes().value(Ovra::Geo::AttributeType::HotFaces, QVariant());
            QCOMPARE(hot.toList().size(), region->name() == QLatin1String("chip") ? 2 : 0);
        }
    }

    void keepsTheGroupsOfAllFacesInTheirPlaces()
    {
        QByteArray groups;
        for (int face = 1; face <= 18; ++face) {
            const QByteArray id = QByteArray::number(face);
            groups += "Physical Surface(\"f" + id + "\", " + QByteArray::number(100 - face) +
                      ") = {" + id + "};\n";
        }
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 1, 3, 3, 1};\n"
                            "Box(3) = {10, 4, 0, 5, 9, 1};\n" +
                            groups));
        QCOMPARE(import("bodies.geo").exitCode, 0);
        ImportedCase apart(path("case"));
        QMap<QString, Ovra::Geo::Box> boxes;
        for (auto* face : apart.entities(2)) {
            boxes.insert(face->name(), face->boundingBox());
        }
        QCOMPARE(boxes.size(), 18);
        QCOMPARE(import("bodies.geo", {"--join"}).errors, QByteArray());
        ImportedCase joined(path("case"));
        QCOMPARE(joined.model()->count(2), 19); // three cut in two, two pairs become one
        for (auto* face : joined.entities(2)) {
            const Ovra::Geo::Box whole = boxes.value(face->name());
            const Ovra::Geo::Vector margin(1e-4, 1e-4, 1e-4);
            QVERIFY2(Ovra::Geo::Box(whole.minimum() - margin, whole.maximum() + margin)
                         .contains(face->boundingBox()),
                     qPrintable(face->name()));
        }
    }

    void carriesNamesOfStepFilesOver()
    {
        QCOMPARE(import("board.step", {"--join"}).errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(namesOf(imported, 3), QStringList({"Shapes/set/1/board 100", "Shapes/set/2/chip 9",
                                                    "Shapes/set/3/chip 9"}));
        QCOMPARE(sharedAreasOf(imported), QList<double>({9, 9}));
    }

    void namesBodiesOfStepFilesThatTouch()
    {
        const QByteArray errors = import("board.step").errors;
        QVERIFY2(errors.contains(": 1 (Shapes/set/1/board) and 2 (Shapes/set/2/chip) over an area "
                                 "of 9, 1 (Shapes/set/1/board) and 3 (Shapes/set/3/chip) over an "
                                 "area of 9;"),
                 errors.constData());
    }

    void givesOverlapsToTheSmallerBody()
    {
        QVERIFY(writeScript("Box(1) = {0, 0, 0, 10, 10, 1};\nBox(2) = {2, 2, 0.5, 3, 3, 1};\n"
                            "Physical Volume(\"board\") = {1};\nPhysical Volume(\"chip\") = {2};\n"
                            "Physical Surface(\"above\") = {6};\n"));
        const ToolRun run = import("bodies.geo", {"--join"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(
            run.errors,
            "ovrageo: warning: " + path("bodies.geo").toUtf8() +
                ": region 1 (board) and region 2 (chip) overlap by a volume of 4.5, which goes "
                "to region 2 (chip)\n");
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        double board = 0;
        double chip = 0;
        for (auto* region : imported.entities(3)) {
            (region->name() == QLatin1String("board") ? board : chip) +=
                ImportedCase::volume(region);
        }
        QVERIFY2(qAbs(board - 95.5) < 1e-6, qPrintable(QString::number(board)));
        QVERIFY2(qAbs(chip - 9) < 1e-6, qPrintable(QString::number(chip)));
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("a body that is there twice")
            << QByteArray("SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n"
                          "Box(2) = {0, 0, 0, 1, 1, 1};\nPhysical Volume(\"twin\") = {2};\n")
            << QStringList{"--join"} << 6
            << QByteArray("nothing is left of region 2 (twin), as other bodies fill its place");
        QTest::newRow("another kernel")
            << QByteArray(
                   "Point(1) = {0, 0, 0, 1};\nPoint(2) = {1, 0, 0, 1};\n"
                   "Point(3) = {0, 1, 0, 1};\nLine(1) = {1, 2};\nLine(2) = {2, 3};\n"
                   "Line(3) = {3, 1};\nCurve Loop(1) = {1, 2, 3};\nPlane Surface(1) = {1};\n")
            << QStringList{"--join"} << 6
            << QByteArray("--join and --air need geometry of the OpenCASCADE kernel, as STEP, IGES "
                          "and BREP files have it, and no mesh");
        QTest::newRow("no tolerance")
            << QByteArray("SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n")
            << QStringList{"--join", "--join-tolerance", "0"} << 2
            << QByteArray("--join-tolerance must be a positive number");
        QTest::newRow("a tolerance that eats the body")
            << QByteArray("SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 10, 10, 1};\n"
                          "Box(2) = {2, 2, 1, 3, 3, 0.5};\n")
            << QStringList{"--join", "--join-tolerance", "2"} << 6
            << QByteArray("bodies.geo: join");
    }

    void refuses()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path("bodies.geo"), shapes));
        const ToolRun run = import("bodies.geo", options);
        QTEST(run.exitCode, "exitCode");
        QVERIFY2(isOneErrorLine(run.errors) && run.errors.contains(words), run.errors.constData());
    }

    void refusesAMesh()
    {
        {
            const GmshFixture gmsh;
            GmshFixture::makeTwoBoxes(1);
            gmsh::model::mesh::generate(3);
            GmshFixture::write(path("boxes.msh"));
        }
        const ToolRun run = import("boxes.msh", {"--join"});
        QCOMPARE(run.exitCode, 6);
        QVERIFY2(run.errors.contains("and no mesh"), run.errors.constData());
    }

    void joinsPlanarModels()
    {
        QVERIFY(writeScript("Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1, 0.75, 0, 1, 1};\n"
                            "Physical Surface(\"left\") = {1};\n"
                            "Physical Curve(\"side\") = {2};\n"));
        QCOMPARE(import("bodies.geo", {"--join"}).errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        int shared = 0;
        QStringList sides;
        for (auto* edge : imported.entities(1)) {
            shared += edge->adjacencyCount(2) == 2 ? 1 : 0;
            sides += edge->name().isEmpty() ? QStringList() : QStringList(edge->name());
        }
        QCOMPARE(shared, 1);
        QCOMPARE(sides, QStringList({"side", "side"}));
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

    /// \brief A board with two chips of one name, as an assembly.
    void writeAssembly()
    {
        const GmshFixture gmsh;
        gmsh::model::occ::addBox(0, 0, 0, 10, 10, 1);
        gmsh::model::occ::addBox(1, 2, 1, 3, 3, 1);
        gmsh::model::occ::addBox(6, 2, 1, 3, 3, 1);
        gmsh::model::occ::synchronize();
        GmshFixture::writeStep(path("board.step"), "set", {"board", "chip", "chip"});
    }

    static double rounded(double value) { return std::round(value * 1e3) / 1e3; }

    /// \brief To 1e-3, as closing a gap moves what is there.
    static QList<double> volumesOf(ImportedCase& imported)
    {
        QList<double> volumes;
        for (auto* region : imported.entities(3)) {
            volumes.append(rounded(ImportedCase::volume(region)));
        }
        std::sort(volumes.rbegin(), volumes.rend()); // what is cut has a new number
        return volumes;
    }

    static double meshArea(Ovra::Geo::ModelEntity* face)
    {
        double area = 0;
        for (auto* element : ImportedCase::children(face)) {
            const auto v = ImportedCase::vertices(element);
            const auto origin = v[0]->centroid();
            area += 0.5 * ((v[1]->centroid() - origin) ^ (v[2]->centroid() - origin)).length();
        }
        return area;
    }

    static QList<double> sharedAreasOf(ImportedCase& imported)
    {
        QList<double> areas;
        for (auto* face : imported.entities(2)) {
            if (face->adjacencyCount(3) == 2) {
                areas.append(rounded(meshArea(face)));
            }
        }
        return areas;
    }

    /// \brief Names that are not empty, sorted, with the volume or area of the mesh.
    static QStringList namesOf(ImportedCase& imported, int dimension)
    {
        QStringList names;
        for (auto* entity : imported.entities(dimension)) {
            const double size = dimension == 3   ? ImportedCase::volume(entity)
                                : dimension == 2 ? meshArea(entity)
                                                 : 0;
            if (!entity->name().isEmpty()) {
                names.append(dimension == 1
                                 ? entity->name()
                                 : QStringLiteral("%1 %2").arg(entity->name()).arg(rounded(size)));
            }
        }
        names.sort();
        return names;
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportJoining)
#include "tst_ImportJoining.moc"
