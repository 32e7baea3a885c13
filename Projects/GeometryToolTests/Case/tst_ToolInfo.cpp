#include "InfoPage.h"
#include "SavedCase.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;

class TestToolInfo : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
    }

    void tellsOfTheFiles()
    {
        TinyCase tiny;
        const QJsonObject info = infoOf(tiny);
        const QJsonObject model = info["modelFile"].toObject();
        QCOMPARE(info["case"].toString(), path("case"));
        QCOMPARE(model["path"].toString(), path("case.geo_model"));
        QCOMPARE(model["bytes"].toInteger(), contentOf(path("case.geo_model")).size());
        QCOMPARE(model["format"].toInt(), 1);
        QCOMPARE(model["oldHeader"].toBool(), false);
        QCOMPARE(model["version"].toString(), "15.1.2");
        const QJsonObject mesh = info["meshFile"].toObject();
        QCOMPARE(mesh["format"].toInt(), 3);
        QCOMPARE(mesh["formatName"].toString(), "2014a");
        QCOMPARE(mesh["version"].toString(), "15.1.3");
    }

    void countsEntitiesAndKinds()
    {
        TinyCase tiny;
        tiny.addElement(1, {1, 2}, nullptr);
        const QJsonArray dimensions = infoOf(tiny)["dimensions"].toArray();
        QCOMPARE(dimensions.size(), 4);
        QCOMPARE(dimensions[0]["mesh"]["count"].toInt(), 4);
        QCOMPARE(dimensions[0]["mesh"]["onOtherDimension"].toInt(), 4);
        QCOMPARE(dimensions[0]["model"]["count"].toInt(), 0);
        QCOMPARE(dimensions[1]["mesh"]["unclassified"].toInt(), 1);
        QCOMPARE(dimensions[1]["mesh"]["kinds"].toObject(), QJsonObject({{"lines", 1}}));
        QCOMPARE(dimensions[2]["mesh"]["kinds"].toObject(), QJsonObject({{"triangles", 1}}));
        QCOMPARE(dimensions[3]["mesh"]["kinds"].toObject(), QJsonObject({{"tetrahedra", 1}}));
        QCOMPARE(dimensions[3]["mesh"]["unclassified"].toInt(), 0);
    }

    void countsIdGaps()
    {
        TinyCase tiny;
        auto* const vertex = new MeshVertex;
        vertex->setId(10);
        tiny.mesh()->add(vertex);
        const QJsonArray dimensions = infoOf(tiny)["dimensions"].toArray();
        QCOMPARE(dimensions[0]["mesh"]["largestId"].toInt(), 10);
        QCOMPARE(dimensions[0]["mesh"]["idGaps"].toInt(), 5);
        QCOMPARE(dimensions[2]["model"]["largestId"].toInt(), 3);
        QCOMPARE(dimensions[2]["model"]["idGaps"].toInt(), 2);
    }

    void tellsBoxes()
    {
        TinyCase tiny;
        tiny.addVertex(Vector(-2, 0, 5));
        const QJsonObject info = infoOf(tiny);
        QCOMPARE(info["modelBox"]["minimum"].toArray(), QJsonArray({0, 0, 0}));
        QCOMPARE(info["modelBox"]["maximum"].toArray(), QJsonArray({1, 1, 1}));
        QCOMPARE(info["meshBox"]["minimum"].toArray(), QJsonArray({-2, 0, 0}));
        QCOMPARE(info["meshBox"]["maximum"].toArray(), QJsonArray({1, 1, 5}));
    }

    void countsMaterialsAndAttributes()
    {
        TinyCase tiny;
        auto* const second = new ModelRegion;
        tiny.model()->add(second);
        tiny.vertices[0]->attributes().insert(AttributeType::InBL, true);
        tiny.mesh()->attributes().insert(AttributeType::InBL, true);
        const QJsonObject info = infoOf(tiny);
        const QJsonArray expected = {
            QJsonObject{{"type", QJsonValue::Null},
                        {"id", QJsonValue::Null},
                        {"modelEntities", 1},
                        {"elements", 0}},
            QJsonObject{{"type", "fluid"}, {"id", 7}, {"modelEntities", 1}, {"elements", 1}}};
        QCOMPARE(info["materials"].toArray(), expected);
        const QJsonObject attributes = info["attributes"].toObject();
        QCOMPARE(attributes.keys(), QStringList({"in_bl", "material_id", "material_type"}));
        QCOMPARE(attributes["in_bl"].toObject(),
                 QJsonObject({{"model", 0},
                              {"modelEntities", QJsonArray{0, 0, 0, 0}},
                              {"mesh", 1},
                              {"meshEntities", QJsonArray{1, 0, 0, 0}}}));
    }

    void judgesElements()
    {
        TinyCase tiny;
        tiny.addElement(3, {1, 3, 2, 4}, tiny.region); // inside out
        tiny.addElement(3, {1, 2, 3, 3}, tiny.region); // flat
        const QJsonArray quality = infoOf(tiny)["quality"].toArray();
        QCOMPARE(quality.size(), 2);
        const QJsonObject faces = quality[0].toObject();
        QCOMPARE(faces["dimension"].toInt(), 2);
        QCOMPARE(faces["totalMeasure"].toDouble(), 0.5);
        const QJsonObject solids = quality[1].toObject();
        QCOMPARE(solids["dimension"].toInt(), 3);
        QCOMPARE(solids["measure"]["smallest"]["id"].toInt(), 2);
        QCOMPARE(solids["measure"]["smallest"]["value"].toDouble(), -1.0 / 6.0);
        QCOMPARE(solids["measure"]["largest"]["id"].toInt(), 1);
        QCOMPARE(solids["measure"]["largest"]["value"].toDouble(), 1.0 / 6.0);
        QCOMPARE(solids["inverted"].toObject(),
                 QJsonObject({{"count", 1}, {"firstIds", QJsonArray{2}}}));
        QCOMPARE(solids["degenerate"].toObject(),
                 QJsonObject({{"count", 1}, {"firstIds", QJsonArray{3}}}));
        QCOMPARE(solids["twisted"]["count"].toInt(), 0);
        QCOMPARE(solids["aspect"]["largest"]["id"].toInt(), 1);
    }

    void showsTheFirstTenOfManyIds()
    {
        TinyCase tiny;
        for (int id = 2; id <= 12; ++id) {
            tiny.addElement(3, {1, 3, 2, 4}, tiny.region); // inside out
        }
        const QJsonObject solids = infoOf(tiny)["quality"].toArray()[1].toObject();
        QCOMPARE(
            solids["inverted"].toObject(),
            QJsonObject({{"count", 11}, {"firstIds", QJsonArray{2, 3, 4, 5, 6, 7, 8, 9, 10, 11}}}));
        QVERIFY(runTool({"info", path("case")})
                    .output.contains(
                        "  Inverted        11 (id 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, ...)\n"));
    }

    void takesElementsOfNoKind()
    {
        TinyCase tiny;
        tiny.addElement(1, {1}, nullptr);
        tiny.addElement(1, {2}, nullptr);
        tiny.addElement(2, {1, 2}, nullptr);
        tiny.addElement(3, {}, nullptr);
        tiny.addElement(3, {1, 2, 3, 4, 1, 2, 3}, nullptr);
        const QJsonObject info = infoOf(tiny);
        const QJsonArray dimensions = info["dimensions"].toArray();
        QCOMPARE(dimensions[1]["mesh"]["kinds"].toObject(), QJsonObject({{"unknown", 2}}));
        QCOMPARE(dimensions[2]["mesh"]["kinds"]["unknown"].toInt(), 1);
        QCOMPARE(dimensions[3]["mesh"]["kinds"]["unknown"].toInt(), 2);
        const QJsonObject lines = info["quality"].toArray()[0].toObject();
        QCOMPARE(lines["measure"], QJsonValue(QJsonValue::Null));
        QCOMPARE(lines["unknown"].toObject(),
                 QJsonObject({{"count", 2}, {"firstIds", QJsonArray{1, 2}}}));
        QCOMPARE(runTool({"info", path("case")}).exitCode, 0);
    }

    void takesAnEmptyCase()
    {
        Database empty;
        const QJsonObject info = infoOf(empty, path("empty"));
        QCOMPARE(info["is3d"], QJsonValue(false));
        QCOMPARE(info["modelBox"], QJsonValue(QJsonValue::Null));
        QCOMPARE(info["meshBox"], QJsonValue(QJsonValue::Null));
        QCOMPARE(info["quality"].toArray().size(), 0);
        const QByteArray text = runTool({"info", path("empty")}).output;
        QVERIFY2(text.contains("Mesh box          none\n"), text.constData());
        QVERIFY2(text.contains("Space             no mesh, the model has no regions\n"),
                 text.constData());
    }

    void hasTheKeysOfItsPage()
    {
        TinyCase tiny;
        QCOMPARE(infoOf(tiny).keys(), InfoPage::keys("Of a case:"));
    }

    void tellsAPlaneFromSurfacesInSpace_data()
    {
        QTest::addColumn<Vector>("apex");
        QTest::addColumn<bool>("isPlanar");
        QTest::addColumn<QByteArray>("space");
        QTest::newRow("in a slanting plane")
            << Vector(1, 1, -1) << true << QByteArray("planar, the model has no regions");
        QTest::newRow("in space") << Vector(0, 0, 0) << false
                                  << QByteArray("surfaces in space, the model has no regions");
    }

    void tellsAPlaneFromSurfacesInSpace()
    {
        QFETCH(Vector, apex);
        QFETCH(bool, isPlanar);
        QFETCH(QByteArray, space);
        Database database;
        auto* const face = new ModelFace;
        database.model()->add(face);
        for (const Vector& point : {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1), apex}) {
            auto* const vertex = new MeshVertex;
            vertex->setPoint(point);
            database.mesh()->add(vertex);
            face->addChild(vertex);
        }
        const QJsonObject info = infoOf(database, path("surface"));
        QCOMPARE(info["is3d"], QJsonValue(false));
        QCOMPARE(info["isPlanar"], QJsonValue(isPlanar));
        QVERIFY(runTool({"info", path("surface")})
                    .output.contains("\nSpace             " + space + '\n'));
    }

    void tellsWhichFaceIsWhoseTwin()
    {
        TinyCase tiny;
        addTwins(tiny);
        const auto twin = [](const char* relation, int dimension, int id, const char* name,
                             int originalId, const char* originalName) {
            return QJsonObject{
                {"relation", relation}, {"dimension", dimension},   {"id", id},
                {"name", name},         {"originalId", originalId}, {"originalName", originalName}};
        };
        const QJsonArray expected = {twin("solid side", 2, 4, "inlet:solid", 3, "inlet"),
                                     twin("stator side", 2, 4, "inlet:solid", 3, "inlet"),
                                     twin("replica", 3, 3, "", 2, "box"),
                                     twin("replica", 2, 4, "inlet:solid", 3, "inlet"),
                                     twin("shell twin", 2, 3, "inlet", 4, "inlet:solid")};
        QCOMPARE(infoOf(tiny)["twins"].toArray(), expected);
        QVERIFY(runTool({"info", path("case")})
                    .output.contains("\nTwins\n"
                                     "  solid side      face 4 \"inlet:solid\" of face 3 "
                                     "\"inlet\"\n"
                                     "  stator side     face 4 \"inlet:solid\" of face 3 "
                                     "\"inlet\"\n"
                                     "  replica         region 3 of region 2 \"box\"\n"
                                     "  replica         face 4 \"inlet:solid\" of face 3 "
                                     "\"inlet\"\n"
                                     "  shell twin      face 3 \"inlet\" of face 4 "
                                     "\"inlet:solid\"\n\nAttributes\n"));
    }

    void theTextSaysTheSame()
    {
        TinyCase tiny;
        QVERIFY(tiny.save(path("case")));
        const ToolRun run = runTool({"info", path("case.geo_mesh")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
        const QString expected = QStringLiteral(R"(Case              %1
Model file        %1.geo_model, %2 bytes, format 2013, version 15.1.2
Mesh file         %1.geo_mesh, %3 bytes, format 2014a, version 15.1.3
Space             three-dimensional
Coordinate system 0
Refinement        0 regions
Model box         (0, 0, 0) to (1, 1, 1)
Mesh box          (0, 0, 0) to (1, 1, 1)

Entities
                         model     id gaps        mesh     id gaps   no parent  other dim.
  vertices                   0           0           4           0           0           4
  edges                      0           0           0           0           0           0
  faces                      1           2           1           0           0           0
  regions                    1           1           1           0           0           0

Elements
  triangles                  1
  tetrahedra                 1

Materials
  type                      id     regions    elements
  fluid                      7           1           1

Names
  box: region 2
  inlet: face 3

Attributes
  material_id                   on 1 model region
  material_type                 on 1 model region

Quality of mesh faces
  Area            0.5 (id 1) to 0.5 (id 1)
  Total           0.5
  Aspect          1.39384685 (id 1) to 1.39384685 (id 1)
  Inverted        0
  Twisted         0
  Degenerate      0
  Unknown kind    0

Quality of mesh regions
  Volume          0.166666667 (id 1) to 0.166666667 (id 1)
  Total           0.166666667
  Aspect          1.3660254 (id 1) to 1.3660254 (id 1)
  Inverted        0
  Twisted         0
  Degenerate      0
  Unknown kind    0
)")
                                     .arg(path("case"))
                                     .arg(contentOf(path("case.geo_model")).size())
                                     .arg(contentOf(path("case.geo_mesh")).size());
        QCOMPARE(QString::fromUtf8(run.output), expected);
    }

private:
    QString path(const QString& name) const { return directory_->filePath(name); }

    /// The face 4 and the region 3 are twins of the only others in every way that there is.
    static void addTwins(TinyCase& tiny)
    {
        auto* const face = new ModelFace;
        face->setName(QStringLiteral("inlet:solid"));
        auto* const replica = new ModelRegion;
        tiny.model()->add(face);
        tiny.model()->add(replica);
        replica->addAdjacency(face);
        face->addAdjacency(replica);
        const auto link = [](ModelEntity* from, const AttributeType& there, ModelEntity* to,
                             const AttributeType& back) {
            from->attributes().insert(there, to->id());
            to->attributes().insert(back, from->id());
        };
        link(tiny.face, AttributeType::SolidFace, face, AttributeType::FluidFace);
        link(tiny.face, AttributeType::StatorFace, face, AttributeType::RotorFace);
        link(tiny.region, AttributeType::NewMotionRegion, replica,
             AttributeType::OriginalMotionRegion);
        face->attributes().insert(AttributeType::NewShellFace, tiny.face->id());
        face->attributes().insert(AttributeType::SolidFace, 99);          // is not there
        face->attributes().insert(AttributeType::StatorFace, face->id()); // is not answered
    }

    static QJsonObject infoOf(Database& database, const QString& name)
    {
        return SavedCase::save(database, name) ? infoOf(name) : QJsonObject();
    }

    static QJsonObject infoOf(const QString& name)
    {
        const ToolRun run = runTool({"info", name, "--json"});
        return run.exitCode == 0 ? QJsonDocument::fromJson(run.output).object() : QJsonObject();
    }

    QJsonObject infoOf(TinyCase& tiny)
    {
        if (!tiny.save(path("case"))) {
            return {};
        }
        return infoOf(path("case"));
    }

    std::unique_ptr<QTemporaryDir> directory_;
};

QTEST_GUILESS_MAIN(TestToolInfo)
#include "tst_ToolInfo.moc"
