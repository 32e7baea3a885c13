#include "AxisNumbers.h"
#include "CaseFindings.h"
#include "CaseView.h"
#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "PictureScene.h"
#include "PreparationCase.h"
#include "ToolError.h"

#include <QTest>

#include <algorithm>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

GridSpec fluidAndSolid()
{
    return PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}});
}

QStringList legendOf(const PictureData& data)
{
    QStringList texts;
    for (const PictureData::LegendEntry& entry : data.legend) {
        texts += QString::fromStdString(entry.text);
    }
    return texts;
}

QString noText()
{
    return {};
}

/// The first mesh entity whose middle has that x.
MeshEntity* meshEntityAt(Mesh& mesh, int dimension, double x)
{
    auto entities = mesh.iterator(dimension);
    while (entities.hasNext()) {
        MeshEntity* const entity = entities.next().value();
        if (entity->centroid().x() == x) {
            return entity;
        }
    }
    return nullptr;
}

QList<double> marksOf(const PictureData& data)
{
    QList<double> places;
    for (const PictureData::Mark& mark : data.marks) {
        places += mark.place[0];
    }
    return places;
}

QString subtitleOf(const CaseView& view, const PictureOptions& options,
                   const CaseFindings& findings)
{
    PictureScene scene(view, options, &findings);
    scene.setTitle(QStringLiteral("case"));
    return QString::fromStdString(scene.data().subtitle);
}

} // namespace

/// What a picture is made of, before it is drawn.
class TestPictureScene : public QObject
{
    Q_OBJECT

private slots:
    void seesThroughFluidOnlyWhereThereIsMore()
    {
        GridMesh grid(fluidAndSolid());
        const CaseView view(*grid.database());
        const PictureData both = PictureScene(view, {}, nullptr).data();
        int clear = 0;
        for (const PictureData::Surface& surface : both.surfaces) {
            clear += surface.opacity < 1.0 ? 1 : 0;
        }
        QCOMPARE(both.surfaces.size(), std::size_t(3));
        QCOMPARE(clear, 1);
        const ClosedCase fluid;
        const CaseView other(fluid.database);
        const PictureScene scene(other, {}, nullptr);
        for (const PictureData::Surface& surface : scene.data().surfaces) {
            QCOMPARE(surface.opacity, 1.0);
        }
    }

    void namesWhatTheColoursAre_data()
    {
        QTest::addColumn<QString>("by");
        QTest::addColumn<QStringList>("legend");
        QTest::newRow("as fits") << "" << QStringList{"left", "region 2"};
        QTest::newRow("region") << "region" << QStringList{"left", "region 2"};
        QTest::newRow("material") << "material" << QStringList{"fluid", "solid"};
        QTest::newRow("attribute") << "material_type" << QStringList{"fluid", "solid"};
        QTest::newRow("attribute of some") << "mesh_size" << QStringList{"0.5", "(none)"};
    }

    void namesWhatTheColoursAre()
    {
        QFETCH(QString, by);
        QFETCH(QStringList, legend);
        GridMesh grid(fluidAndSolid());
        ModelEntity* const left = grid.database()->model()->entity(3, 1);
        left->setName(QStringLiteral("left"));
        left->attributes().insert(AttributeType::MeshSize, 0.5);
        const CaseView view(*grid.database());
        PictureOptions options;
        options.colorBy = by;
        QCOMPARE(legendOf(PictureScene(view, options, nullptr).data()), legend);
    }

    void namesWhatStandsOnNoRegion_data()
    {
        QTest::addColumn<QString>("by");
        QTest::addColumn<QString>("last");
        QTest::newRow("region") << "region"
                                << "(no region)";
        QTest::newRow("face") << "face"
                              << "(no face)";
        QTest::newRow("material") << "material"
                                  << "(no material)";
        QTest::newRow("attribute") << "material_type"
                                   << "(none)";
    }

    void namesWhatStandsOnNoRegion()
    {
        QFETCH(QString, by);
        QFETCH(QString, last);
        ClosedCase closed;
        closed.addVertex(Vector(0, 0, -1));
        closed.addElement(3, {1, 3, 2, 5}, nullptr);
        for (int i = 0; i < 40; ++i) { // more than the legend lists
            ModelFace* const face = closed.addFace();
            face->setName(QString::number(i));
            ClosedCase::link(face, closed.region);
            closed.addElement(2, {2, 3, 4}, face);
        }
        const CaseView view(closed.database);
        PictureOptions options;
        options.colorBy = by;
        QCOMPARE(legendOf(PictureScene(view, options, nullptr).data()).last(), last);
    }

    void cutsElementsOnNoRegionToo()
    {
        ClosedCase closed;
        closed.addVertex(Vector(0, 0, -1));
        closed.addElement(3, {1, 3, 2, 5}, nullptr);
        const CaseView view(closed.database);
        PictureOptions options;
        options.cut = PictureOptions::Cut{0, 0.25};
        QCOMPARE(PictureScene(view, options, nullptr).data().sections.size(), std::size_t(2));
    }

