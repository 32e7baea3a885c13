#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using Counts = std::vector<int>;
Q_DECLARE_METATYPE(Counts)

/// Two boxes that share a face, by way of every format that the installed Gmsh writes.
class TestImportFormats : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        const GmshFixture gmsh;
        GmshFixture::makeTwoBoxes(size);
        GmshFixture::write(path("two.step"));
        GmshFixture::write(path("two.brep"));
        IgesFile iges;
        iges.addBox(0, 0, 0, 1, 1, 1);
        iges.addBox(2, 0, 0, 3, 1, 1);
        QVERIFY(writeContent(path("two.igs"), iges.content()));
        gmsh::model::mesh::generate(3);
        for (int d = 0; d <= 3; ++d) {
            elements_.push_back(GmshFixture::elementCount(d));
        }
        nodes_ = GmshFixture::nodeCount();
        for (const char* suffix : {"unv", "bdf", "vtk", "mesh", "inp"}) {
            GmshFixture::write(path("two.") + QLatin1String(suffix));
        }
        GmshFixture::write(path("two2.msh"), true, 2.2);
        GmshFixture::write(path("two2b.msh"), true, 2.2, true);
        GmshFixture::write(path("two4.msh"));
        GmshFixture::write(path("two4b.msh"), true, 4.1, true);
        GmshFixture::write(path("groups4.msh"), false);
        GmshFixture::write(path("groups2.msh"), false, 2.2);
        GmshFixture::write(path("groups.unv"), false);
        GmshFixture::write(path("groups.inp"), false);
        GmshFixture::write(path("groups.vtk"), false);
        gmsh::model::addPhysicalGroup(2, {1, 3, 4, 5, 6, 7, 8, 9, 10, 11}, 3);
        GmshFixture::write(path("skin.stl"), false);
        GmshFixture::write(path("skinb.stl"), false, 4.1, true);
        skin_ = GmshFixture::elementCount(2) - GmshFixture::elementCount(2, 2);
        gmsh::model::mesh::setOrder(2);
        for (const char* suffix : {"msh", "unv", "bdf", "vtk", "inp", "mesh"}) {
            GmshFixture::write(path("second.") + QLatin1String(suffix));
        }
    }

    void importsMeshes_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<Counts>("model");
        QTest::addColumn<bool>("named");
        const Counts all{12, 20, 11, 2};
        const Counts ring{0, 1, 3, 2};
        QTest::newRow("msh 2") << "two2.msh" << all << false;
        QTest::newRow("msh 2 binary") << "two2b.msh" << all << false;
        QTest::newRow("msh 4") << "two4.msh" << all << true;
        QTest::newRow("msh 4 binary") << "two4b.msh" << all << true;
        QTest::newRow("universal") << "two.unv" << all << true;
        QTest::newRow("Nastran") << "two.bdf" << all << false;
        QTest::newRow("Medit") << "two.mesh" << all << false;
        QTest::newRow("Abaqus") << "two.inp" << all << true;
        QTest::newRow("msh 4, volumes only") << "groups4.msh" << all << true;
        QTest::newRow("msh 2, volumes only") << "groups2.msh" << ring << true;
        QTest::newRow("universal, volumes only") << "groups.unv" << ring << true;
        QTest::newRow("Abaqus, volumes only") << "groups.inp" << ring << true;
    }

    void importsMeshes()
    {
        QFETCH(QString, file);
        QFETCH(Counts, model);
        QFETCH(bool, named);
        const ToolRun run = import(file);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QVERIFY(imported.isOpen());
        QCOMPARE(imported.modelCounts(), model);
        QCOMPARE(imported.mesh()->count(0), nodes_);
        QCOMPARE(imported.mesh()->count(2), elements_[2]);
        QCOMPARE(imported.mesh()->count(3), elements_[3]);
        QCOMPARE(imported.faults(), QString());
        checkUnitRegions(imported);
        const auto regions = imported.entities(3);
        QCOMPARE(regions[0]->name(), named ? QStringLiteral("left") : QString());
        QCOMPARE(regions[1]->name(), named ? QStringLiteral("right") : QString());
    }

    /// The format has no numbers of bodies: what hangs together is one region.
    void makesOneRegionOfConnectedCells()
    {
        QCOMPARE(import("two.vtk").exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.mesh()->count(3), elements_[3]);
        QCOMPARE(imported.modelCounts(), (Counts{12, 20, 2, 1}));
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 2.0) < 1e-9);
        QCOMPARE(import("groups.vtk").exitCode, 0);
        ImportedCase bare(path("case"));
        QCOMPARE(bare.modelCounts(), (Counts{0, 0, 1, 1}));
        QCOMPARE(bare.faults(), QString());
        QCOMPARE(ImportedCase::eulerCharacteristic(bare.entities(3)[0]), 2);
    }

    void separatesBodiesThatDoNotTouch()
    {
        QVERIFY(writeContent(path("apart.vtk"),
                             "# vtk DataFile Version 2.0\ntwo\nASCII\nDATASET UNSTRUCTURED_GRID\n"
                             "POINTS 8 double\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n"
                             "5 0 0\n6 0 0\n5 1 0\n5 0 1\n"
                             "CELLS 2 10\n4 0 1 2 3\n4 4 5 6 7\nCELL_TYPES 2\n10\n10\n"));
        QCOMPARE(import("apart.vtk").exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{0, 0, 2, 2}));
        QCOMPARE(imported.faults(), QString());
    }

    void tellsOfAMeshSizeThatHasNoInfluence_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("isMeshed");
        QTest::newRow("mesh") << "two4.msh" << true;
        QTest::newRow("geometry") << "two.brep" << false;
    }

    void tellsOfAMeshSizeThatHasNoInfluence()
    {
        QFETCH(QString, file);
        QFETCH(bool, isMeshed);
        const ToolRun run =
            runTool({"import", path(file), "-o", path("sized"), "--mesh-size", "0.5"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors,
                 isMeshed ? "ovrageo: warning: " + path(file).toUtf8() +
                                ": brings a mesh with it, on which --mesh-size has no influence\n"
                          : QByteArray());
    }

    void meshesGeometry_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<Counts>("model");
        QTest::newRow("STEP, loose solids") << "two.step" << Counts{16, 24, 12, 2};
        QTest::newRow("BREP") << "two.brep" << Counts{12, 20, 11, 2};
    }

    void meshesGeometry()
    {
        QFETCH(QString, file);
        QFETCH(Counts, model);
        QCOMPARE(import(file, {"--mesh-size", "0.5"}).exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), model);
        {
            const GmshFixture gmsh;
            GmshFixture::openAndMesh(path(file), size);
            QCOMPARE(imported.meshCounts(),
                     (Counts{GmshFixture::nodeCount(), GmshFixture::elementCount(1),
                             GmshFixture::elementCount(2), GmshFixture::elementCount(3)}));
        }
        QCOMPARE(imported.faults(), QString());
        checkUnitRegions(imported);
        for (auto* face : imported.entities(2)) {
            QVERIFY(face->isPlanar());
            QVERIFY(qAbs(face->normal().length() - 1.0) < 1e-12);
        }
        for (auto* edge : imported.entities(1)) {
            QVERIFY(edge->isPlanar());
        }
    }

    void sewsLooseIgesFacesIntoSolids()
    {
        const ToolRun run = import("two.igs", {"--mesh-size", "0.5"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{16, 24, 12, 2}));
        QCOMPARE(imported.faults(), QString());
        checkUnitRegions(imported);
    }

    void fillsTriangulatedSurface_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("text") << "skin.stl";
        QTest::newRow("binary") << "skinb.stl";
    }

    void fillsTriangulatedSurface()
    {
        QFETCH(QString, file);
        const ToolRun run = import(file);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{0, 0, 1, 1}));
        QCOMPARE(imported.mesh()->count(2), skin_);
        QCOMPARE(imported.faults(), QString());
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 2.0) < 1e-6);
        QCOMPARE(ImportedCase::eulerCharacteristic(imported.entities(3)[0]), 2);
    }

    void importsSurfaceAlone()
    {
        QCOMPARE(import("skin.stl", {"--dimension", "2"}).exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{0, 0, 1, 0}));
        QCOMPARE(imported.mesh()->count(2), skin_);
    }

    void linearisesSecondOrder_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("hasCurvedLines");
        QTest::newRow("msh 4") << "second.msh" << true;
        QTest::newRow("universal") << "second.unv" << true;
        QTest::newRow("Nastran") << "second.bdf" << false; // its bars are straight
        QTest::newRow("VTK") << "second.vtk" << true;
        QTest::newRow("Abaqus") << "second.inp" << true;
        QTest::newRow("Medit") << "second.mesh" << true;
    }

    void linearisesSecondOrder()
    {
        QFETCH(QString, file);
        QFETCH(bool, hasCurvedLines);
        const ToolRun run = import(file);
        QCOMPARE(run.exitCode, 0);
        const int curved = (hasCurvedLines ? elements_[1] : 0) + elements_[2] + elements_[3];
        QCOMPARE(QString::fromUtf8(run.errors),
                 QStringLiteral("ovrageo: warning: %1: %2 elements of higher order become linear\n")
                     .arg(path(file))
                     .arg(curved));
        ImportedCase imported(path("case"));
        QCOMPARE(imported.mesh()->count(0), nodes_);
        QCOMPARE(imported.mesh()->count(1), elements_[1]);
        QCOMPARE(imported.mesh()->count(3), elements_[3]);
        if (imported.model()->count(3) == 2) { // else what was between them is inside one region
            QCOMPARE(imported.faults(), QString());
        }
    }

    void takesElementsOfBothOrdersOnOneEntity_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        // Two tetrahedra that share a face, of which the one below has ten nodes.
        const QByteArray nodes[] = {"0 0 0",   "1 0 0",  "0 1 0",   "0 0 1",    "0 0 -1",  ".5 0 0",
                                    ".5 .5 0", "0 .5 0", "0 0 -.5", ".5 0 -.5", "0 .5 -.5"};
        QByteArray spaced;
        QByteArray commas;
        for (int i = 0; i < 11; ++i) {
            const QByteArray line = QByteArray::number(i + 1) + ' ' + nodes[i] + '\n';
            spaced += line;
            commas += QByteArray(line).replace(' ', ',');
        }
        QTest::newRow("msh 2") << "orders.msh"
                               << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n11\n" + spaced +
                                      "$EndNodes\n$Elements\n2\n1 4 2 1 1 1 2 3 4\n"
                                      "2 11 2 1 1 1 3 2 5 8 7 6 9 10 11\n$EndElements\n";
        QTest::newRow("msh 2, the other first")
            << "orders.msh"
            << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n11\n" + spaced +
                   "$EndNodes\n$Elements\n2\n1 11 2 1 1 1 3 2 5 8 7 6 9 10 11\n"
                   "2 4 2 1 1 1 2 3 4\n$EndElements\n";
        QTest::newRow("Abaqus") << "orders.inp"
                                << "*NODE\n" + commas +
                                       "*ELEMENT, TYPE=C3D4, ELSET=A\n1, 1, 2, 3, 4\n"
                                       "*ELEMENT, TYPE=C3D10, ELSET=A\n"
                                       "2, 1, 3, 2, 5, 8, 7, 6, 9, 11, 10\n";
    }

    void takesElementsOfBothOrdersOnOneEntity()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QVERIFY(writeContent(path(file), content));
        const ToolRun run = import(file);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(QString::fromUtf8(run.errors),
                 QStringLiteral("ovrageo: warning: %1: 1 element of higher order becomes linear\n")
                     .arg(path(file)));
        ImportedCase imported(path("case"));
        QCOMPARE(imported.meshCounts(), (Counts{5, 0, 6, 2}));
        QCOMPARE(imported.faults(), QString());
    }

    void importsPlanarModel()
    {
        QVERIFY(writeContent(
            path("plate.geo"),
            "Point(1)={0,0,0,0.3};Point(2)={1,0,0,0.3};Point(3)={2,0,0,0.3};\n"
            "Point(4)={2,1,0,0.3};Point(5)={1,1,0,0.3};Point(6)={0,1,0,0.3};Point(7)={9,9,0,1};\n"
            "Line(1)={1,2};Line(2)={2,3};Line(3)={3,4};Line(4)={4,5};Line(5)={5,6};Line(6)={6,1};\n"
            "Line(7)={2,5};Line Loop(1)={1,7,5,6};Line Loop(2)={2,3,4,-7};\n"
            "Plane Surface(1)={-1};Plane Surface(2)={2};Recombine Surface{2};\n"
            "Physical Surface(\"a\")={1};Physical Line(\"between\")={7};\n"));
        const ToolRun run = import("plate.geo");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray()); // point 7 is there for construction
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{7, 7, 2, 0}));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(imported.model()->faceDimension(), 1);
        auto* between = imported.model()->entity(1, 7);
        QCOMPARE(between->name(), QStringLiteral("between"));
        QCOMPARE(between->adjacencyCount(2), 2);
        QCOMPARE(between->normal(), Ovra::Geo::Vector(1, 0, 0));
        for (auto* edge : ImportedCase::children(between)) {
            QCOMPARE(edge->adjacencyCount(2), 2);
        }
        double area = 0;
        for (auto* face : imported.entities(2)) {
            QCOMPARE(face->normal(), Ovra::Geo::Vector(0, 0, 1));
            for (auto* element : ImportedCase::children(face)) {
                area += element->boundaryArea();
                QVERIFY(element->normal().z() > 0.99);
            }
        }
        QVERIFY(qAbs(area - 2.0) < 1e-12);
    }

    // VTK's own pictures show wedges the other way round than most programs write them.
    void readsBothOrdersOfVtkWedges_data()
    {
        QTest::addColumn<QByteArray>("cells");
        QTest::addColumn<QByteArray>("warning");
        const QByteArray one = "6 0 1 2 3 4 5\n";
        const QByteArray other = "6 0 2 1 3 5 4\n";
        const QByteArray above = "6 3 4 5 6 7 8\n";
        const QByteArray otherAbove = "6 3 5 4 6 8 7\n";
        QTest::newRow("one") << one + above << QByteArray();
        QTest::newRow("the other") << other + otherAbove << QByteArray();
        QTest::newRow("both") << other + above
                              << QByteArray("1 element with a negative volume is turned");
    }

    void readsBothOrdersOfVtkWedges()
    {
        QFETCH(QByteArray, cells);
        QFETCH(QByteArray, warning);
        QVERIFY(writeContent(path("wedges.vtk"),
                             "# vtk DataFile Version 2.0\nwedges\nASCII\n"
                             "DATASET UNSTRUCTURED_GRID\nPOINTS 9 double\n0 0 0\n1 0 0\n0 1 0\n"
                             "0 0 1\n1 0 1\n0 1 1\n0 0 2\n1 0 2\n0 1 2\nCELLS 2 14\n" +
                                 cells + "CELL_TYPES 2\n13\n13\n"));
        const ToolRun run = import("wedges.vtk");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors.isEmpty(), warning.isEmpty());
        QVERIFY2(run.errors.contains(warning), run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(ImportedCase::volume(imported.entities(3)[0]), 1.0);
    }

    void warnsOfNodesThatBelongToNoElement()
    {
        QVERIFY(
            writeContent(path("loose.msh"),
                         "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Nodes\n1 6 1 6\n3 1 0 6\n1\n2\n3\n"
                         "4\n5\n6\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n9 9 9\n8 8 8\n$EndNodes\n"
                         "$Elements\n1 1 1 1\n3 1 4 1\n1 1 2 3 4\n$EndElements\n"));
        const ToolRun run = import("loose.msh");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("2 nodes that belong to no element"), run.errors.constData());
    }

    void turnsInvertedElements()
    {
        QVERIFY(writeContent(path("inverted.msh"),
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n9\n1 0 0 0\n2 1 0 0\n"
                             "3 1 1 0\n4 0 1 0\n5 0 0 1\n6 1 0 1\n7 1 1 1\n8 0 1 1\n9 5 5 5\n"
                             "$EndNodes\n$Elements\n4\n1 5 2 0 1 5 6 7 8 1 2 3 4\n"
                             "2 4 2 0 2 1 4 2 5\n3 7 2 0 3 4 3 2 1 5\n4 6 2 0 4 4 2 1 8 6 5\n"
                             "$EndElements\n"));
        const ToolRun run = import("inverted.msh");
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.errors.contains("4 elements with a negative volume are turned"));
        ImportedCase imported(path("case"));
        QCOMPARE(imported.meshCounts()[0], 8);
        for (auto* element : imported.meshEntities(3)) {
            QVERIFY(ImportedCase::volume(element) > 0);
        }
    }

    void takesRepeatedElementsOnce()
    {
        QVERIFY(writeContent(path("twice.msh"),
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n1 0 0 0\n2 1 0 0\n"
                             "3 0 1 0\n4 0 0 1\n$EndNodes\n$Elements\n2\n1 4 2 1 1 1 2 3 4\n"
                             "2 4 2 2 1 1 2 3 4\n$EndElements\n"));
        const ToolRun run = import("twice.msh");
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.errors.contains("1 element of dimension 3 is there twice and taken once"));
        ImportedCase imported(path("case"));
        QCOMPARE(imported.mesh()->count(3), 1);
        QCOMPARE(imported.faults(), QString());
    }

    void givesTheSameBytesUnderEverySeed()
    {
        QCOMPARE(import("groups2.msh", {}, "1").exitCode, 0);
        const QByteArray model = contentOf(path("case.geo_model"));
        const QByteArray mesh = contentOf(path("case.geo_mesh"));
        QCOMPARE(import("groups2.msh", {}, "77").exitCode, 0);
        QCOMPARE(contentOf(path("case.geo_model")), model);
        QCOMPARE(contentOf(path("case.geo_mesh")), mesh);
    }

