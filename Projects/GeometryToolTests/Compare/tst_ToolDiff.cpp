#include "CaseFiles.h"
#include "ClosedCase.h"
#include "DiffReport.h"
#include "ModelEdge.h"
#include "ModelVertex.h"
#include "Progress.h"
#include "RefinementRegion.h"
#include "ToolRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

using namespace Ovra::Geo;

using Editing = void (*)(ClosedCase&);
Q_DECLARE_METATYPE(Editing)

namespace
{

using T = AttributeType;

/// \brief Edges, an attribute, a refinement region, a vertex without parent: something of
/// everything.
void enrich(ClosedCase& c)
{
    ModelEdge* const rim = c.addEdge();
    rim->setLength(3.5);
    c.link(rim, c.face);
    c.link(rim, c.walls);
    c.addElement(1, {1, 2}, rim);
    c.addElement(1, {2, 3}, rim);
    auto* const corner = new ModelVertex;
    corner->setPoint(Vector(0, 0, 1));
    c.model()->add(corner);
    c.link(corner, rim);
    c.region->removeChild(c.vertices[3]);
    c.vertex(2).insert(T::InBL, true);
    auto* const refinement = new RefinementRegion;
    refinement->setType(QStringLiteral("sphere"));
    refinement->setLambdas({0.5, 0.25});
    c.model()->addRefinementRegion(refinement);
}

/// \brief An edge, and many faces that lie on one another along it.
void addPile(ClosedCase& c, int count)
{
    c.addElement(1, {1, 2}, c.addEdge());
    for (int i = 0; i < count; ++i) {
        c.addElement(2, {1, 2, 3}, c.walls);
    }
}

} // namespace

