#include "CaseFiles.h"
#include "ClosedCase.h"
#include "EarlierCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "Places.h"
#include "PreparationCase.h"
#include "Programs.h"
#include "Progress.h"
#include "Report.h"
#include "ReportFile.h"
#include "ToolRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

const QString hostile = QStringLiteral("</script><img src=x onerror=\"alert('1')\">");

MeshEntity* vertexAt(Mesh& mesh, const Vector& point)
{
    auto vertices = mesh.iterator(0);
    while (vertices.hasNext()) {
        MeshEntity* const vertex = vertices.next().value();
        if ((vertex->centroid() - point).length() < 1e-9) {
            return vertex;
        }
    }
    return nullptr;
}

MeshEntity* addElement(Mesh& mesh, int dimension, const QList<Vector>& points)
{
    MeshEntity* const element = MeshEntity::create(dimension);
    for (const Vector& point : points) {
        element->addAdjacency(vertexAt(mesh, point));
    }
    mesh.add(element);
    return element;
}

/// An edge of the first region, and a mesh face over one of its sides that stands on nothing.
void addEdgeAndLooseFace(GridMesh& grid)
{
    auto* const edge = new ModelEdge;
    grid.model()->add(edge);
    ClosedCase::link(edge, grid.model()->entity(3, 1)->adjacencyAt(2, 0));
    edge->addChild(addElement(*grid.mesh(), 1, {Vector(0, 0, 0), Vector(0, 1, 0)}));
    addElement(*grid.mesh(), 2, {Vector(0, 0, 0), Vector(0, 1, 0), Vector(0, 1, 1)});
    grid.mesh()->setUpwardAdjacencies();
}

/// A fluid and a solid cube side by side, all of whose faces have the name of a villain.
bool saveTwoCubes(const QString& path)
{
    GridMesh grid(PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
    for (int id = 1; id <= grid.database()->model()->count(2); ++id) {
        grid.database()->model()->entity(2, id)->setName(hostile);
    }
    grid.database()->model()->entity(3, 1)->setName(QStringLiteral("air"));
    grid.database()->model()->entity(3, 2)->setName(QStringLiteral("chip"));
    addEdgeAndLooseFace(grid);
    return PreparationCase::save(*grid.database(), path);
}

/// "before", and "after" with other names and attributes.
bool saveTwoWithChanges(const QString& folder)
{
    ClosedCase before;
    ClosedCase after;
    for (int i = 0; i < 103; ++i) {
        before.addFace()->setName(QStringLiteral("old"));
        after.addFace()->setName(QString::number(i));
    }
    after.walls->setName(QStringLiteral("shell"));
    after.walls->attributes().insert(AttributeType::MeshSize, 0.5);
    before.region->setName(hostile);
    after.region->setName(hostile);
    after.region->attributes().insert(AttributeType::MaterialType, hostile);
    return before.save(folder + QStringLiteral("/before")) &&
           after.save(folder + QStringLiteral("/after"));
}

} // namespace

