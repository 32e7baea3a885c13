#include "MeshSerializer.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;

class TestToolConvert : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
    }

    void goesToEveryFormatAndBack_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<char>("number");
        QTest::newRow("2013") << "2013" << '\1';
        QTest::newRow("2014") << "2014" << '\2';
        QTest::newRow("2014a") << "2014a" << '\3';
    }

    void goesToEveryFormatAndBack()
    {
        QFETCH(QString, format);
        QFETCH(char, number);
        saveRichCase("rich");
        convert({"rich", "-o", "there", "--mesh-format", format});
        QCOMPARE(contentOf(path("there.geo_mesh")).left(4), QByteArray("\0\0\0", 3) + number);
        QCOMPARE(contentOf(path("there.geo_model")), contentOf(path("rich.geo_model")));
        convert({"there", "-o", "back"});
        QCOMPARE(contentOf(path("back.geo_mesh")), contentOf(path("plain.geo_mesh")));
        QCOMPARE(contentOf(path("back.geo_model")), contentOf(path("rich.geo_model")));
    }

    void writesTheLatestFormatByDefault()
    {
        saveRichCase("rich");
        convert({"rich", "-o", "out"});
        QCOMPARE(contentOf(path("out.geo_mesh")).left(4), QByteArray("\0\0\0\3", 4));
    }

    void readsOldHeaders()
    {
        saveRichCase("rich");
        convert({"rich", "-o", "old", "--mesh-format", "2013"});
        for (const char* suffix : {".geo_model", ".geo_mesh"}) {
            const QByteArray content = contentOf(path(QString("old") + suffix));
            // The version stands behind the format number; an old header is the version alone.
            QVERIFY(writeContent(path(QString("old") + suffix),
                                 QByteArray("\0\0\0\15\0\0\0\0\0\0\0\5", 12) + content.mid(16)));
        }
        convert({"old", "-o", "new", "--mesh-format", "2013"});
        const QByteArray header("\0\0\0\1\0\0\0\15\0\0\0\0\0\0\0\5", 16);
        convert({"rich", "-o", "reference", "--mesh-format", "2013"});
        for (const char* suffix : {".geo_model", ".geo_mesh"}) {
            QCOMPARE(contentOf(path(QString("new") + suffix)),
                     header + contentOf(path(QString("reference") + suffix)).mid(16));
        }
    }

    void takesNamesWithAndWithoutSuffix_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("output");
        QTest::newRow("none") << "rich"
                              << "out";
        QTest::newRow("model") << "rich.geo_model"
                               << "out.geo_model";
        QTest::newRow("mesh") << "rich.geo_mesh"
                              << "out.geo_mesh";
    }

    void takesNamesWithAndWithoutSuffix()
    {
        QFETCH(QString, input);
        QFETCH(QString, output);
        saveRichCase("rich");
        convert({input, "-o", output});
        QCOMPARE(filesIn(directory_->path()).filter("out"),
                 QStringList({"out.geo_mesh", "out.geo_model"}));
    }

    void convertsInPlace()
    {
        saveRichCase("rich");
        convert({"rich", "-o", "rich", "--mesh-format", "2013"});
        QCOMPARE(contentOf(path("rich.geo_mesh")).left(4), QByteArray("\0\0\0\1", 4));
        convert({"rich", "-o", "rich"});
        QCOMPARE(contentOf(path("rich.geo_mesh")), contentOf(path("plain.geo_mesh")));
    }

    void everyRunGivesTheSameBytes()
    {
        TinyCase many;
        for (int i = 0; i < 300; ++i) {
            many.addVertex(Vector(i, 0, 0))->attributes().insert(AttributeType::InBL, true);
        }
        QVERIFY(many.save(path("many")));
        QByteArray first;
        for (const char* seed : {"0", "1", "20131", ""}) {
            QCOMPARE(runTool({"convert", path("many"), "-o", path("out")}, seed).exitCode, 0);
            if (first.isEmpty()) {
                first = contentOf(path("out.geo_mesh"));
            }
            QCOMPARE(contentOf(path("out.geo_mesh")), first);
        }
    }

    void refusesToLoseParents_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("2014") << "2014";
        QTest::newRow("2014a") << "2014a";
    }

    void refusesToLoseParents()
    {
        QFETCH(QString, format);
        saveCaseWithForeignParents("foreign");
        QVERIFY(writeContent(path("out.geo_model"), "old model"));
        QVERIFY(writeContent(path("out.geo_mesh"), "old mesh"));
        const ToolRun run =
            runTool({"convert", path("foreign"), "-o", path("out"), "--mesh-format", format});
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.errors,
                 QByteArray("ovrageo: error: 2 mesh entities stand on a model entity of another "
                            "dimension, which mesh formats 2014 and 2014a cannot hold; format 2013 "
                            "can\n"));
        QCOMPARE(contentOf(path("out.geo_model")), QByteArray("old model"));
        QCOMPARE(contentOf(path("out.geo_mesh")), QByteArray("old mesh"));
    }

    void format2013KeepsForeignParents()
    {
        saveCaseWithForeignParents("foreign");
        convert({"foreign", "-o", "out", "--mesh-format", "2013"});
        QCOMPARE(contentOf(path("out.geo_mesh")), contentOf(path("foreign.geo_mesh")));
    }

    void dropsParentsWhenTold()
    {
        saveCaseWithForeignParents("foreign");
        const ToolRun run =
            runTool({"convert", path("foreign"), "-o", path("out"), "--drop-parents"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors,
                 QByteArray("ovrageo: warning: 2 mesh entities stand on a model entity of another "
                            "dimension, which mesh formats 2014 and 2014a cannot hold; "
                            "written without a parent\n"));
        Database database;
        load(database, "out");
        QVERIFY(!database.mesh()->entity(2, 2)->parent());
        QVERIFY(!database.mesh()->entity(2, 3)->parent());
        QCOMPARE(database.mesh()->entity(2, 1)->parent(), database.model()->entity(2, 3));
    }

private:
    QString path(const QString& name) const { return directory_->filePath(name); }

    void convert(QStringList arguments)
    {
        arguments[0] = path(arguments[0]);
        arguments[2] = path(arguments[2]);
        const ToolRun run = runTool(QStringList{"convert"} + arguments);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    void load(Database& database, const QString& name)
    {
        QFile modelFile(path(name + ".geo_model"));
        QFile meshFile(path(name + ".geo_mesh"));
        QVERIFY(modelFile.open(QIODevice::ReadOnly) && meshFile.open(QIODevice::ReadOnly));
        QDataStream modelStream(&modelFile);
        QDataStream meshStream(&meshFile);
        database.model()->read(modelStream);
        database.mesh()->read(meshStream);
        QVERIFY(modelStream.status() == QDataStream::Ok && meshStream.status() == QDataStream::Ok);
    }

    /// Attributes in each dimension, gaps in the ids, a vertex on a face; "plain" is its twin that
    /// the tool has read and written once in the latest format.
    void saveRichCase(const QString& name)
    {
        TinyCase tiny;
        tiny.mesh()->attributes().insert(AttributeType::Layers, 4);
        tiny.model()->attributes().insert(AttributeType::PeriodicOrigin,
                                          QVariant::fromValue(Vector(1, 2, 3)));
        tiny.face->addChild(tiny.vertices[1]);
        tiny.vertices[2]->attributes().insert(AttributeType::InBL, true);
        tiny.vertices[2]->attributes().insert(AttributeType::PeriodicWeights,
                                              QVariantList{0.25, 0.75});
        tiny.bottom->attributes().insert(AttributeType::Side, QStringLiteral("left"));
        tiny.tetrahedron->attributes().insert(AttributeType::InBL, false);
        auto* const vertex = new MeshVertex;
        vertex->setId(70);
        tiny.mesh()->add(vertex);
        QVERIFY(tiny.save(path(name)));
        QCOMPARE(runTool({"convert", path(name), "-o", path("plain")}).exitCode, 0);
    }

    void saveCaseWithForeignParents(const QString& name)
    {
        TinyCase tiny;
        tiny.addElement(2, {1, 2, 4}, tiny.region);
        tiny.addElement(2, {2, 3, 4}, tiny.region);
        QVERIFY(tiny.save(path(name)));
        QFile file(path(name + ".geo_mesh"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        stream.setVersion(12);
        const std::unique_ptr<MeshSerializer> serializer(
            MeshSerializer::create(MeshSerializer::Format2013, tiny.model(), tiny.mesh()));
        serializer->write(stream);
    }

    std::unique_ptr<QTemporaryDir> directory_;
};

QTEST_GUILESS_MAIN(TestToolConvert)
#include "tst_ToolConvert.moc"