    void tellsUnderTheTitleWhatIsShown()
    {
        GridMesh grid(PreparationCase::plan({"112"}, {{1, "fluid"}, {2, "solid"}}));
        const CaseView view(*grid.database());
        PictureOptions options;
        const auto subtitle = [&](const CaseFindings* findings) {
            PictureScene scene(view, options, findings);
            scene.setTitle(QStringLiteral("three\ncubes"));
            [&] { QCOMPARE(scene.data().title, std::string("three cubes")); }();
            return QString::fromStdString(scene.data().subtitle);
        };
        QCOMPARE(subtitle(nullptr), QString("3 elements in 2 regions"));
        options.cut = PictureOptions::Cut{0, 1.5};
        const CaseFindings none(10);
        QCOMPARE(subtitle(&none),
                 QString("3 elements in 2 regions; cut at x = 1.5; 0 errors, 0 warnings"));
        options.faces = QStringList{"region 1", "*2"};
        QCOMPARE(subtitle(nullptr),
                 QString("3 elements in 2 regions; shown: region 1, *2; cut at x = 1.5"));
    }

    void movesEachRegionFromTheMiddle()
    {
        GridMesh grid(fluidAndSolid());
        const CaseView view(*grid.database());
        PictureOptions options;
        options.explode = 2.0;
        const PictureData data = PictureScene(view, options, nullptr).data();
        QCOMPARE(data.surfaces.size(), std::size_t(4)); // the face between them twice
        int left = 0;
        for (const PictureData::Surface& surface : data.surfaces) {
            QCOMPARE(std::abs(surface.offset[0]), 1.0);
            left += surface.offset[0] < 0 ? 1 : 0;
        }
        QCOMPARE(left, 2);
        QCOMPARE(data.low[0], -1.0);
        QCOMPARE(data.high[0], 3.0);
        QVERIFY(data.axisNumbers[0].empty());
    }

    void cutsBeforeItMoves()
    {
        GridMesh grid(fluidAndSolid());
        const CaseView view(*grid.database());
        PictureOptions options;
        options.explode = 2.0; // regions from 0 to 1 and from 1 to 2 come to stand at -1 and at 2
        options.cut = PictureOptions::Cut{0, 1.5};
        const PictureData both = PictureScene(view, options, nullptr).data();
        QCOMPARE(both.low[0], -1.0);
        QCOMPARE(both.high[0], 2.5);
        options.cut = PictureOptions::Cut{0, 0.5};
        QCOMPARE(PictureScene(view, options, nullptr).data().high[0], -0.5);
        options.cut = PictureOptions::Cut{0, 2.5}; // within what is moved, beyond the case
        QVERIFY_THROWS_EXCEPTION(ToolError, PictureScene(view, options, nullptr));
    }

    void marksMoveWithWhatTheyStandOn_data()
    {
        using Places = QList<double>; // x of all marks
        QTest::addColumn<bool>("ofModel");
        QTest::addColumn<int>("dimension");
        QTest::addColumn<double>("x");
        QTest::addColumn<Places>("places");
        QTest::newRow("left element") << false << 3 << 0.5 << Places{-0.5};
        QTest::newRow("right element") << false << 3 << 1.5 << Places{2.5};
        QTest::newRow("outer face") << false << 2 << 2.0 << Places{3.0};
        QTest::newRow("face between, drawn twice") << false << 2 << 1.0 << Places{0.0, 2.0};
        QTest::newRow("region") << true << 3 << 1.5 << Places{2.5};
        QTest::newRow("the mesh face of no face") << false << -2 << 2.0 << Places{2.0};
    }

    void marksMoveWithWhatTheyStandOn()
    {
        QFETCH(bool, ofModel);
        QFETCH(int, dimension);
        QFETCH(double, x);
        QFETCH(QList<double>, places);
        GridMesh grid(fluidAndSolid());
        MeshEntity* const element = meshEntityAt(*grid.mesh(), std::abs(dimension), x);
        CaseFindings findings;
        const Vector place(x, 0.5, 0.5);
        if (ofModel) {
            findings.add(FindingKind::MixedOrientation, EntityName(*element->parent()), place,
                         noText);
        } else {
            findings.add(FindingKind::InvertedElement, *element, noText);
        }
        if (dimension < 0) {
            element->parent()->removeChild(element);
        }
        const CaseView view(*grid.database());
        PictureOptions options;
        options.explode = 2.0; // the left one by -1, the right one by 1
        QCOMPARE(marksOf(PictureScene(view, options, &findings).data()), places);
        QCOMPARE(marksOf(PictureScene(view, {}, &findings).data()), QList<double>{x});
    }