/// The page of a report in a browser without a window.
class TestReportPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString driver = Places::browserDriver() + QStringLiteral("/visit.mjs");
        if (Programs::isMissing("node") || !QFile::exists(driver)) {
            QSKIP("Node.js, which drives the browser, is not installed");
        }
        if (Programs::isMissing("chromium")) {
            QSKIP("Chromium is not installed");
        }
        QVERIFY(directory_.isValid());
        const QString page = directory_.filePath("cubes.html");
        QVERIFY(saveTwoCubes(directory_.filePath("cubes")));
        QCOMPARE(runTool({"report", directory_.filePath("cubes"), "-o", page}).exitCode, 0);
        const QString empty = directory_.filePath("empty.html");
        Database nothing;
        QVERIFY(PreparationCase::save(nothing, directory_.filePath("empty")));
        QCOMPARE(runTool({"report", directory_.filePath("empty"), "-o", empty}).exitCode, 0);
        const QString changed = directory_.filePath("changed.html");
        QVERIFY(saveTwoWithChanges(directory_.path()));
        QCOMPARE(runTool({"report", directory_.filePath("after"), "-o", changed, "--before",
                          directory_.filePath("before")})
                     .exitCode,
                 0);
        const QString limited = directory_.filePath("limited.html");
        QVERIFY(writeLimitedPage(limited, contentOf(empty).size()));
        QProcess process;
        process.start(Programs::find("node"), {driver, Programs::find("chromium"), page, empty,
                                               changed, limited, directory_.path()});
        QVERIFY(process.waitForFinished(-1));
        seen_ = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
        QVERIFY2(!seen_.isEmpty(), process.readAllStandardError().constData());
    }

    void loadsWithoutComplaintAndWithoutNetwork()
    {
        QCOMPARE(seen_["ready"].toString(), QString("view"));
        QCOMPARE(seen_["faults"].toArray(), QJsonArray());
    }

    void hasATitleAndSections()
    {
        QCOMPARE(seen_["title"].toString(), QString("cubes"));
        QCOMPARE(seen_["sections"].toArray(),
                 (QJsonArray{"Surfaces", "Overview", "Findings", "Regions", "Faces", "Quality",
                             "Attributes"}));
    }

    void tellsWhichEntitiesShareAName()
    {
        QCOMPARE(seen_["names"].toArray(),
                 (QJsonArray{QJsonArray{"air", "region 1"}, QJsonArray{"chip", "region 2"},
                             QJsonArray{hostile, "faces 1, 2, 3"}}));
    }

    void tellsWhatOfTheModelHasChanged()
    {
        const QJsonObject told = seen_["differences"].toObject();
        QCOMPARE(told["caption"].toString(), QString("Names, attributes and places that differ"));
        const QJsonArray rows = told["rows"].toArray();
        QCOMPARE(rows.size(), 102);
        QCOMPARE(rows[0].toArray(), (QJsonArray{"face 4", "shell", "name", "\"\"", "\"shell\""}));
        QCOMPARE(rows[100].toArray(), (QJsonArray{"face 4", "shell", "mesh_size", "none", "0.5"}));
        QCOMPARE(rows[101].toArray(), (QJsonArray{"region 2", hostile, "material_type", "\"fluid\"",
                                                  '"' + hostile + '"'}));
        QCOMPARE(told["paragraphs"].toArray(),
                 (QJsonArray{"Every region and face has as many elements as before.",
                             "name model faces: and 4 more"}));
    }

    void tellsWhatThePageHasNoRoomFor()
    {
        const ReportFile page(contentOf(directory_.filePath("limited.html")));
        int regions = 0;
        int faces = 0;
        for (const QJsonValue& entity : page.at("entities").toArray()) {
            ++(entity["dimension"].toInt() == 3 ? regions : faces);
        }
        const auto more = [](int count) { return QStringLiteral("and %1 more").arg(count); };
        const QJsonObject told = seen_["limited"].toObject();
        QCOMPARE(told["hints"].toArray(), (QJsonArray{more(page.at("info/materialsMore").toInt()),
                                                      more(301 - regions), more(302 - faces)}));
        QCOMPARE(told["note"].toString(),
                 QStringLiteral("Left out: %1 polygons, too many for this page")
                     .arg(page.at("surfaces/polygonsLeftOut").toInt()));
        QCOMPARE(told["last"].toString(), QString("On no region or face that is listed"));
        // But for two all faces bound no region that is listed.
        QCOMPARE(told["rows"].toInt(), regions + faces - 2 + 1);
        // What is new, but not listed, cannot be selected.
        QCOMPARE(told["changed"].toArray(),
                 (QJsonArray{"face 303\tface 303\tnew\t1", "face 304\tface 304\tnew\t1"}));
        QCOMPARE(told["selected"].toArray(), QJsonArray());
        QCOMPARE(told["texts"].toArray(),
                 (QJsonArray{"Every name, attribute and place in the model is as before.",
                             "and 1 more kind"}));
    }

    void aClickTellsTheNameOfTheFace()
    {
        QVERIFY2(seen_["clicked"].toString().startsWith(hostile + QStringLiteral("\nName\n")),
                 qPrintable(seen_["clicked"].toString()));
        QVERIFY(seen_["clicked"].toString().contains(QStringLiteral("\nClicked at\n(")));
    }

    void aSecondClickTellsWhatLiesBehind()
    {
        QVERIFY(seen_["clickedAgain"].toString().startsWith(hostile));
        QVERIFY(seen_["clickedAgain"] != seen_["clicked"]);
    }

    void hidingARegionChangesThePicture()
    {
        QVERIFY(seen_["hidingChanges"].toBool());
        QVERIFY(seen_["showingRestores"].toBool());
    }

    void whatStandsOnNothingCanBeHiddenToo()
    {
        QCOMPARE(seen_["listed"].toArray(), (QJsonArray{"air", "chip", "On no region or face"}));
        QVERIFY(seen_["loose"].toString().startsWith(
            QStringLiteral("On no region or face\nPolygons\n1\n")));
        QVERIFY(seen_["hidingLooseChanges"].toBool());
    }

    void nothingStaysWhereAllIsHidden() { QVERIFY(seen_["emptyWhenHidden"].toBool()); }

    void cuttingChangesThePicture() { QVERIFY(seen_["cuttingChanges"].toBool()); }

    void theKeyboardReachesAll()
    {
        const QJsonArray reached = seen_["reached"].toArray();
        for (const char* each : {"a", "canvas", "select", "input", "button", "summary"}) {
            QVERIFY2(reached.contains(QLatin1String(each)), each);
        }
        QVERIFY(seen_["arrowsTurn"].toBool());
        QVERIFY(seen_["spaceHides"].toBool());
        QVERIFY(seen_["entered"].toString().startsWith(QStringLiteral("air\nName\nair\n")));
    }

    void namesTheLicenceOfWhatDraws()
    {
        const QString licence = seen_["licence"].toString();
        for (const char* each : {"under the MIT licence.", "three.js authors",
                                 "The above copyright notice and this permission notice shall be "
                                 "included in\nall copies"}) {
            QVERIFY2(licence.contains(QLatin1String(each)), qPrintable(licence));
        }
    }

    void theTablesAreThereWithoutAView_data()
    {
        QTest::addColumn<QString>("note");
        QTest::newRow("empty") << "The surfaces cannot be shown here: the case has no mesh faces";
        QTest::newRow("withoutWebGl") << "The surfaces cannot be shown here: this browser has no "
                                         "WebGL, or it is switched off";
    }

    void theTablesAreThereWithoutAView()
    {
        QFETCH(QString, note);
        const QJsonObject seen = seen_[QLatin1String(QTest::currentDataTag())].toObject();
        QCOMPARE(seen["ready"].toString(), QString("tables"));
        QCOMPARE(seen["note"].toString(), note);
        QCOMPARE(seen["panel"].toBool(true), false);
        QVERIFY(seen["height"].toDouble() < 100);
        QVERIFY(seen["table"].toBool());
    }

    void aPhoneNeedNotScrollSideways()
    {
        const QJsonObject width = seen_["phoneWidth"].toObject();
        QCOMPARE(width["visible"].toInt(), 360);
        QCOMPARE(width["width"].toInt(), 360);
    }

    void isDarkWhereThatIsWished()
    {
        QCOMPARE(seen_["phonePaper"].toString(), QString("rgb(255, 255, 255)"));
        QCOMPARE(seen_["darkPaper"].toString(), QString("rgb(20, 24, 29)"));
    }

