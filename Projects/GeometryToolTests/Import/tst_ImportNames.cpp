#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ToolRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

/// The names that parts have in the input: in the attributes file and in info.
class TestImportNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        const GmshFixture gmsh;
        for (int i = 0; i < 4; ++i) {
            gmsh::model::occ::addBox(2 * i, 0, 0, 1, 1, 1);
        }
        gmsh::model::occ::synchronize();
        GmshFixture::writeStep(path("set.step"), "set",
                               {"board", "chip_1", "chip_2", "a (b) [c].d"});
    }

    void givesAttributesByName_data()
    {
        QTest::addColumn<QByteArray>("names");
        QTest::addColumn<QList<int>>("materials");
        const auto row = [](const char* name, const char* names, const QList<int>& materials) {
            QTest::newRow(name) << QByteArray(names) << materials;
        };
        row("the last part", "\"chip_1\": {\"material_id\": 5}", {0, 5, 0, 0});
        row("a pattern", "\"chip*\": {\"material_id\": 5}", {0, 5, 5, 0});
        row("a pattern in the middle", "\"c*_2\": {\"material_id\": 5}", {0, 0, 5, 0});
        row("all", "\"*\": {\"material_id\": 5}", {5, 5, 5, 5});
        row("the whole path, by pattern", "\"Shapes/set/*/board\": {\"material_id\": 5}",
            {5, 0, 0, 0});
        row("below an assembly", "\"*/set/*\": {\"material_id\": 5}", {5, 5, 5, 5});
        row("with a dimension", "\"3:board\": {\"material_id\": 5}", {5, 0, 0, 0});
        row("signs that mean something elsewhere", "\"a (b) [c].d\": {\"material_id\": 5}",
            {0, 0, 0, 5});
        row("a dot is a dot", "\"a (b) [c]*d\": {\"material_id\": 5}", {0, 0, 0, 5});
        row("the more exact one has the last word",
            "\"chip_1\": {\"material_id\": 3}, \"*\": {\"material_id\": 1}, \"chip*\": "
            "{\"material_id\": 2}",
            {1, 3, 2, 1});
        row("a name over a longer pattern",
            "\"Shapes/set/*\": {\"material_id\": 1}, \"board\": {\"material_id\": 2}",
            {2, 1, 1, 1});
    }

    void givesAttributesByName()
    {
        QFETCH(QByteArray, names);
        const ToolRun run = import("set.step", "{\"names\": {" + names + "}}");
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QTEST(materialsOf(imported), "materials");
    }

    void refusesUnknownNames_data()
    {
        QTest::addColumn<QByteArray>("names");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* key, const char* words) {
            QTest::newRow(name) << QByteArray("\"") + key + "\": {\"material_id\": 1}"
                                << QByteArray("names/") + key + ": no entity has this name; " +
                                       words + "\n";
        };
        row("near", "chip_3", "near it are chip_1, chip_2");
        row("another case of letters", "Board", "near it are board");
        row("a pattern", "chipp*", "near it are chip_1, chip_2");
        row("far", "heat sink", "the input has a (b) [c].d, board, chip_1, chip_2");
        row("another dimension", "2:board", "near it are board");
        row("a dot is no sign for any", "ch.p_1", "near it are chip_1, chip_2");
    }

    void refusesUnknownNames()
    {
        QFETCH(QByteArray, names);
        QFETCH(QByteArray, words);
        const ToolRun run = import("set.step", "{\"names\": {" + names + "}}");
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(isOneErrorLine(run.errors) && run.errors.endsWith(words), run.errors.constData());
    }

    void tellsWhereThereAreNoNames()
    {
        QVERIFY(writeContent(path("box.geo"),
                             "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n"));
        const ToolRun run = import("box.geo", "{\"names\": {\"chip\": {\"material_id\": 1}}}");
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(run.errors.endsWith("no entity has this name; the input has no names\n"),
                 run.errors.constData());
    }

    void groupsComeAfterNamesAndEntitiesLast()
    {
        QVERIFY(writeContent(path("set.geo"), "SetFactory(\"OpenCASCADE\");\nMerge \"set.step\";\n"
                                              "Physical Volume(\"chips\") = {2, 3};\n"));
        const ToolRun run = import("set.geo", "{\"entities\": {\"3:3\": {\"material_id\": 3}},"
                                              " \"groups\": {\"chips\": {\"material_id\": 2}},"
                                              " \"names\": {\"*\": {\"material_id\": 1},"
                                              " \"chip_1\": {\"material_id\": 4}}}");
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(materialsOf(imported), QList<int>({1, 2, 3, 1}));
    }

    void leavesPartsWithoutMesh()
    {
        const ToolRun run = import("set.step", "{\"names\": {\"chip*\": {\"mesh\": false}}}");
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QList<bool> meshed;
        for (auto* region : imported.entities(3)) {
            meshed.append(region->childCount() > 0);
        }
        QCOMPARE(meshed, QList<bool>({true, false, false, true}));
    }

    void reachesAllThatInfoLists_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<int>("dimension");
        QTest::addColumn<QList<int>>("ids");
        const auto row = [](const char* key, int dimension, const QList<int>& ids) {
            QTest::newRow(key) << QByteArray(key) << dimension << ids;
        };
        row("chips", 3, {2, 3});
        row("chip*", 3, {2, 3});
        row("*s", 3, {2, 3});
        row("chip_1", 3, {2}); // by its own name, beside that of its group
        row("*", 3, {1, 2, 3, 4});
        row("lid", 2, {6});
        row("l*", 2, {6});
        row("2:*", 2, {5, 6});
        row("rim", 1, {9, 10});
    }

    void reachesAllThatInfoLists()
    {
        QFETCH(QByteArray, key);
        QFETCH(int, dimension);
        QVERIFY(writeContent(path("set.geo"), "SetFactory(\"OpenCASCADE\");\nMerge \"set.step\";\n"
                                              "Physical Volume(\"chips\") = {2, 3};\n"
                                              "Physical Surface(\"lid\") = {6};\n"
                                              "Physical Surface(\"base\") = {5};\n"
                                              "Physical Curve(\"rim\") = {9, 10};\n"));
        const ToolRun run =
            import("set.geo", "{\"names\": {\"" + key + "\": {\"material_id\": 7}}}");
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QTEST(withMaterialId(imported, dimension), "ids");
        for (const int other : {0, 1, 2, 3}) {
            QVERIFY(other == dimension || withMaterialId(imported, other).isEmpty());
        }
    }

    void reachesSetsOfAbaqusFiles()
    {
        QVERIFY(writeContent(path("sets.inp"),
                             "*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 0, 1, 0\n4, 0, 0, 1\n5, 1, 1, 1\n"
                             "*ELEMENT, TYPE=C3D4\n1, 1, 2, 3, 4\n2, 2, 3, 4, 5\n"
                             "*ELSET, ELSET=core\n1\n*ELSET, ELSET=shell\n2\n"
                             "*ELSET, ELSET=whole\n1, 2\n"));
        const QByteArray all = "{\"names\": {\"wh*\": {\"material_id\": 7}}}";
        QCOMPARE(import("sets.inp", all).exitCode, 0);
        ImportedCase whole(path("case"));
        QCOMPARE(withMaterialId(whole, 3), QList<int>({1, 2}));
        const QByteArray one = "{\"names\": {\"shell\": {\"material_id\": 7}}}";
        QCOMPARE(import("sets.inp", one).exitCode, 0);
        ImportedCase part(path("case"));
        QCOMPARE(withMaterialId(part, 3), QList<int>{2});
    }

    void listsOfFacesTakePatternsOfGroups()
    {
        QVERIFY(writeContent(path("hot.geo"),
                             "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n"
                             "Physical Surface(\"side_a\") = {1};\n"
                             "Physical Surface(\"side_b\") = {4};\n"
                             "Physical Surface(\"lid\") = {6};\n"));
        const ToolRun run =
            import("hot.geo", "{\"entities\": {\"3:1\": {\"hot_faces\": [\"side_*\"],"
                              " \"material_type\": \"solid\"}}}");
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.model()
                     ->entity(3, 1)
                     ->attributes()
                     .value(Ovra::Geo::AttributeType::HotFaces, QVariant())
                     .toList(),
                 QVariantList({1, 4}));
    }

    void tellsOfRegionsWithoutMaterial_data()
    {
        QTest::addColumn<QByteArray>("attributes");
        QTest::addColumn<QByteArray>("regions");
        QTest::newRow("two") << QByteArray(R"("chip*": {"material_type": "solid"})")
                             << QByteArray("2 regions: 1 (Shapes/set/1/board), 4 "
                                           "(Shapes/set/4/a (b) [c].d)");
        QTest::newRow("one") << QByteArray(R"("chip*": {"material_type": "solid"},)"
                                           R"("board": {"material_type": "fluid"})")
                             << QByteArray("1 region: 4 (Shapes/set/4/a (b) [c].d)");
        QTest::newRow("none, as one is suppressed")
            << QByteArray(R"("*": {"material_type": "solid"}, "chip_1": {"is_suppressed": true})")
            << QByteArray();
        QTest::newRow("one suppressed without any")
            << QByteArray(R"("chip*": {"material_type": "solid"},)"
                          R"("board": {"material_type": "fluid"}, "a*d": {"is_suppressed": true})")
            << QByteArray();
    }

    void tellsOfRegionsWithoutMaterial()
    {
        QFETCH(QByteArray, attributes);
        QFETCH(QByteArray, regions);
        const ToolRun run = import("set.step", "{\"names\": {" + attributes + "}}");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors,
                 regions.isEmpty()
                     ? QByteArray()
                     : "ovrageo: warning: " + path("attributes.json").toUtf8() +
                           ": gives no material_type to " + regions +
                           "; without one, a region counts as neither fluid nor solid\n");
    }

    void infoListsNames()
    {
        QVERIFY(writeContent(path("names.geo"),
                             "SetFactory(\"OpenCASCADE\");\n"
                             "For i In {1 : 12}\nBox(i) = {2 * i, 0, 0, 1, 1, 1};\nEndFor\n"
                             "Physical Volume(\"row\") = {1 : 11};\n"
                             "Physical Volume(\"last\") = {12};\n"
                             "Physical Surface(\"base\") = {5};\n"));
        QCOMPARE(import("names.geo", "{\"model\": {}}").exitCode, 0);
        const QByteArray text = runTool({"info", path("case")}).output;
        QVERIFY2(text.contains("\nNames\n  last: region 12\n"
                               "  row: regions 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, ...\n"
                               "  base: face 5\n"),
                 text.constData());
        const QJsonArray names =
            QJsonDocument::fromJson(runTool({"info", path("case"), "--json"}).output)["names"]
                .toArray();
        QCOMPARE(names.size(), 3);
        QCOMPARE(names[0].toObject(),
                 QJsonObject({{"dimension", 3}, {"name", "last"}, {"ids", QJsonArray{12}}}));
        QCOMPARE(names[1]["ids"].toArray().size(), 11);
        QCOMPARE(names[2].toObject(),
                 QJsonObject({{"dimension", 2}, {"name", "base"}, {"ids", QJsonArray{5}}}));
    }

    void infoListsNamesOfTheInputBesideGroups()
    {
        QVERIFY(writeContent(path("set.geo"), "SetFactory(\"OpenCASCADE\");\nMerge \"set.step\";\n"
                                              "Physical Volume(\"chips\") = {2, 3};\n"));
        QCOMPARE(import("set.geo", "{\"model\": {}}").exitCode, 0);
        const QByteArray text = runTool({"info", path("case")}).output;
        QVERIFY2(text.contains("/chip_1: region 2\n") && text.contains("  chips: regions 2, 3\n"),
                 text.constData());
    }

private:
    QString path(const char* name) const { return directory_.filePath(QString::fromLatin1(name)); }

    ToolRun import(const char* file, const QByteArray& attributes)
    {
        const QString json = path("attributes.json");
        return writeContent(json, attributes)
                   ? runTool({"import", path(file), "-o", path("case"), "--attributes", json})
                   : ToolRun();
    }

    static QList<int> withMaterialId(ImportedCase& imported, int dimension)
    {
        QList<int> ids;
        for (auto* entity : imported.entities(dimension)) {
            if (entity->attributes().contains(Ovra::Geo::AttributeType::MaterialId)) {
                ids.append(entity->id());
            }
        }
        return ids;
    }

    /// \brief The material_id of each region, 0 where there is none.
    static QList<int> materialsOf(ImportedCase& imported)
    {
        QList<int> ids;
        for (auto* region : imported.entities(3)) {
            ids.append(region->attributes().value(Ovra::Geo::AttributeType::MaterialId, 0).toInt());
        }
        return ids;
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportNames)
#include "tst_ImportNames.moc"