private:
    static constexpr double size = 0.5;

    QString path(const QString& name) const { return directory_.filePath(name); }
    QString path(const char* name) const { return path(QString::fromLatin1(name)); }

    ToolRun import(const QString& file, const QStringList& options = {},
                   const QString& seed = QString())
    {
        QFile::remove(path("case.geo_model"));
        QFile::remove(path("case.geo_mesh"));
        return runTool(QStringList{"import", path(file), "-o", path("case")} + options, seed);
    }
    ToolRun import(const char* file, const QStringList& options = {},
                   const QString& seed = QString())
    {
        return import(QString::fromLatin1(file), options, seed);
    }

    void checkUnitRegions(ImportedCase& imported)
    {
        for (auto* region : imported.entities(3)) {
            QVERIFY(qAbs(ImportedCase::volume(region) - 1.0) < 1e-9);
            QVERIFY(qAbs(region->boundingBox().extent().x() - 1.0) < 1e-6);
            QCOMPARE(ImportedCase::eulerCharacteristic(region), 2);
        }
        const auto* first = imported.entities(3)[0];
        QVERIFY((first->centroid() - Ovra::Geo::Vector(0.5, 0.5, 0.5)).length() < 1e-9);
    }

    QTemporaryDir directory_;
    Counts elements_;
    int nodes_ = 0;
    int skin_ = 0;
};

QTEST_APPLESS_MAIN(TestImportFormats)
#include "tst_ImportFormats.moc"
