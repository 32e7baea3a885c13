#include "GmshFixture.h"
#include "ModelRegion.h"
#include "PreparedChecks.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <utility>
#include <vector>

using Ovra::Geo::AttributeType;
using Ovra::Geo::Vector;

/// What an attributes file says that is no attribute: regions without mesh, and shells.
class TestImportSections : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        GmshFixture fixture;
        GmshFixture::makeTwoBoxes(0.3);
        gmsh::model::mesh::setPeriodic(2, facesAt(1, 1), facesAt(0, 0),
                                       {1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
        gmsh::model::mesh::generate(3);
        nameFaces();
        gmsh::model::addPhysicalGroup(2, facesAt(1.5, 1.5), 90);
        gmsh::model::setPhysicalName(2, 90, "around");
        GmshFixture::write(path("boxes.msh"));
    }

    void leavesARegionWithoutMesh()
    {
        PreparedCase whole(imported("{}"));
        PreparedCase part(imported(R"({"groups": {"right": {"mesh": false, "material_id": 7}}})"));
        auto* const right = part.named(3, "right");
        QVERIFY(right != nullptr);
        QCOMPARE(right->childCount(), 0);
        QCOMPARE(PreparedCase::intOf(right, AttributeType::MaterialId), 7);
        QCOMPARE(static_cast<Ovra::Geo::ModelRegion*>(right)->volume(),
                 static_cast<Ovra::Geo::ModelRegion*>(whole.named(3, "right"))->volume());
        QCOMPARE(part.mesh()->count(3), whole.named(3, "left")->childCount());
        QCOMPARE(part.mesh()->count(2), whole.mesh()->count(2));
        QCOMPARE(part.faults(), QString());
        QCOMPARE(part.mesh()->count(0), whole.mesh()->count(0) - within(whole, "right"));
    }

    void lastWordOnMeshIsThatOfEntities()
    {
        PreparedCase whole(imported("{}"));
        PreparedCase part(imported(
            R"({"groups": {"right": {"mesh": false}}, "entities": {"3:2": {"mesh": true}}})"));
        QCOMPARE(part.meshCounts(), whole.meshCounts());
    }

    void makesAShell()
    {
        PreparedCase part(imported(shell(R"("left")", R"("x0")", R"("x1")")));
        auto* const left = part.named(3, "left");
        auto* const original = part.named(2, "x0");
        auto* const twin = part.named(2, "x1");
        QCOMPARE(left->attributes().value(AttributeType::IsShell, QVariant()), QVariant(true));
        QCOMPARE(PreparedCase::intOf(left, AttributeType::OriginalShellFace), original->id());
        QCOMPARE(PreparedCase::intOf(original, AttributeType::NewShellFace), twin->id());
        QVERIFY(!twin->attributes().contains(AttributeType::NewShellFace));
        QCOMPARE(part.shellFaults(Vector(1, 0, 0), 1e-9), QString());
        int linked = 0;
        for (auto* vertex : part.meshEntities(0)) {
            linked += vertex->attributes().contains(AttributeType::ShellVertex);
        }
        QCOMPARE(linked, 2 * static_cast<int>(PreparedCase::meshVertices(original).size()));
    }

    void noElementIsAcrossAShellFromItself_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QByteArray>("attributes");
        QTest::addColumn<int>("across"); // lines that rightly name an element across the shell
        const QByteArray layer = "; Layers{1}; Recombine; };\n";
        QTest::newRow("between solids")
            << "Rectangle(1) = {0, 0, 0, 1, 1};\nlow[] = Extrude {0, 0, 0.5} { Surface{1}" + layer +
                   "mid[] = Extrude {0, 0, 0.1} { Surface{low[0]}" + layer +
                   "top[] = Extrude {0, 0, 0.5} { Surface{mid[0]}" + layer +
                   "Physical Volume(\"sheet\") = {mid[1]};\n"
                   "Physical Surface(\"below\") = {low[0]};\n"
                   "Physical Surface(\"above\") = {mid[0]};\n"
            << shell(R"("sheet")", R"("below")", R"("above")") << 0;
        QTest::newRow("on the outside")
            << "Rectangle(1) = {0, 0, 0, 1, 1};\nlow[] = Extrude {0, 0, 0.5} { Surface{1}" + layer +
                   "mid[] = Extrude {0, 0, 0.1} { Surface{low[0]}" + layer +
                   "Physical Volume(\"sheet\") = {mid[1]};\n"
                   "Physical Surface(\"below\") = {low[0]};\n"
                   "Physical Surface(\"above\") = {mid[0]};\n"
            << shell(R"("sheet")", R"("below")", R"("above")") << 0;
        QTest::newRow("within a layer of a solid")
            << "Rectangle(1) = {0, 0, 0, 1, 1};\nRectangle(2) = {1, 0, 0, 1, 1};\nCoherence;\n"
               "left[] = Extrude {0, 0, 0.1} { Surface{1}" +
                   layer + "right[] = Extrude {0, 0, 0.1} { Surface{2}" + layer +
                   "Coherence;\nPhysical Volume(\"sheet\") = {left[1]};\n"
                   "Physical Surface(\"below\") = {1};\n"
                   "Physical Surface(\"above\") = {left[0]};\n"
            << shell(R"("sheet")", R"("below")", R"("above")") << 0;
    }

    void noElementIsAcrossAShellFromItself()
    {
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, attributes);
        QVERIFY(writeContent(path("sheet.geo"),
                             "SetFactory(\"OpenCASCADE\");\nMesh.MeshSizeMax = 0.5;\n" + script));
        QCOMPARE(import(attributes, "sheet", "sheet.geo").exitCode, 0);
        const ToolRun run = runTool({"solver-input", path("sheet"), "-o", path("surfaces"),
                                     "--sections", "surface-connectivity"});
        QCOMPARE(run.exitCode, 0);
        const auto lines = farLines(contentOf(path("surfaces")));
        QTEST(static_cast<int>(lines.size()), "across");
        for (const auto& [near, far] : lines) {
            QVERIFY2(near != far, QByteArray::number(near).constData());
        }
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("mesh: no truth value")
            << QByteArray(R"({"groups": {"right": {"mesh": 0}}})")
            << QByteArray("groups/right/mesh: true or false is expected, not the number 0");
        QTest::newRow("mesh: of a face")
            << QByteArray(R"({"groups": {"x0": {"mesh": false}}})")
            << QByteArray("groups/x0/mesh: only entities of dimension 3 have a mesh of their own "
                          "to be left out");
        QTest::newRow("name: of a group")
            << QByteArray(R"({"groups": {"right": {"name": "wing"}}})")
            << QByteArray("groups/right/name: only in the section entities can this be given");
        QTest::newRow("tag: of a name")
            << QByteArray(R"({"names": {"right": {"tag": "wing"}}})")
            << QByteArray("names/right/tag: only in the section entities can this be given");
        QTest::newRow("name: no text")
            << QByteArray(R"({"entities": {"3:1": {"name": 7}}})")
            << QByteArray("entities/3:1/name: a text is expected, not the number 7");
        QTest::newRow("shells: no list") << QByteArray(R"({"shells": {}})")
                                         << QByteArray("shells: a list is expected, not an object");
        QTest::newRow("shells: no object")
            << QByteArray(R"({"shells": [1]})")
            << QByteArray("shells/0: an object is expected, not the number 1");
        QTest::newRow("shells: key missing")
            << QByteArray(R"({"shells": [{"region": "left", "original_face": "x0"}]})")
            << QByteArray("shells/0: new_face is missing");
        QTest::newRow("shells: unknown key")
            << shell(R"("left")", R"("x0")", R"("x1", "offset": 1)")
            << QByteArray(
                   "shells/0/offset: unknown key; there are region, original_face and new_face");
        QTest::newRow("shells: wrong value")
            << shell("true", R"("x0")", R"("x1")")
            << QByteArray("shells/0/region: the id of a region or the name of a group of one "
                          "region is expected, not true or false");
        QTest::newRow("shells: no such region")
            << shell("3", R"("x0")", R"("x1")")
            << QByteArray("shells/0/region: there is no entity of dimension 3 with id 3");
        QTest::newRow("shells: none of the three")
            << shell("3", R"("nothing")", R"("nowhere")")
            << QByteArray("shells/0/region: there is no entity of dimension 3 with id 3");
        QTest::newRow("shells: no such group")
            << shell(R"("x0")", R"("x0")", R"("x1")")
            << QByteArray("shells/0/region: no physical group and no entity of dimension 3 has the "
                          "name \"x0\"");
        QTest::newRow("shells: several faces")
            << shell(R"("left")", R"("x0")", R"("around")")
            << QByteArray("shells/0/new_face: the name stands for 4 faces, but one is expected");
        QTest::newRow("unknown section")
            << QByteArray(R"({"shell": []})")
            << QByteArray(
                   "shell: unknown section; there are model, names, groups, entities and shells");
    }

    void refuses()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, message);
        const ToolRun run = import(json, QStringLiteral("refused"));
        QCOMPARE(run.errors,
                 "ovrageo: error: " + path("attributes.json").toUtf8() + ": " + message + '\n');
        QCOMPARE(run.exitCode, 4);
        QVERIFY(!QFile::exists(path("refused.geo_model")));
    }

    void refusesAShellOfMeshesThatDoNotMatch_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<QString>("message");
        // The second triangulation has a vertex more, or one in another place.
        QTest::newRow("count") << ""
                               << "Point(9) = {1, 0.2, 0.2}; Point{9} In Surface{2};"
                                  "Point(10) = {1, 0.2, 0.8}; Point{10} In Surface{2};"
                               << "one must be a copy of the other";
        QTest::newRow("place") << "Point(9) = {0, 0.2, 0.2}; Point{9} In Surface{1};"
                                  "Point(10) = {0, 0.2, 0.21}; Point{10} In Surface{1};"
                               << "Point(11) = {1, 0.8, 0.8}; Point{11} In Surface{2};"
                                  "Point(12) = {1, 0.1, 0.9}; Point{12} In Surface{2};"
                               << "has no vertex of its own on face 2; one mesh must be a copy of "
                                  "the other";
    }

    void refusesAShellOfMeshesThatDoNotMatch()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(QString, message);
        const QString script =
            QStringLiteral("SetFactory(\"OpenCASCADE\"); Box(1) = {0, 0, 0, 1, 1, 1};\n%1\n%2\n"
                           "Physical Volume(\"left\") = {1}; Mesh.MeshSizeMax = 2;"
                           "Mesh.MeshSizeFromPoints = 0; Mesh.MeshSizeExtendFromBoundary = 0;\n")
                .arg(left, right);
        QVERIFY(writeContent(path("box.geo"), script.toUtf8()));
        const ToolRun run = import(shell(R"("left")", "1", "2"), "refused", "box.geo");
        QVERIFY2(isOneErrorLine(run.errors) && run.errors.contains(message.toUtf8()),
                 run.errors.constData());
        QCOMPARE(run.exitCode, 4);
    }

