#include "MeshSerializer.h"
#include "VerifyTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using namespace Ovra::Geo;

/// \brief What `ovrageo verify` prints, in what form, and when it fails.
class TestToolVerify : public VerifyTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }

    void aSoundCaseHasNothingToFind()
    {
        ClosedCase closed;
        const ToolRun run = verify(closed);
        QCOMPARE(run.output, path("case").toUtf8() + " is sound: 0 errors, 0 warnings\n");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    void findsParentsOfAnotherDimension()
    {
        ClosedCase closed;
        closed.region->addChild(closed.bottom);
        QVERIFY(closed.save(path("case")));
        QFile file(path("case.geo_mesh")); // the later formats cannot hold it
        QVERIFY(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        stream.setVersion(12);
        const std::unique_ptr<MeshSerializer> serializer(
            MeshSerializer::create(MeshSerializer::Format2013, closed.model(), closed.mesh()));
        serializer->write(stream);
        file.close();
        QCOMPARE(errorsOf(runTool({"verify", path("case")})),
                 QStringList("error wrong-dimension: mesh face 1 at (0.333333, 0.333333, 0) stands "
                             "on model region 2; a mesh face must stand on a model face"));
    }

    void countsTheRest_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("shown");
        QTest::addColumn<QString>("rest");
        const QString kind = "error unused-vertex: ";
        QTest::newRow("ten") << QStringList() << 10 << kind + "and 15 more";
        QTest::newRow("three") << QStringList{"--limit", "3"} << 3 << kind + "and 22 more";
        QTest::newRow("none") << QStringList{"--limit", "0"} << 0 << kind + "25 findings";
        QTest::newRow("all") << QStringList{"--limit", "25"} << 25 << QString();
    }

    void countsTheRest()
    {
        QFETCH(QStringList, options);
        QFETCH(int, shown);
        QFETCH(QString, rest);
        ClosedCase closed;
        for (int i = 0; i < 25; ++i) {
            closed.addVertex(Vector(i, 2, 2));
        }
        QStringList expected;
        for (int i = 0; i < shown; ++i) {
            expected += QStringLiteral("error unused-vertex: mesh vertex %1 at (%2, 2, 2) is used "
                                       "by no mesh edge, face or region")
                            .arg(i + 5)
                            .arg(i);
        }
        if (!rest.isEmpty()) {
            expected += rest;
        }
        expected += path("case") + " is unsound: 25 errors, 0 warnings";
        QCOMPARE(linesOf(verify(closed, options)), expected);
    }

    void tellsWarningsFromErrors()
    {
        ClosedCase closed;
        closed.mesh()->remove(closed.bottom);
        const ToolRun warned = verify(closed);
        QVERIFY(warned.output.endsWith(" is sound: 0 errors, 1 warning\n"));
        QCOMPARE(warned.exitCode, 0);
        QCOMPARE(warned.errors, QByteArray());
        closed.addVertex(Vector(2, 2, 2));
        const ToolRun failed = verify(closed);
        QCOMPARE(failed.exitCode, 7);
        QCOMPARE(failed.errors,
                 "ovrageo: error: " + path("case").toUtf8() + " is unsound: 1 error, 1 warning\n");
    }

    void anEmptyMeshIsAWarning()
    {
        const QByteArray line = "warning no-elements: the mesh has no entities, though there are ";
        const QByteArray verdict = path("case").toUtf8() + " is sound: 0 errors, ";
        ClosedCase closed;
        const ToolRun run = verifyWithoutMesh(closed.database);
        QCOMPARE(run.output, line + "model regions\n" + verdict + "1 warning\n");
        QCOMPARE(run.exitCode, 0);
        PlanarCase planar;
        QCOMPARE(verifyWithoutMesh(planar.database).output,
                 line + "model faces\n" + verdict + "1 warning\n");
        Database nothing;
        QCOMPARE(verifyWithoutMesh(nothing).output, verdict + "0 warnings\n");
    }

    void tellsUnreadableFromUnsound()
    {
        ClosedCase closed;
        QVERIFY(closed.save(path("case")));
        const QByteArray mesh = contentOf(path("case.geo_mesh"));
        QVERIFY(writeContent(path("case.geo_mesh"), mesh.chopped(40)));
        const ToolRun truncated = runTool({"verify", path("case")});
        QCOMPARE(truncated.exitCode, 4);
        QVERIFY(isOneErrorLine(truncated.errors));
        QCOMPARE(truncated.output, QByteArray());
        QVERIFY(QFile::remove(path("case.geo_mesh")));
        QCOMPARE(runTool({"verify", path("case")}).exitCode, 3);
    }

    // What cannot be linked cannot be verified either: damage, told while reading.
    void tellsNamesOfMissingVerticesWhileReading()
    {
        ClosedCase closed;
        QVERIFY(closed.save(path("case")));
        QByteArray mesh = contentOf(path("case.geo_mesh"));
        const auto ids = [](const QList<int>& values) {
            QByteArray bytes;
            QDataStream stream(&bytes, QIODevice::WriteOnly);
            for (const int value : values) {
                stream << value;
            }
            return bytes;
        };
        const qsizetype element = mesh.lastIndexOf(ids({1, 2, 3, 4}));
        QVERIFY(element > 0);
        mesh.replace(element, 16, ids({1, 2, 3, 99}));
        QVERIFY(writeContent(path("case.geo_mesh"), mesh));
        const ToolRun run = runTool({"verify", path("case")});
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
    }

    void refusesBadLimits_data()
    {
        QTest::addColumn<QString>("limit");
        for (const char* limit : {"-1", "many"}) {
            QTest::newRow(limit) << limit;
        }
    }

    void refusesBadLimits()
    {
        QFETCH(QString, limit);
        const ToolRun run = runTool({"verify", path("none"), "--limit", limit});
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
    }

    void saysTheSameInJson()
    {
        ClosedCase closed;
        for (int i = 0; i < 3; ++i) {
            closed.addVertex(Vector(i, 2, 2));
        }
        closed.model()->attributes().insert(AttributeType::VisualScaleFactor,
                                            QStringLiteral("big"));
        const ToolRun run = verify(closed, {"--json", "--limit", "1"});
        QCOMPARE(run.exitCode, 7);
        const QJsonObject object = QJsonDocument::fromJson(run.output).object();
        const QJsonObject vertex{{"owner", "mesh"},
                                 {"dimension", 0},
                                 {"id", 5},
                                 {"place", QJsonArray{0, 2, 2}},
                                 {"text", "mesh vertex 5 at (0, 2, 2) is used by no mesh edge, "
                                          "face or region"}};
        const QJsonObject model{{"owner", "model"},
                                {"dimension", QJsonValue::Null},
                                {"id", QJsonValue::Null},
                                {"place", QJsonValue::Null},
                                {"text", "the model has visual_scale_factor of type QString; a "
                                         "number is expected"}};
        const QJsonArray findings{QJsonObject{{"kind", "unused-vertex"},
                                              {"severity", "error"},
                                              {"count", 3},
                                              {"first", QJsonArray{vertex}}},
                                  QJsonObject{{"kind", "attribute-type"},
                                              {"severity", "error"},
                                              {"count", 1},
                                              {"first", QJsonArray{model}}}};
        const QJsonObject expected{
            {"case", path("case")},
            {"sound", false},
            {"errors", 4},
            {"warnings", 0},
            {"checked", QJsonObject{{"modelEntities", QJsonArray{0, 0, 2, 1}},
                                    {"meshEntities", QJsonArray{7, 0, 4, 1}}}},
            {"findings", findings}};
        QCOMPARE(object, expected);
    }

    void saysTheSameUnderEverySeed()
    {
        ClosedCase closed;
        for (int i = 0; i < 40; ++i) {
            closed.addVertex(Vector(i, 2, 2));
        }
        addBelow(closed);
        QVERIFY(closed.save(path("case")));
        const ToolRun first = runTool({"verify", path("case")}, "1");
        QCOMPARE(first.exitCode, 7);
        QCOMPARE(runTool({"verify", path("case")}, "2").output, first.output);
    }

private:
    ToolRun verifyWithoutMesh(Database& database)
    {
        Database empty;
        QFile modelFile(path("case.geo_model"));
        QFile meshFile(path("case.geo_mesh"));
        if (!modelFile.open(QIODevice::WriteOnly) || !meshFile.open(QIODevice::WriteOnly)) {
            return ToolRun();
        }
        QDataStream modelStream(&modelFile);
        QDataStream meshStream(&meshFile);
        database.model()->write(modelStream);
        empty.mesh()->write(meshStream);
        modelFile.close();
        meshFile.close();
        return runTool({"verify", path("case")});
    }
};

QTEST_GUILESS_MAIN(TestToolVerify)
#include "tst_ToolVerify.moc"
