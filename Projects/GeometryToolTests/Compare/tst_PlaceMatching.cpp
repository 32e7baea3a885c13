#include "CaseComparison.h"
#include "PreparationCase.h"
#include "RenumberedCase.h"

#include <QTest>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;
using namespace PreparationCase;

using Making = GridSpec (*)();
using Editing = void (*)(Database&);
Q_DECLARE_METATYPE(Making)
Q_DECLARE_METATYPE(Editing)

namespace
{

constexpr auto Wedge = GridSpec::Shape::Wedge;
constexpr auto Simplex = GridSpec::Shape::Simplex;

const QMap<int, QString> materials = {{1, "fluid"}, {2, "solid"}, {3, "rotating_device"}};

CaseComparison::Options byPlace(double tolerance)
{
    CaseComparison::Options options;
    options.byPlace = true;
    options.tolerance = tolerance;
    return options;
}

/// All that is told, a line each.
QStringList linesOf(const CaseDifferences& differences)
{
    QStringList lines;
    for (const auto& [key, group] : differences.groups()) {
        for (const Difference& difference : group.first) {
            lines += differenceName(key.first) + QLatin1Char(' ') + difference.text();
        }
    }
    return lines;
}

CaseDifferences compare(const Database& a, const Database& b, double tolerance)
{
    Progress progress;
    progress.setQuiet(true);
    return CaseComparison::compare(a, b, byPlace(tolerance), progress);
}

QStringList differ(const Database& a, const Database& b, double tolerance = 0.0)
{
    return linesOf(compare(a, b, tolerance));
}

/// Moves every vertex by up to that much in each direction, as other programs' digits do.
void shake(Mesh& mesh, double distance)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> by(-distance, distance);
    for (auto walk = mesh.iterator(0); walk.hasNext();) {
        auto* const vertex = static_cast<MeshVertex*>(walk.next().value());
        vertex->setPoint(vertex->point() + Vector(by(random), by(random), by(random)));
    }
}

GridSpec doubled()
{
    return plan({"111", "121", "111"}, materials, Simplex);
}

} // namespace

/// \brief Compares cases with copies of them in which all entities have other ids.
class TestPlaceMatching : public QObject
{
    Q_OBJECT

private slots:
    void renumberedCasesAreEqual_data()
    {
        QTest::addColumn<Making>("make");
        QTest::addColumn<bool>("moves");
        QTest::newRow("solid in fluid") << Making(doubled) << false;
        QTest::newRow("wedges") << Making([] {
            return plan({"12", "12"}, materials, Wedge);
        }) << false;
        QTest::newRow("hexahedra") << Making([] {
            return plan({"112", "122"}, materials);
        }) << false;
        QTest::newRow("rotating device") << Making([] {
            return plan({"111", "131", "111"}, materials, Wedge);
        }) << false;
        QTest::newRow("replica of a moving region") << Making([] {
            return plan({"111", "121", "111"}, materials);
        }) << true;
        QTest::newRow("two regions of one material") << Making([] {
            return plan({"22", "11"}, materials, Simplex);
        }) << false;
    }

    void renumberedCasesAreEqual()
    {
        QFETCH(Making, make);
        QFETCH(bool, moves);
        for (const unsigned seed : {1U, 2U, 3U}) {
            GridMesh grid(make());
            if (moves) {
                setAttribute(grid.region(2), AttributeType::MotionType, 1);
            }
            RenumberedCase imported(*grid.database(), seed);
            QCOMPARE(differ(*grid.database(), imported.database), QStringList());
            QCOMPARE(prepareAll(*grid.database()).refusal, QString());
            RenumberedCase prepared(*grid.database(), seed);
            QCOMPARE(differ(*grid.database(), prepared.database), QStringList());
            QCOMPARE(differ(prepared.database, *grid.database()), QStringList());
        }
    }

    // Neither the doubled vertices of an interface nor their elements have the same place any more.
    void verticesWithinTheToleranceAreMatched_data()
    {
        QTest::addColumn<double>("shaking");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<bool>("equal");
        QTest::newRow("last digits") << 1e-12 << 1e-9 << true;
        QTest::newRow("much, but less than to the next") << 0.1 << 0.2 << true;
        QTest::newRow("beyond the tolerance") << 1e-6 << 1e-9 << false;
        QTest::newRow("exactly") << 1e-12 << 0.0 << false;
    }

    void verticesWithinTheToleranceAreMatched()
    {
        QFETCH(double, shaking);
        QFETCH(double, tolerance);
        QFETCH(bool, equal);
        GridMesh grid(doubled());
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        RenumberedCase other(*grid.database(), 1);
        shake(*other.database.mesh(), shaking);
        const QStringList lines = differ(*grid.database(), other.database, tolerance);
        QCOMPARE(lines.isEmpty(), equal);
        QVERIFY(equal || lines.first().startsWith("only-in-a mesh vertex "));
    }

    void tellsOfOneEntityAlone_data()
    {
        QTest::addColumn<Editing>("edit");
        QTest::addColumn<QStringList>("expected");
        addRow("attribute",
               [](Database& other) {
                   other.mesh()->entity(3, 7)->attributes().insert(AttributeType::InBL, true);
               },
               {"attributes", "in_bl", "none", "true"});
        addRow("name",
               [](Database& other) { other.model()->entity(3, 7)->setName(QStringLiteral("air")); },
               {"name", "name", "\"\"", "\"air\""});
        addRow("parent",
               [](Database& other) {
                   MeshEntity* const element = other.mesh()->entity(3, 7);
                   element->parent()->removeChild(element);
               },
               {"classification", "parent", "model region 1", "none"});
    }