    void marksGoWithWhatIsCutAway()
    {
        GridMesh grid(fluidAndSolid());
        CaseFindings findings;
        for (const double x : {0.5, 1.5}) {
            findings.add(FindingKind::InvertedElement, *meshEntityAt(*grid.mesh(), 3, x), noText);
        }
        findings.add(FindingKind::EdgeWithoutFace, *meshEntityAt(*grid.mesh(), 2, 2.0), noText);
        const CaseView view(*grid.database());
        PictureOptions options;
        options.cut = PictureOptions::Cut{0, 1.75};
        QCOMPARE(subtitleOf(view, options, findings),
                 QString("2 elements in 2 regions; cut at x = 1.75; 2 errors, 1 warning "
                         "(1 mark cut away)"));
        options.cut = PictureOptions::Cut{0, 1.0};
        options.explode = 2.0;
        PictureScene scene(view, options, &findings);
        QCOMPARE(marksOf(scene.data()), QList<double>{-0.5});
        QCOMPARE(subtitleOf(view, options, findings),
                 QString("2 elements in 2 regions; cut at x = 1; 2 errors, 1 warning "
                         "(2 marks cut away)"));
    }

    void showsFacesThatHaveTheAttribute()
    {
        GridMesh grid(fluidAndSolid());
        const CaseView view(*grid.database());
        ModelEntity* const fluid = grid.database()->model()->entity(3, 1);
        for (int i = 0; i < fluid->adjacencyCount(2); ++i) {
            fluid->adjacencyAt(2, i)->attributes().insert(AttributeType::SolidFace, 7);
        }
        PictureOptions options;
        options.colorBy = QStringLiteral("solid_face");
        const PictureData data = PictureScene(view, options, nullptr).data();
        for (const PictureData::Surface& surface : data.surfaces) {
            QCOMPARE(surface.opacity, 1.0);
        }
        QCOMPARE(std::count_if(data.surfaces.begin(), data.surfaces.end(),
                               [](const auto& surface) { return surface.isBehind; }),
                 1);
    }

    void writesNumbersAlongAxes_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("from zero") << 0.0 << 0.1 << QStringList{"0", "0.05", "0.1"};
        QTest::newRow("about zero") << -1.0 << 1.0 << QStringList{"-1", "-0.5", "0", "0.5", "1"};
        QTest::newRow("far away") << 100000.0 << 100000.2
                                  << QStringList{"100000", "100000.05", "100000.1", "100000.15",
                                                 "100000.2"};
        QTest::newRow("a bit apart") << 0.049999999999999996 << 0.05 << QStringList();
        QTest::newRow("a bit apart, far away") << 1e17 << 1e17 + 16 << QStringList();
        QTest::newRow("the smallest") << 0.0 << 5e-324 << QStringList();
        QTest::newRow("no extent") << 3.0 << 3.0 << QStringList();
    }

    void writesNumbersAlongAxes()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(QStringList, texts);
        QStringList written;
        for (const PictureData::AxisNumber& number : axisNumbers(low, high)) {
            written += QString::fromStdString(number.text);
        }
        QCOMPARE(written, texts);
    }

    void cutsTheElementsThatThePlaneMeets()
    {
        GridMesh grid(PreparationCase::plan({"112"}, {{1, "fluid"}, {2, "solid"}}));
        const CaseView view(*grid.database());
        PictureOptions options;
        options.cut = PictureOptions::Cut{0, 1.5};
        const PictureData data = PictureScene(view, options, nullptr).data();
        QCOMPARE(data.sections.size(), std::size_t(1));
        QCOMPARE(data.sections[0].starts, (std::vector<int>{0, 8}));
        QVERIFY(!data.plane->keepsAbove);
        QCOMPARE(data.high[0], 1.5);
        QCOMPARE(legendOf(data), QStringList{"region 1"});
        options.cut = PictureOptions::Cut{1, 0.5};
        QVERIFY(PictureScene(view, options, nullptr).data().plane->keepsAbove);
        options.cut = PictureOptions::Cut{2, 0.5};
        const PictureData lower = PictureScene(view, options, nullptr).data();
        QVERIFY(!lower.plane->keepsAbove);
        QCOMPARE(lower.low[2], 0.0);
        QCOMPARE(lower.high[2], 0.5);
    }

    void writesTheUnitAtTheAxes()
    {
        const ClosedCase closed;
        const CaseView view(closed.database);
        PictureOptions options;
        QCOMPARE(PictureScene(view, options, nullptr).data().axisTitles[2], std::string("z"));
        options.unit = QStringLiteral("mm");
        QCOMPARE(PictureScene(view, options, nullptr).data().axisTitles[2], std::string("z [mm]"));
        options.unit = QStringLiteral("thousandths of an inch, of whatever kind");
        QCOMPARE(PictureScene(view, options, nullptr).data().axisTitles[2],
                 std::string("z [thousandths of an in..."));
    }

    void keepsTheLegendShortAndOnALine()
    {
        ClosedCase closed;
        closed.walls->setName(QStringLiteral("walls\nand all that is called so"));
        const CaseView view(closed.database);
        const PictureData data = PictureScene(view, {}, nullptr).data();
        QCOMPARE(legendOf(data), (QStringList{"inlet", "walls and all that is c..."}));
    }
};

QTEST_GUILESS_MAIN(TestPictureScene)
#include "tst_PictureScene.moc"