private:
    /// Of a case with many regions, materials and faces of a triangle each.
    bool writeLimitedPage(const QString& file, qsizetype withoutThem) const
    {
        const QString name = directory_.filePath("limited");
        const QString earlier = directory_.filePath("earlier");
        if (!saveManyFaces(name, 300) || !saveManyFaces(earlier, 298)) {
            return false;
        }
        Progress progress;
        CaseDatabase database;
        CaseFiles files(name);
        files.load(database, progress);
        const QJsonObject changes = EarlierCase(earlier, progress).changesTo(database);
        const Report report({withoutThem + 45'000, 18'000, 4'000, 200});
        return writeContent(file, report.page(files, database, changes, progress));
    }

    static bool saveManyFaces(const QString& name, int count)
    {
        ClosedCase closed;
        for (int i = 0; i < count; ++i) {
            closed.addElement(2, {1, 2, 3 + i % 2}, closed.addFace());
        }
        for (int i = 0; i < 300; ++i) {
            closed.addRegion()->attributes().insert(AttributeType::MaterialId, i);
        }
        // Listed, unlike its region.
        ClosedCase::link(closed.model()->entity(2, 5), closed.model()->entity(3, 302));
        return closed.save(name);
    }

    QTemporaryDir directory_;
    QJsonObject seen_;
};

QTEST_GUILESS_MAIN(TestReportPage)
#include "tst_ReportPage.moc"
