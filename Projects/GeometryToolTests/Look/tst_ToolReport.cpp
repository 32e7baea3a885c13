#include "AttributeType.h"
#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "PreparationCase.h"
#include "ReportFile.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;

namespace
{

/// Ends the script in which it stands, the attribute of an element, and what looks like a mark.
const QString hostile =
    QStringLiteral("</script><img src=x onerror=\"alert('1')\">&amp;{{positions}}");

using Triangle = std::array<std::array<float, 3>, 3>;

/// The triangles at the beginning of the indices, their corners sorted.
QList<Triangle> trianglesOf(const ReportFile& report, int count)
{
    const std::vector<float> positions = report.positions();
    const std::vector<quint32> indices = report.indices();
    QList<Triangle> triangles(count);
    for (int i = 0; i < count; ++i) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const std::size_t vertex = indices.at(static_cast<std::size_t>(3 * i) + corner);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                triangles[i][corner][axis] = positions.at(3 * vertex + axis);
            }
        }
        std::sort(triangles[i].begin(), triangles[i].end());
    }
    std::sort(triangles.begin(), triangles.end());
    return triangles;
}

QJsonObject patch(int dimension, int id, int triangles, int quadrilaterals = 0)
{
    return {{"dimension", dimension},
            {"id", id},
            {"triangles", triangles},
            {"quadrilaterals", quadrilaterals},
            {"leftOut", 0}};
}

/// A row of what has changed of a model entity.
QJsonObject changed(int dimension, int id, const QJsonValue& before, const QJsonValue& after,
                    const char* name = "")
{
    return {
        {"dimension", dimension}, {"id", id}, {"name", name}, {"before", before}, {"after", after}};
}

} // namespace

class TestToolReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void tellsWhatInfoAndVerifyTell()
    {
        ClosedCase closed;
        QVERIFY(closed.save(path("closed")));
        const ReportFile report = reportOn("closed");
        QVERIFY(report.isFilled());
        QCOMPARE(report.title(), QByteArray("closed"));
        QCOMPARE(report.at("info"), parsed({"info", path("closed"), "--json"}));
        QCOMPARE(report.at("verify"), parsed({"verify", path("closed"), "--json"}));
        QVERIFY(report.at("before").isNull());
    }

    void tellsOfRegionsAndFaces()
    {
        ClosedCase closed;
        closed.walls->attributes().insert(AttributeType::PeriodicTranslation, Vector(0, 0, 1.5));
        closed.walls->attributes().insert(AttributeType::HotFaces, QVariantList{3, 4});
        QVERIFY(closed.save(path("table")));
        const ReportFile report = reportOn("table");
        const QJsonObject region{{"dimension", 3},
                                 {"id", 2},
                                 {"name", "box"},
                                 {"tag", ""},
                                 {"materialType", "fluid"},
                                 {"materialId", "7"},
                                 {"elements", 1},
                                 {"measure", 1.0 / 6.0},
                                 {"bounds", QJsonArray()},
                                 {"attributes", QJsonArray{QJsonArray{"material_id", "7"},
                                                           QJsonArray{"material_type", "fluid"}}}};
        QCOMPARE(report.at("entities/0").toObject(), region);
        QCOMPARE(report.at("entities/1/name").toString(), QString("inlet"));
        QCOMPARE(report.at("entities/1/measure").toDouble(), 0.5);
        QCOMPARE(report.at("entities/1/bounds").toArray(), QJsonArray{2});
        QCOMPARE(report.at("entities/2/attributes").toArray(),
                 (QJsonArray{QJsonArray{"hot_faces", "3, 4"},
                             QJsonArray{"periodic_translation", "(0, 0, 1.5)"}}));
    }

    void countsElementsByAspectAndSize()
    {
        GridMesh grid(PreparationCase::plan({"11"}, {{1, "fluid"}}));
        QVERIFY(PreparationCase::save(*grid.database(), path("cubes")));
        const ReportFile report = reportOn("cubes");
        const QString solids = QStringLiteral("histograms/1/");
        QCOMPARE(report.at(solids + "dimension").toInt(), 3);
        QCOMPARE(report.at(solids + "aspects/0").toArray(), (QJsonArray{1, 2}));
        QCOMPARE(report.at(solids + "aspects/1").toArray(), (QJsonArray{1.25, 0}));
        QCOMPARE(report.at(solids + "measures").toArray(),
                 QJsonArray({QJsonValue(QJsonArray{0, 2})}));
    }

    void hasTheMeshFacesOnModelFaces()
    {
        ClosedCase closed;
        QVERIFY(closed.save(path("surface")));
        const ReportFile report = reportOn("surface");
        QCOMPARE(report.at("surfaces/patches").toArray(),
                 (QJsonArray{patch(2, 3, 1), patch(2, 4, 3)}));
        QCOMPARE(report.at("surfaces/origin").toArray(), (QJsonArray{0, 0, 0}));
        const QList<Triangle> expected{{{{0, 0, 0}, {0, 0, 1}, {0, 1, 0}}},
                                       {{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}}},
                                       {{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}},
                                       {{{0, 0, 1}, {0, 1, 0}, {1, 0, 0}}}};
        QCOMPARE(trianglesOf(report, 4), expected);
    }

    void hasTheSidesThatNoMeshFaceCovers()
    {
        TinyCase tiny;
        QVERIFY(tiny.save(path("bare")));
        const ReportFile report = reportOn("bare");
        QCOMPARE(report.at("surfaces/patches").toArray(),
                 (QJsonArray{patch(2, 3, 1), patch(3, 2, 3)}));
        QCOMPARE(trianglesOf(report, 4).size(), 4);
        QCOMPARE(report.at("verify/sound").toBool(), true);
    }

    void hasNoFacesWithinRegions()
    {
        GridMesh grid(PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
        QVERIFY(PreparationCase::save(*grid.database(), path("two")));
        const QJsonArray patches = reportOn("two").at("surfaces/patches").toArray();
        QCOMPARE(patches.size(), 3); // one between the regions, one round each
        int quadrilaterals = 0;
        for (const QJsonValue& each : patches) {
            quadrilaterals += each["quadrilaterals"].toInt();
        }
        QCOMPARE(quadrilaterals, 11);
    }

    void showsAPlanarCaseByItsFaces()
    {
        PlanarCase planar;
        planar.addElement(2, {1, 3, 4}, planar.faces[1]);
        QVERIFY(SavedCase::save(planar.database, path("planar")));
        const ReportFile report = reportOn("planar");
        QCOMPARE(report.at("surfaces/patches").toArray(),
                 (QJsonArray{patch(2, 1, 1), patch(2, 2, 1)}));
        QCOMPARE(report.at("surfaces/lines").toArray().size(), 3);
        QCOMPARE(report.at("surfaces/lines/1/segments").toInt(), 2);
        QCOMPARE(report.at("surfaces/lines/0/faces").toArray(), (QJsonArray{1, 2}));
        QCOMPARE(report.at("surfaces/lines/1/faces").toArray(), QJsonArray{1});
    }

    void leavesOutWhatHasNoPlace()
    {
        ClosedCase closed;
        closed.vertices[3]->setPoint(Vector(0, 0, std::numeric_limits<double>::quiet_NaN()));
        QVERIFY(closed.save(path("placeless")));
        const ReportFile report = reportOn("placeless");
        QCOMPARE(report.at("surfaces/patches").toArray(), (QJsonArray{patch(2, 3, 1)}));
        QCOMPARE(report.at("verify/sound").toBool(), false);
    }

    void takesAnEmptyCase()
    {
        Database empty;
        QVERIFY(SavedCase::save(empty, path("empty")));
        const ReportFile report = reportOn("empty");
        QVERIFY(report.isFilled());
        QCOMPARE(report.at("surfaces/patches").toArray(), QJsonArray());
    }

    void keepsHostileNamesAsTexts()
    {
        ClosedCase closed;
        closed.walls->setName(hostile);
        closed.region->attributes().insert(AttributeType::MaterialType, hostile);
        QVERIFY(closed.save(path("hostile")));
        const QString file = QStringLiteral("a'b\"&<i>");
        ClosedCase named;
        QVERIFY(named.save(path(file)));
        const ReportFile report = reportOn("hostile");
        QCOMPARE(report.page().count("</script"), reportOn("closed").page().count("</script"));
        QVERIFY(!report.page().contains("<img"));
        QCOMPARE(report.at("entities/2/name").toString(), hostile);
        QCOMPARE(report.at("entities/0/materialType").toString(), hostile);
        QCOMPARE(report.positions().size(), std::size_t(12));
        QCOMPARE(reportOn(file).title(), QByteArray("a'b&quot;&amp;&lt;i&gt;"));
    }

    void tellsWhatAPreparationHasChanged()
    {
        GridMesh grid(
            PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}}, GridSpec::Shape::Wedge));
        QVERIFY(PreparationCase::save(*grid.database(), path("wedges")));
        QCOMPARE(runTool({"prepare", path("wedges"), "-o", path("tets"), "--all"}).exitCode, 0);
        const ReportFile report = reportOn("tets", {"--before", path("wedges")});
        QCOMPARE(report.at("before/info"), parsed({"info", path("wedges"), "--json"}));
        QCOMPARE(report.at("before/info/dimensions/3/mesh/kinds/wedges").toInt(), 4);
        QCOMPARE(report.at("info/dimensions/3/mesh/kinds/tetrahedra").toInt(), 12);
        QCOMPARE(report.at("before/changed").toArray(),
                 (QJsonArray{changed(3, 1, 2, 6), changed(3, 2, 2, 6), changed(2, 1, 7, 10),
                             changed(2, 2, 1, 2), changed(2, 3, 7, 10),
                             changed(2, 4, QJsonValue::Null, 2, "face_2:solid")}));
        QCOMPARE(report.at("entities").toArray().size(), 6);
        const int vertices = report.at("info/dimensions/0/mesh/count").toInt() -
                             report.at("before/info/dimensions/0/mesh/count").toInt();
        QCOMPARE(report.at("before/meshAdded/0").toInt(), vertices);
        QCOMPARE(report.at("before/meshRemoved/0").toInt(), 0);
        QCOMPARE(report.at("info/twins/0/relation").toString(), QString("solid side"));
    }

    void tellsWhatOfTheModelDiffersAsDiffDoes()
    {
        ClosedCase before;
        QVERIFY(before.save(path("earlier")));
        ClosedCase after;
        after.walls->setName(QStringLiteral("shell"));
        after.walls->attributes().insert(AttributeType::MeshSize, 0.5);
        after.face->attributes().insert(AttributeType::SolidFace, 4);
        after.region->attributes().insert(AttributeType::MaterialId, 8);
        QVERIFY(after.save(path("later")));
        const ReportFile report = reportOn("later", {"--before", path("earlier")});
        QStringList told;
        for (const QJsonValue& group : report.at("before/differences").toArray()) {
            for (const QJsonValue& difference : group["first"].toArray()) {
                told += group["kind"].toString() + ' ' + difference["text"].toString();
            }
        }
        const QStringList expected{
            "name model face 4 at (0, 0, 0): name \"\" in A, \"shell\" in B",
            "attributes model face 4 at (0, 0, 0): mesh_size none in A, 0.5 in B",
            "attributes model region 2 at (0.25, 0.25, 0.25): material_id 7 in A, 8 in B",
            "links model face 3 at (0.5, 0.5, 0): solid_face none in A, 4 in B"};
        QCOMPARE(told, expected);
        const QByteArray lines = runTool({"diff", path("earlier"), path("later")})
                                     .output.split('\n')
                                     .first(4)
                                     .join('\n');
        QCOMPARE(QString::fromUtf8(lines), expected.join('\n'));
        QCOMPARE(reportOn("later", {"--before", path("later")}).at("before/differences").toArray(),
                 QJsonArray());
    }

    void countsTheDifferencesBeyondTheFirst()
    {
        ClosedCase before;
        ClosedCase after;
        for (int i = 0; i < 103; ++i) {
            before.addFace();
            after.addFace()->setName(QString::number(i));
        }
        QVERIFY(before.save(path("unnamed")));
        QVERIFY(after.save(path("named")));
        const ReportFile report = reportOn("named", {"--before", path("unnamed")});
        QCOMPARE(report.at("before/differences/0/part").toString(), QString("model faces"));
        QCOMPARE(report.at("before/differences/0/count").toInt(), 103);
        QCOMPARE(report.at("before/differences/0/first").toArray().size(), 100);
    }

    void listsNoEdgesWhereThereAreVeryMany()
    {
        PlanarCase planar;
        QVERIFY(SavedCase::save(planar.database, path("few")));
        QCOMPARE(reportOn("few").at("entities").toArray().size(), 5);
        while (planar.database.model()->count(1) <= 20000) {
            planar.database.model()->add(new ModelEdge);
        }
        QVERIFY(SavedCase::save(planar.database, path("many")));
        const ReportFile report = reportOn("many", {"--before", path("many")});
        QCOMPARE(report.at("entities").toArray().size(), 2);
        // Nor are they compared where there are very many of one case alone.
        const QJsonArray facesAlone{2};
        QCOMPARE(reportOn("many", {"--before", path("few")}).at("before/dimensions").toArray(),
                 facesAlone);
        const ReportFile fewer = reportOn("few", {"--before", path("many")});
        QCOMPARE(fewer.at("before/dimensions").toArray(), facesAlone);
        QCOMPARE(fewer.at("before/changed").toArray(), QJsonArray());
    }

    void everyRunGivesTheSameBytes()
    {
        ClosedCase closed;
        QVERIFY(closed.save(path("same")));
        const QByteArray first = reportOn("same").page();
        for (const char* seed : {"0", "1", "20131"}) {
            const ToolRun run = runTool({"report", path("same"), "-o", "-"}, seed);
            QCOMPARE(run.exitCode, 0);
            QVERIFY(run.output == first);
        }
    }

    void refusesToReplaceAnInput_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("output");
        QTest::newRow("model") << QStringList{"closed"} << "closed.geo_model";
        QTest::newRow("mesh") << QStringList{"closed"} << "closed.geo_mesh";
        QTest::newRow("mesh before")
            << QStringList{"closed", "--before", "same"} << "same.geo_mesh";
    }

    void refusesToReplaceAnInput()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, output);
        const QByteArray before = contentOf(path(output));
        for (QString& each : arguments) {
            each = each.startsWith('-') ? each : path(each);
        }
        const ToolRun run = runTool(QStringList{"report", "-o", path(output)} + arguments);
        QCOMPARE(run.exitCode, 2);
        QVERIFY(isOneErrorLine(run.errors));
        QVERIFY2(run.errors.contains(" is the input "), run.errors.constData());
        QCOMPARE(contentOf(path(output)), before);
    }

    void takesTheSuffixesOfPages_data()
    {
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("html") << "page.HTML" << 0;
        QTest::newRow("htm") << "page.htm" << 0;
        QTest::newRow("other") << "page.txt" << 2;
        QTest::newRow("none") << "page" << 2;
    }

    void takesTheSuffixesOfPages()
    {
        QFETCH(QString, output);
        QFETCH(int, exitCode);
        const ToolRun run = runTool({"report", path("closed"), "-o", path(output)});
        QCOMPARE(run.exitCode, exitCode);
        QCOMPARE(run.errors, exitCode == 0 ? QByteArray()
                                           : "ovrageo: error: the output " + path(output).toUtf8() +
                                                 " must have the suffix .html or .htm\n");
        QCOMPARE(QFile::exists(path(output)), exitCode == 0);
    }

    void tellsOfAMissingCaseBefore()
    {
        const ToolRun run = runTool(
            {"report", path("closed"), "-o", path("page.html"), "--before", path("nothing")});
        QCOMPARE(run.exitCode, 3);
        QVERIFY(isOneErrorLine(run.errors));
        QVERIFY(!QFile::exists(path("page.html")));
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    ReportFile reportOn(const QString& name, const QStringList& more = {}) const
    {
        const QString page = path(QStringLiteral("report.html"));
        QFile::remove(page);
        const ToolRun run = runTool(QStringList{"report", path(name), "-o", page} + more);
        if (run.exitCode != 0 || !run.errors.isEmpty()) {
            qWarning("%s", run.errors.constData());
        }
        return ReportFile(contentOf(page));
    }

    static QJsonValue parsed(const QStringList& arguments)
    {
        return QJsonDocument::fromJson(runTool(arguments).output).object();
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolReport)
#include "tst_ToolReport.moc"