/// \brief Runs the tool on a case and an edited copy of it for each kind of difference.
class TestToolDiff : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
    }

    void tells_data()
    {
        QTest::addColumn<Editing>("inA");
        QTest::addColumn<Editing>("inB");
        QTest::addColumn<QByteArray>("expected");
        addWholeRows();
        addModelRows();
        addRefinementRows();
        addMeshRows();
    }

    void tells()
    {
        QFETCH(Editing, inA);
        QFETCH(Editing, inB);
        QFETCH(QByteArray, expected);
        save("a", inA);
        save("b", inB);
        const QByteArray text = report();
        QCOMPARE(text.left(text.indexOf("\n\n") + 1), expected);
    }

    void theTableCountsWhatDiffers()
    {
        const ToolRun run = diff([](ClosedCase&) {},
                                 [](ClosedCase& c) {
                                     c.face->setName(QStringLiteral("outlet"));
                                     c.addVertex(Vector(2, 2, 2));
                                     c.addVertex(Vector(3, 2, 2));
                                 },
                                 {"--limit", "1"});
        QCOMPARE(run.output,
                 QByteArray("only-in-b mesh vertex 5 at (2, 2, 2)\n"
                            "only-in-b mesh vertices: and 1 more\n"
                            "name model face 3 at (0.5, 0.5, 0): name \"inlet\" in A, \"outlet\" "
                            "in B\n"
                            "\n"
                            "               only-in-b      name\n"
                            "model faces            0         1\n"
                            "mesh vertices          2         0\n"
                            "\n") +
                     path("a").toUtf8() + " (A) and " + path("b").toUtf8() + " (B) differ\n");
        QCOMPARE(run.exitCode, 1);
    }

    void withoutLinesTheTableStandsAlone()
    {
        const ToolRun run =
            diff([](ClosedCase&) {}, [](ClosedCase& c) { c.addEdge(); }, {"--limit", "0"});
        QCOMPARE(run.output.split('\n').first(), QByteArray("             only-in-b"));
        QCOMPARE(run.exitCode, 1);
    }

    void equalCasesGiveNothing_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("by id") << QStringList();
        QTest::newRow("by place") << QStringList{"--by-place"};
        QTest::newRow("with a tolerance") << QStringList{"--tolerance", "0.001"};
        QTest::newRow("by place with a tolerance")
            << QStringList{"--by-place", "--tolerance", "0.001"};
    }

    void equalCasesGiveNothing()
    {
        QFETCH(QStringList, options);
        const ToolRun run = diff(enrich, enrich, options);
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    void everyFormatIsEqual_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("2013") << "2013";
        QTest::newRow("2014") << "2014";
        QTest::newRow("2014a") << "2014a";
    }

    void everyFormatIsEqual()
    {
        QFETCH(QString, format);
        save("a", enrich);
        QCOMPARE(runTool({"convert", path("a"), "-o", path("b"), "--mesh-format", format}).exitCode,
                 0);
        const ToolRun run = runTool({"diff", path("a"), path("b.geo_mesh")});
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    void theToleranceForgives_data()
    {
        QTest::addColumn<QString>("tolerance");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("exact") << "0" << 1;
        QTest::newRow("too small") << "0.0009" << 1;
        QTest::newRow("as large") << "0.0078125" << 0;
        QTest::newRow("larger") << "0.5" << 0;
    }

    void theToleranceForgives()
    {
        QFETCH(QString, tolerance);
        QFETCH(int, exitCode);
        const ToolRun run = diff(
            [](ClosedCase& c) {
                c.vertex(1).insert(T::PeriodicWeights, QVariantList{0.25, 0.5});
            },
            [](ClosedCase& c) {
                c.vertices[3]->setPoint(Vector(0, 0.0078125, 1));
                c.face->setArea(0.0078125);
                c.vertex(1).insert(T::PeriodicWeights, QVariantList{0.2421875, 0.5});
            },
            {"--tolerance", tolerance});
        QCOMPARE(run.exitCode, exitCode);
    }

    void printsJson()
    {
        const ToolRun run = diff([](ClosedCase&) {},
                                 [](ClosedCase& c) {
                                     c.region->attributes().insert(T::MaterialId, 8);
                                     c.addVertex(Vector(2, 2, 2));
                                     c.model()->setVersion(Version(16, 0, 0));
                                 },
                                 {"--json", "--tolerance", "0.25"});
        const QJsonObject change{{"what", "material_id"}, {"a", "7"}, {"b", "8"}};
        const QJsonObject version{{"what", "version"}, {"a", "15.1.2"}, {"b", "16.0.0"}};
        const QJsonObject expected{
            {"a", caseJson("a", "15.1.2")},
            {"b", caseJson("b", "16.0.0")},
            {"equal", false},
            {"tolerance", 0.25},
            {"byPlace", false},
            {"differences",
             QJsonArray{
                 group("only-in-b", "mesh vertices",
                       {{"idA", QJsonValue::Null},
                        {"idB", 5},
                        {"place", QJsonArray{2, 2, 2}},
                        {"changes", QJsonArray()},
                        {"text", "mesh vertex 5 at (2, 2, 2)"}}),
                 group("version", "model",
                       {{"idA", QJsonValue::Null},
                        {"idB", QJsonValue::Null},
                        {"place", QJsonValue::Null},
                        {"changes", QJsonArray{version}},
                        {"text", "the model: version 15.1.2 in A, 16.0.0 in B"}}),
                 group("attributes", "model regions",
                       {{"idA", 2},
                        {"idB", 2},
                        {"place", QJsonArray{0.25, 0.25, 0.25}},
                        {"changes", QJsonArray{change}},
                        {"text",
                         "model region 2 at (0.25, 0.25, 0.25): material_id 7 in A, 8 in B"}})}}};
        QCOMPARE(QJsonDocument::fromJson(run.output), QJsonDocument(expected));
        QCOMPARE(run.exitCode, 1);
    }

    void printsJsonOfEqualCases()
    {
        const ToolRun run = diff([](ClosedCase&) {}, [](ClosedCase&) {}, {"--json", "--by-place"});
        const QJsonObject object = QJsonDocument::fromJson(run.output).object();
        QCOMPARE(object["equal"], QJsonValue(true));
        QCOMPARE(object["byPlace"], QJsonValue(true));
        QCOMPARE(object["differences"], QJsonValue(QJsonArray()));
        QCOMPARE(run.exitCode, 0);
    }

    void anEmptyMeshIsNoTrouble()
    {
        save("a", [](ClosedCase&) {});
        save("b", [](ClosedCase& c) { c.mesh()->clear(); });
        const ToolRun run = runTool({"diff", path("a"), path("b"), "--limit", "0", "--by-place"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output.left(run.output.indexOf("\n\n")),
                 QByteArray("               only-in-a\n"
                            "mesh vertices          4\n"
                            "mesh faces             4\n"
                            "mesh regions           1"));
        QCOMPARE(run.exitCode, 1);
    }

    void troubleIsTold_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("missing case") << QStringList{"a", "none"} << QByteArray("none.geo_model");
        QTest::newRow("model without mesh")
            << QStringList{"meshless", "a"} << QByteArray("meshless.geo_mesh");
        QTest::newRow("truncated mesh") << QStringList{"a", "cut"} << QByteArray("is truncated");
        QTest::newRow("one case alone") << QStringList{"a"} << QByteArray("B is required");
        QTest::newRow("negative tolerance") << QStringList{"a", "a", "--tolerance", "-1"}
                                            << QByteArray("--tolerance must be 0 or more");
        QTest::newRow("tolerance that is no number") << QStringList{"a", "a", "--tolerance", "nan"}
                                                     << QByteArray("--tolerance must be 0 or more");
        QTest::newRow("negative limit")
            << QStringList{"a", "a", "--limit", "-1"} << QByteArray("--limit must be 0 or more");
    }

    void troubleIsTold()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, expected);
        for (const char* name : {"a", "meshless", "cut"}) {
            save(name, [](ClosedCase&) {});
        }
        QVERIFY(QFile::remove(path("meshless.geo_mesh")));
        QVERIFY(writeContent(path("cut.geo_mesh"), contentOf(path("cut.geo_mesh")).left(100)));
        const QByteArray directory = QFile::encodeName(directory_->path());
        const ToolRun run = runTool(QStringList{"diff"} + arguments, {}, [&directory] {
            if (chdir(directory.constData()) != 0) {
                _exit(9);
            }
        });
        QCOMPARE(run.output, QByteArray());
        QVERIFY2(isOneErrorLine(run.errors) && run.errors.contains(expected),
                 run.errors.constData());
        QCOMPARE(run.exitCode, 2);
    }

    void aPipeThatNobodyReadsIsTrouble()
    {
        save("a", [](ClosedCase&) {});
        save("b", [](ClosedCase& c) { c.addEdge(); });
        const ToolRun run = runTool({"diff", path("a"), path("b")}, {}, closeReaderOfOutput);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QCOMPARE(run.exitCode, 2);
    }