    void tellsOfOneEntityAlone()
    {
        QFETCH(Editing, edit);
        QFETCH(QStringList, expected);
        GridMesh grid(doubled());
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        RenumberedCase other(*grid.database(), 1);
        edit(other.database);
        const CaseDifferences differences = compare(*grid.database(), other.database, 0);
        QCOMPARE(differences.groups().size(), std::size_t(1));
        const auto& [key, group] = *differences.groups().begin();
        QCOMPARE(group.count, 1);
        const Difference& difference = group.first[0];
        QCOMPARE(*difference.subject.inB, 7);
        QCOMPARE(difference.changes.size(), std::size_t(1));
        const Change& change = difference.changes[0];
        QCOMPARE(QStringList({differenceName(key.first), change.what, change.inA, change.inB}),
                 expected);
    }

    // The link of a vertex to its double leads to another one than the double of what it stands for.
    void aLinkToAnotherEntityIsTold()
    {
        GridMesh grid(plan({"111", "121", "111"}, materials));
        setAttribute(grid.region(2), AttributeType::MotionType, 1);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        RenumberedCase other(*grid.database(), 1);
        ModelEntity* replica = nullptr;
        for (auto walk = other.database.model()->iterator(3); walk.hasNext();) {
            ModelEntity* const region = walk.next().value();
            if (region->attributes().contains(AttributeType::OriginalMotionRegion)) {
                replica = region;
            }
        }
        QVERIFY(replica);
        setAttribute(replica, AttributeType::OriginalMotionRegion, replica->id());
        const QStringList lines = differ(*grid.database(), other.database);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().startsWith("links model region ") &&
                     lines.first().contains("original_motion_region 2 in A, "),
                 qPrintable(lines.first()));
    }

    // One element less: the doubles beside it still go with their own side.
    void aMissingElementDoesNotMixUpTheSides()
    {
        GridMesh grid(doubled());
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        RenumberedCase other(*grid.database(), 1);
        ModelEntity* const solid =
            other.database.model()->entity(3, idOfRegion(other.database, "solid"));
        MeshEntity* const element = solid->childIterator().next().value();
        other.database.mesh()->remove(element);
        const CaseDifferences differences = compare(*grid.database(), other.database, 0);
        QCOMPARE(differences.count(DifferenceKind::OnlyInA, ComparedPart::MeshRegions), 1);
        QCOMPARE(differences.count(DifferenceKind::OnlyInB, ComparedPart::MeshRegions), 0);
        for (const ComparedPart part : {ComparedPart::MeshFaces, ComparedPart::MeshRegions}) {
            QCOMPARE(differences.count(DifferenceKind::Vertices, part), 0);
            QCOMPARE(differences.count(DifferenceKind::Classification, part), 0);
        }
    }

    // A split doubles an interface, and leaves every element where it is.
    void preparationShowsAsSuch()
    {
        GridMesh imported(doubled());
        GridMesh grid(doubled());
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        const CaseDifferences differences = compare(*imported.database(), *grid.database(), 0);
        QCOMPARE(differences.count(DifferenceKind::OnlyInB, ComparedPart::ModelFaces), 1);
        QCOMPARE(differences.count(DifferenceKind::Links, ComparedPart::ModelFaces), 1);
        QCOMPARE(differences.count(DifferenceKind::OnlyInA, ComparedPart::MeshRegions), 0);
        QCOMPARE(differences.count(DifferenceKind::OnlyInB, ComparedPart::MeshRegions), 0);
        QCOMPARE(differences.count(DifferenceKind::Classification, ComparedPart::MeshRegions), 0);
        QCOMPARE(differences.count(DifferenceKind::Vertices, ComparedPart::MeshRegions), 6);
        QCOMPARE(differences.count(DifferenceKind::OnlyInB, ComparedPart::MeshVertices), 8);
        QCOMPARE(differences.count(DifferenceKind::OnlyInB, ComparedPart::MeshFaces), 8);
    }

    // Nothing tells them apart but their ids: the same in every run, and in no time.
    void manyVerticesAtOnePlaceAreMatchedInOrder()
    {
        constexpr int count = 20000;
        Database a;
        Database b;
        for (Database* const database : {&a, &b}) {
            for (int i = 0; i < count; ++i) {
                database->mesh()->add(new MeshVertex);
            }
        }
        QCOMPARE(differ(a, b, 1.0), QStringList());
        b.mesh()->entity(0, 777)->attributes().insert(AttributeType::InBL, true);
        QCOMPARE(differ(a, b, 1.0).size(), 1);
    }

private:
    static void addRow(const char* name, Editing edit, const QStringList& expected)
    {
        QTest::newRow(name) << edit << expected;
    }

    static int idOfRegion(const Database& database, const QString& material)
    {
        for (auto walk = database.model()->iterator(3); walk.hasNext();) {
            ModelEntity* const region = walk.next().value();
            if (region->attributes().value(AttributeType::MaterialType, {}) == material) {
                return region->id();
            }
        }
        return 0;
    }
};

QTEST_GUILESS_MAIN(TestPlaceMatching)
#include "tst_PlaceMatching.moc"