private:
    static void nameFaces()
    {
        int group = 10;
        for (const int x : {0, 1, 2}) {
            gmsh::model::addPhysicalGroup(2, facesAt(x, x), group);
            gmsh::model::setPhysicalName(2, group++, std::string("x").append(std::to_string(x)));
        }
    }

    /// Faces whose centre lies between two places on the x axis, with some slack.
    static std::vector<int> facesAt(double from, double to)
    {
        std::vector<int> faces;
        gmsh::vectorpair all;
        gmsh::model::getEntities(all, 2);
        for (const auto& [dimension, tag] : all) {
            double x = 0;
            double y = 0;
            double z = 0;
            gmsh::model::occ::getCenterOfMass(dimension, tag, x, y, z);
            if (x > from - 1e-6 && x < to + 1e-6) {
                faces.push_back(tag);
            }
        }
        return faces;
    }

    static QByteArray shell(const QByteArray& region, const QByteArray& original,
                            const QByteArray& twin)
    {
        return R"({"shells": [{"region": )" + region + R"(, "original_face": )" + original +
               R"(, "new_face": )" + twin + "}]}";
    }

    /// The lines of a surface section that name an element across a shell: this one and that one.
    static std::vector<std::pair<int, int>> farLines(const QByteArray& section)
    {
        std::vector<std::pair<int, int>> result;
        const QList<QByteArray> lines = section.split('\n');
        for (qsizetype line = 0; line < lines.size() && lines.at(line) != "-1";) {
            const QList<QByteArray> head = lines.at(line).split(' ');
            line += 2 + (head.at(3).toInt() + 4) / 5;
            for (int i = 0; i < head.at(2).toInt(); ++i, ++line) {
                const QList<QByteArray> fields = lines.at(line).trimmed().split(' ');
                const auto far =
                    std::find_if(fields.begin(), fields.end(),
                                 [](const QByteArray& field) { return field.startsWith('-'); });
                if (far != fields.end()) {
                    result.emplace_back(fields.first().toInt(), -far->toInt());
                }
            }
        }
        return result;
    }

    static int within(PreparedCase& each, const char* region)
    {
        int count = 0;
        for (auto* vertex : each.meshEntities(0)) {
            count += vertex->parent() == each.named(3, region);
        }
        return count;
    }

    QString path(const char* name) const { return directory_.filePath(QLatin1String(name)); }

    /// Quietly: Gmsh complains that it was built without what would find nodes of periodic faces.
    ToolRun import(const QByteArray& json, const QString& name, const char* input = "boxes.msh")
    {
        writeContent(path("attributes.json"), json);
        return runTool({"--quiet", "import", path(input), "-o", directory_.filePath(name),
                        "--attributes", path("attributes.json")});
    }

    /// The name of the case that the boxes make with an attributes file.
    QString imported(const QByteArray& json)
    {
        const QString name = QStringLiteral("case");
        const ToolRun run = import(json, name);
        if (!run.errors.isEmpty() || run.exitCode != 0) {
            qWarning("%s", run.errors.constData());
        }
        return directory_.filePath(name);
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportSections)
#include "tst_ImportSections.moc"