private:
    void addRow(const char* name, Editing inA, Editing inB, const char* expected)
    {
        QTest::newRow(name) << inA << inB << QByteArray(expected);
    }

    void addRow(const char* name, Editing inB, const char* expected)
    {
        addRow(
            name, [](ClosedCase&) {}, inB, expected);
    }

    void addWholeRows()
    {
        addRow(
            "version of the model", [](ClosedCase& c) { c.model()->setVersion(Version(16, 0, 0)); },
            "version the model: version 15.1.2 in A, 16.0.0 in B\n");
        addRow(
            "version of the mesh", [](ClosedCase& c) { c.mesh()->setVersion(Version(15, 1, 4)); },
            "version the mesh: version 15.1.3 in A, 15.1.4 in B\n");
        addRow(
            "box of the model",
            [](ClosedCase& c) {
                c.model()->setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 1, 1.5)));
            },
            "place the model: box (0, 0, 0) to (1, 1, 1) in A, (0, 0, 0) to (1, 1, 1.5) in B\n");
        addRow(
            "attribute of the model", [](ClosedCase& c) { c.model()->setCoordinateSystem(2); },
            "attributes the model: coordinate_system none in A, 2 in B\n");
        addRow(
            "attribute of the mesh",
            [](ClosedCase& c) { c.mesh()->attributes().insert(T::Layers, 4); },
            "attributes the mesh: layers none in A, 4 in B\n");
    }

    void addModelRows()
    {
        addRow(
            "model entity in A alone", [](ClosedCase& c) { c.addEdge(); }, [](ClosedCase&) {},
            "only-in-a model edge 1 at (0, 0, 0)\n");
        addRow(
            "name and tag",
            [](ClosedCase& c) {
                c.region->setName(QStringLiteral("air"));
                c.region->setTag(QStringLiteral("r"));
            },
            "name model region 2 at (0.25, 0.25, 0.25): name \"box\" in A, \"air\" in B; tag "
            "\"\" in A, \"r\" in B\n");
        addRow(
            "place of a model vertex", [](ClosedCase& c) { c.model()->add(new ModelVertex); },
            [](ClosedCase& c) {
                auto* const vertex = new ModelVertex;
                vertex->setPoint(Vector(0.1, 0, 0));
                c.model()->add(vertex);
            },
            "place model vertex 1 at (0, 0, 0): point (0, 0, 0) in A, (0.1, 0, 0) in B\n");
        addRow(
            "place of a model face",
            [](ClosedCase& c) {
                c.face->setArea(0.5);
                c.face->setPlanar(true);
                c.face->setNormal(Vector(0, 0, 1));
                c.face->setCentroid(Vector(0.5, 0.5, 1e-17));
                c.face->setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 1, 0)));
            },
            "place model face 3 at (0.5, 0.5, 0): box (1.7976931348623157e+308, "
            "1.7976931348623157e+308, 1.79769313486... in A, (0, 0, 0) to (1, 1, 0) in B; area "
            "0 in A, 0.5 in B; centroid (0.5, 0.5, 0) in A, (0.5, 0.5, 1e-17) in B; normal (0, "
            "0, -1) in A, (0, 0, 1) in B; planar false in A, true in B\n");
        addRow(
            "length", [](ClosedCase& c) { c.addEdge(); },
            [](ClosedCase& c) { c.addEdge()->setLength(2); },
            "place model edge 1 at (0, 0, 0): length 0 in A, 2 in B\n");
        addRow(
            "volume", [](ClosedCase& c) { c.region->setVolume(0.125); },
            "place model region 2 at (0.25, 0.25, 0.25): volume 0 in A, 0.125 in B\n");
        addRow(
            "attributes",
            [](ClosedCase& c) {
                c.region->attributes().insert(T::MaterialId, QStringLiteral("7"));
                c.region->attributes().remove(T::MaterialType);
            },
            "attributes model region 2 at (0.25, 0.25, 0.25): material_id 7 (int) in A, \"7\" "
            "(QString) in B; material_type \"fluid\" in A, none in B\n");
        addRow(
            "link", [](ClosedCase& c) { c.face->attributes().insert(T::SolidFace, 4); },
            [](ClosedCase& c) { c.face->attributes().insert(T::SolidFace, 3); },
            "links model face 3 at (0.5, 0.5, 0): solid_face 4 in A, 3 in B\n");
        addRow(
            "neighbour", [](ClosedCase& c) { c.walls->removeAdjacency(c.region); },
            "neighbours model face 4 at (0, 0, 0): other regions 2 in A, none in B\n");
        addRow(
            "neighbour listed twice", [](ClosedCase& c) { c.walls->addAdjacency(c.region); },
            "neighbours model face 4 at (0, 0, 0): other regions none in A, 2 in B\n");
        addRow(
            "order of neighbours",
            [](ClosedCase& c) {
                c.region->removeAdjacency(c.face);
                c.region->addAdjacency(c.face);
            },
            "neighbours model region 2 at (0.25, 0.25, 0.25): order of faces (3, 4) in A, (4, "
            "3) in B\n");
    }

    void addRefinementRows()
    {
        addRow(
            "refinement region in B alone",
            [](ClosedCase& c) { c.model()->addRefinementRegion(new RefinementRegion); },
            "only-in-b refinement region 1\n");
        addRow(
            "refinement region in A alone",
            [](ClosedCase& c) { c.model()->addRefinementRegion(new RefinementRegion); },
            [](ClosedCase&) {}, "only-in-a refinement region 1\n");
        addRow(
            "refinement region", enrich,
            [](ClosedCase& c) {
                enrich(c);
                RefinementRegion* const region = c.model()->refinementRegion(0);
                region->setLambdas({0.5, 0.125});
                region->addPoint(Vector(1, 2, 3));
                region->setBackgroundGridDimensions(0, 0, 4);
                region->setTransMat(2, Vector(0, 1, 0));
            },
            "place refinement region 1: points () in A, ((1, 2, 3)) in B; background grid (0, "
            "0, 0) in A, (0, 0, 4) in B; lambdas (0.5, 0.25) in A, (0.5, 0.125) in B; matrix "
            "row 2 (0, 0, 0) in A, (0, 1, 0) in B\n");
    }

    void addMeshRows()
    {
        addRow(
            "mesh vertex in B alone", [](ClosedCase& c) { c.addVertex(Vector(2, 2, 2)); },
            "only-in-b mesh vertex 5 at (2, 2, 2)\n");
        addRow(
            "element in A alone",
            [](ClosedCase& c) {
                c.addElement(2, {1, 2, 3}, c.walls);
            },
            [](ClosedCase&) {},
            "only-in-a mesh face 5 at (0.333333, 0.333333, 0)\n"
            "neighbours mesh vertex 1 at (0, 0, 0): other faces 5 in A, none in B\n"
            "neighbours mesh vertex 2 at (1, 0, 0): other faces 5 in A, none in B\n"
            "neighbours mesh vertex 3 at (0, 1, 0): other faces 5 in A, none in B\n");
        addRow(
            "place of a mesh vertex",
            [](ClosedCase& c) { c.vertices[3]->setPoint(Vector(0, 0, 1.0000000001)); },
            "place mesh vertex 4 at (0, 0, 1): point (0, 0, 1) in A, (0, 0, 1.0000000001) in "
            "B\n");
        addRow(
            "place that is no number",
            [](ClosedCase& c) {
                c.vertices[3]->setPoint(Vector(0, 0, std::numeric_limits<double>::quiet_NaN()));
            },
            "place mesh vertex 4 at (0, 0, 1): point (0, 0, 1) in A, (0, 0, nan) in B\n");
        addRow(
            "vertices",
            [](ClosedCase& c) { c.bottom->replaceAdjacency(c.vertices[2], c.vertices[3]); },
            "vertices mesh face 1 at (0.333333, 0.333333, 0): vertices 1, 3, 2 in A, 1, 4, 2 "
            "in B\n"
            "neighbours mesh vertex 3 at (0, 1, 0): other faces 1 in A, none in B\n"
            "neighbours mesh vertex 4 at (0, 0, 1): other faces none in A, 1 in B\n");
        addRow(
            "what has too few vertices",
            [](ClosedCase& c) {
                c.addElement(2, {}, c.walls);
                c.addElement(2, {1, 2}, c.walls);
                c.addElement(1, {2}, c.addEdge());
            },
            [](ClosedCase& c) { c.addEdge(); },
            "only-in-a mesh edge 1 at (1, 0, 0)\n"
            "only-in-a mesh face 5\n"
            "only-in-a mesh face 6 at (0.5, 0, 0)\n"
            "neighbours mesh vertex 1 at (0, 0, 0): other faces 6 in A, none in B\n"
            "neighbours mesh vertex 2 at (1, 0, 0): other edges 1 in A, none in B; other faces 6 "
            "in A, none in B\n");
        addRow(
            "order of vertices",
            [](ClosedCase& c) {
                c.addElement(2, {1, 2, 3}, c.walls);
            },
            [](ClosedCase& c) {
                c.addElement(2, {2, 1, 3}, c.walls);
            },
            "vertices mesh face 5 at (0.333333, 0.333333, 0): vertices 1, 2, 3 in A, 2, 1, 3 "
            "in B\n");
        addRow(
            "an edge that turns to other faces",
            [](ClosedCase& c) {
                c.addElement(1, {1, 2}, c.addEdge());
            },
            [](ClosedCase& c) {
                c.addVertex(Vector(5, 5, 5));
                c.addElement(1, {1, 5}, c.addEdge());
            },
            "only-in-b mesh vertex 5 at (5, 5, 5)\n"
            "vertices mesh edge 1 at (0.5, 0, 0): vertices 1, 2 in A, 1, 5 in B\n"
            "neighbours mesh vertex 2 at (1, 0, 0): other edges 1 in A, none in B\n"
            "neighbours mesh edge 1 at (0.5, 0, 0): other faces 1, 4 in A, none in B\n");
        addRow(
            "number of faces, of very many", [](ClosedCase& c) { addPile(c, 100); },
            [](ClosedCase& c) { addPile(c, 101); },
            "only-in-b mesh face 105 at (0.333333, 0.333333, 0)\n"
            "neighbours mesh vertex 1 at (0, 0, 0): other faces none in A, 105 in B\n"
            "neighbours mesh vertex 2 at (1, 0, 0): other faces none in A, 105 in B\n"
            "neighbours mesh vertex 3 at (0, 1, 0): other faces none in A, 105 in B\n"
            "neighbours mesh edge 1 at (0.5, 0, 0): number of faces 102 in A, 103 in B\n");
        addRow(
            "parent of an element", [](ClosedCase& c) { c.walls->addChild(c.bottom); },
            "classification mesh face 1 at (0.333333, 0.333333, 0): parent model face 3 in A, "
            "model face 4 in B\n");
        addRow(
            "parent of a vertex", [](ClosedCase& c) { c.face->addChild(c.vertices[1]); },
            "classification mesh vertex 2 at (1, 0, 0): parent model region 2 in A, model face "
            "3 in B\n");
        addRow(
            "no parent", [](ClosedCase& c) { c.region->removeChild(c.vertices[1]); },
            "classification mesh vertex 2 at (1, 0, 0): parent model region 2 in A, none in "
            "B\n");
        addRow(
            "attribute of a vertex", [](ClosedCase& c) { c.vertex(2).insert(T::InBL, true); },
            [](ClosedCase& c) { c.vertex(2).insert(T::InBL, false); },
            "attributes mesh vertex 2 at (1, 0, 0): in_bl true in A, false in B\n");
        addRow(
            "tie of a vertex", [](ClosedCase& c) { c.vertex(2).insert(T::PeriodicEntityId, 4); },
            [](ClosedCase& c) {
                c.vertex(2).insert(T::PeriodicEntityId, 3);
                c.vertex(2).insert(T::PeriodicWeights, QVariantList{1.0});
            },
            "attributes mesh vertex 2 at (1, 0, 0): periodic_weights none in A, (1) in B\n"
            "links mesh vertex 2 at (1, 0, 0): periodic_entity_id 4 in A, 3 in B\n");
    }

    QJsonObject caseJson(const QString& name, const QString& modelVersion) const
    {
        return {{"case", path(name)},
                {"meshFormat", "2014a"},
                {"modelVersion", modelVersion},
                {"meshVersion", "15.1.3"}};
    }

    static QJsonObject group(const QString& kind, const QString& part, const QJsonObject& first)
    {
        return {{"kind", kind}, {"part", part}, {"count", 1}, {"first", QJsonArray{first}}};
    }

    void save(const QString& name, Editing edit)
    {
        ClosedCase closed;
        edit(closed);
        QVERIFY(closed.save(path(name)));
        closed.model()->clearRefinementRegions();
    }

    /// \brief What the tool prints of both cases, without the time that it takes to start it.
    QByteArray report() const
    {
        using namespace Ovra::GeoTool;
        Progress progress;
        progress.setQuiet(true);
        std::array<CaseFiles, 2> files{CaseFiles(path("a")), CaseFiles(path("b"))};
        std::array<CaseDatabase, 2> databases;
        files[0].load(databases[0], progress);
        files[1].load(databases[1], progress);
        const CaseComparison::Options options;
        const CaseDifferences differences =
            CaseComparison::compare(databases[0], databases[1], options, progress);
        return DiffReport(files[0], files[1], options, differences).text();
    }

    ToolRun diff(Editing inA, Editing inB, const QStringList& options = {})
    {
        save("a", inA);
        save("b", inB);
        return runTool(QStringList{"diff", path("a"), path("b")} + options);
    }

    QString path(const QString& name) const { return directory_->filePath(name); }

    std::unique_ptr<QTemporaryDir> directory_;
};

QTEST_GUILESS_MAIN(TestToolDiff)
#include "tst_ToolDiff.moc"
