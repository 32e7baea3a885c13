#include "AttributeType.h"
#include "CaseView.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "GeometryDatabaseTests/MeshChecks.h"
#include "KeptInterfaces.h"
#include "Partition.h"
#include "PreparationCase.h"
#include "Progress.h"
#include "ToolError.h"

#include <QTest>

#include <algorithm>
#include <map>
#include <set>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

GridSpec block(int nx, int ny, int nz, GridSpec::Shape shape)
{
    GridSpec spec;
    spec.cells = {nx, ny, nz};
    spec.shape = shape;
    spec.regionOf = [](int, int, int) { return 1; };
    spec.materials = {{1, QStringLiteral("fluid")}};
    return spec;
}

Partition cut(const CaseView& view, int parts, bool keepInterfaces = false)
{
    Progress progress;
    progress.setQuiet(true);
    return {view, {parts, keepInterfaces}, progress};
}

std::set<const MeshEntity*> verticesOf(const MeshEntity& element)
{
    std::set<const MeshEntity*> vertices;
    for (int i = 0; i < element.adjacencyCount(0); ++i) {
        vertices.insert(element.adjacencyAt(0, i));
    }
    return vertices;
}

std::size_t sharedVertices(const MeshEntity& a, const MeshEntity& b)
{
    const std::set<const MeshEntity*> some = verticesOf(a);
    const std::set<const MeshEntity*> others = verticesOf(b);
    return static_cast<std::size_t>(
        std::count_if(some.begin(), some.end(),
                      [&](const MeshEntity* vertex) { return others.count(vertex) > 0; }));
}

/// \brief How many mesh faces of \p first have an element in another part than those of the mesh face
/// on \p second to which \p counterpart takes its middle.
template <typename Counterpart>
int tornFaces(const CaseView& view, const Partition& partition, const ModelEntity& first,
              const ModelEntity& second, Counterpart counterpart)
{
    const std::vector<MeshEntity*>& elements = view.meshEntities(view.elementDimension());
    const auto partAt = [&](const MeshEntity* meshFace) {
        const MeshEntity* const element =
            MeshChecks::neighbours(meshFace, view.elementDimension()).first();
        const auto place = std::find(elements.begin(), elements.end(), element);
        return partition.partOf(static_cast<std::size_t>(place - elements.begin()));
    };
    std::map<QString, const MeshEntity*> there;
    for (const MeshEntity* meshFace : CaseView::childrenOf(second)) {
        there[meshFace->centroid().toString()] = meshFace;
    }
    int torn = 0;
    for (const MeshEntity* meshFace : CaseView::childrenOf(first)) {
        const MeshEntity* const other = there.at(counterpart(meshFace->centroid()).toString());
        torn += partAt(meshFace) == partAt(other) ? 0 : 1;
    }
    return torn;
}

/// \brief Makes a shell of what lies between two model faces: each vertex of \p first is linked to
/// that to whose place \p counterpart takes it, but for those on the rim, which both faces have.
template <typename Counterpart>
void makeShell(GridMesh& grid, ModelEntity& first, const ModelEntity& second,
               Counterpart counterpart)
{
    first.attributes().insert(AttributeType::NewShellFace, second.id());
    for (MeshEntity* vertex : CaseView::verticesOn(first)) {
        const Vector place = counterpart(vertex->centroid());
        MeshEntity* const partner = grid.vertexAt(
            static_cast<int>(place.x()), static_cast<int>(place.y()), static_cast<int>(place.z()));
        if (partner != vertex) {
            vertex->attributes().insert(AttributeType::ShellVertex, partner->id());
            partner->attributes().insert(AttributeType::ShellVertex, vertex->id());
        }
    }
}

/// \brief Three slabs beside each other; what is left and right of them are a periodic pair, each
/// vertex of which is tied to that opposite of it.
class PeriodicSlabs : public GridMesh
{
public:
    static constexpr int height = 12;

    explicit PeriodicSlabs(bool tied)
        : GridMesh(PreparationCase::plan(QStringList(height, QStringLiteral("123")), {}))
    {
        int side = 0;
        for (ModelEntity* face : {left(), right()}) {
            face->attributes().insert(AttributeType::PeriodicPairId, 1);
            face->attributes().insert(AttributeType::PeriodicSideId, ++side);
        }
        if (tied) {
            for (MeshEntity* vertex : CaseView::verticesOn(*left())) {
                tie(vertex);
            }
        }
        database()->mesh()->clearUpwardAdjacencies();
        database()->mesh()->setUpwardAdjacencies();
    }

    ModelEntity* left() { return face(0, 1); }
    ModelEntity* right() { return face(0, 3); }

    static Vector opposite(const Vector& place)
    {
        return Vector(3 - place.x(), place.y(), place.z());
    }

private:
    void tie(MeshEntity* vertex)
    {
        const Vector place = opposite(vertex->centroid());
        const MeshVertex* const partner = vertexAt(
            static_cast<int>(place.x()), static_cast<int>(place.y()), static_cast<int>(place.z()));
        vertex->attributes().insert(AttributeType::PeriodicEntityType, 0);
        vertex->attributes().insert(AttributeType::PeriodicEntityId, partner->id());
        vertex->attributes().insert(AttributeType::PeriodicWeights, QVariantList{1.0});
    }
};

} // namespace

class PartitionTest : public QObject
{
    Q_OBJECT

private slots:
    void cutsInPartsOfAboutTheSameSize_data()
    {
        QTest::addColumn<GridSpec::Shape>("shape");
        QTest::addColumn<std::size_t>("sideVertices"); // at least so many make a side

        QTest::newRow("hexahedra") << GridSpec::Shape::Block << std::size_t(4);
        QTest::newRow("wedges") << GridSpec::Shape::Wedge << std::size_t(3);
        QTest::newRow("tetrahedra") << GridSpec::Shape::Simplex << std::size_t(3);
    }

    void cutsInPartsOfAboutTheSameSize()
    {
        QFETCH(GridSpec::Shape, shape);
        QFETCH(std::size_t, sideVertices);
        GridMesh grid(block(5, 5, 5, shape));
        const CaseView view(*grid.database());
        const Partition partition = cut(view, 3);
        const std::vector<MeshEntity*>& elements = view.meshEntities(3);
        const double mean = static_cast<double>(elements.size()) / 3;
        std::vector<std::set<std::size_t>> ghosts(3);
        qint64 sides = 0;
        for (std::size_t a = 0; a < elements.size(); ++a) {
            for (std::size_t b = 0; b < a; ++b) {
                if (partition.partOf(a) == partition.partOf(b)) {
                    continue;
                }
                const std::size_t shared = sharedVertices(*elements[a], *elements[b]);
                sides += shared >= sideVertices ? 1 : 0;
                if (shared > 0) {
                    ghosts[static_cast<std::size_t>(partition.partOf(a))].insert(b);
                    ghosts[static_cast<std::size_t>(partition.partOf(b))].insert(a);
                }
            }
        }
        QCOMPARE(partition.cut(), sides);
        for (int part = 0; part < 3; ++part) {
            const std::set<std::size_t>& expected = ghosts[static_cast<std::size_t>(part)];
            QCOMPARE(partition.ghostsOf(part),
                     std::vector<std::size_t>(expected.begin(), expected.end()));
            QVERIFY(std::abs(static_cast<double>(partition.elementsOf(part).size()) / mean - 1) <
                    0.05);
        }
    }

    void givesEachElementAndVertexAnOwner()
    {
        GridMesh grid(block(4, 4, 4, GridSpec::Shape::Block));
        const CaseView view(*grid.database());
        const Partition partition = cut(view, 4);
        std::vector<int> lowest(view.meshEntities(0).size(), 4);
        std::size_t count = 0;
        for (int part = 0; part < partition.count(); ++part) {
            count += partition.elementsOf(part).size();
            for (const std::size_t element : partition.elementsOf(part)) {
                QCOMPARE(partition.partOf(element), part);
                for (const int vertex : view.vertexLists(3).of(element)) {
                    int& owner = lowest[static_cast<std::size_t>(vertex)];
                    owner = std::min(owner, part);
                }
            }
        }
        QCOMPARE(count, std::size_t(64));
        for (std::size_t vertex = 0; vertex < lowest.size(); ++vertex) {
            QCOMPARE(partition.ownerOf(static_cast<int>(vertex)), lowest[vertex]);
        }
    }

    void makesOnePartOfAll()
    {
        GridMesh grid(block(2, 2, 2, GridSpec::Shape::Block));
        const CaseView view(*grid.database());
        const Partition partition = cut(view, 1);
        QCOMPARE(partition.text(), "1 part of 8 elements");
        QVERIFY(partition.ghostsOf(0).empty());
    }

    void tellsOfPartsOfOneSize()
    {
        GridMesh grid(block(8, 1, 1, GridSpec::Shape::Block));
        const CaseView view(*grid.database());
        QCOMPARE(cut(view, 2).text(), "2 parts of 4 elements each, 1 side between them");
    }

    void refusesMorePartsThanElements()
    {
        GridMesh grid(block(2, 2, 1, GridSpec::Shape::Block));
        const CaseView view(*grid.database());
        try {
            cut(view, 5);
            QFAIL("was cut");
        } catch (const ToolError& error) {
            QCOMPARE(error.exitCode(), ExitCode::Unsuitable);
            QCOMPARE(error.text(), "cannot cut 4 elements in 5 parts");
        }
    }

    void keepsTheTwoSidesOfASplitTogether_data()
    {
        QTest::addColumn<QString>("material"); // of what is not the fluid
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QString>("link");

        QTest::newRow("fluid and solid") << "solid"
                                         << "split-fluid-solid"
                                         << "solid_face";
        QTest::newRow("rotor and stator") << "rotating_device"
                                          << "peripheral"
                                          << "stator_face";
    }

    void keepsTheTwoSidesOfASplitTogether()
    {
        QFETCH(QString, material);
        QFETCH(QString, operation);
        QFETCH(QString, link);
        GridMesh grid(PreparationCase::plan(QStringList(24, QStringLiteral("1122")),
                                            {{1, "fluid"}, {2, material}}));
        ModelEntity* const original = grid.face(1, 2);
        QCOMPARE(PreparationCase::prepare(*grid.database(), {operation}).refusal, QString());
        const int id = original->attributes().value(AttributeType::fromString(link), 0).toInt();
        ModelEntity* const copy = grid.model()->entity(2, id);
        QCOMPARE(original->childCount(), 24);
        const CaseView view(*grid.database());
        const auto same = [](const Vector& place) { return place; };
        QVERIFY(tornFaces(view, cut(view, 3), *original, *copy, same) > 0);
        QCOMPARE(tornFaces(view, cut(view, 3, true), *original, *copy, same), 0);
        QCOMPARE(clusterCount(view), 96 - 24);
    }

    void keepsTheTwoFacesOfAShellTogether()
    {
        GridMesh grid(PreparationCase::plan(QStringList(8, QStringLiteral("11111233333")), {}));
        const auto across = [](const Vector& place) { return place + Vector(1, 0, 0); };
        makeShell(grid, *grid.face(1, 2), *grid.face(2, 3), across);
        const CaseView view(*grid.database());
        QVERIFY(tornFaces(view, cut(view, 2), *grid.face(1, 2), *grid.face(2, 3), across) > 0);
        QCOMPARE(tornFaces(view, cut(view, 2, true), *grid.face(1, 2), *grid.face(2, 3), across),
                 0);
        QCOMPARE(clusterCount(view), 11 * 8 - 2 * 8); // both neighbours of the shell with it
    }

    /// Like a book that lies open: its first and its second page meet along an edge.
    void keepsAShellWhoseFacesMeetTogether()
    {
        constexpr int layers = 12;
        GridSpec spec = PreparationCase::plan({"13", "22"}, {});
        spec.cells[2] = layers;
        GridMesh grid(spec);
        makeShell(grid, *grid.face(1, 2), *grid.face(2, 3),
                  [](const Vector& place) { return Vector(2 - place.x(), place.y(), place.z()); });
        QCOMPARE(clusterCount(CaseView(*grid.database())), layers);
    }

    void keepsReplicasWithTheirOriginals()
    {
        GridMesh grid(PreparationCase::plan({"1111111111", "1222222221", "1111111111"},
                                            {{1, "fluid"}, {2, "solid"}}));
        grid.region(2)->attributes().insert(AttributeType::MotionType, 1);
        QCOMPARE(PreparationCase::prepare(*grid.database(), {"replicate-moving"}).refusal,
                 QString());
        const CaseView view(*grid.database());
        const std::vector<MeshEntity*>& elements = view.meshEntities(3);
        QCOMPARE(elements.size(), std::size_t(30 + 8));
        const std::vector<int> clusters = KeptInterfaces(view).clusters();
        std::set<std::pair<QString, int>> found;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            found.emplace(elements[i]->centroid().toString(), clusters[i]);
        }
        QCOMPARE(found.size(), std::size_t(30)); // where a replica is, in the same cluster
        QCOMPARE(clusterCount(view), 30);
    }

    void keepsAnExtrudedPairTogether()
    {
        PeriodicSlabs slabs(true);
        for (ModelEntity* face : {slabs.left(), slabs.right()}) {
            face->attributes().remove(AttributeType::PeriodicPairId);
        }
        slabs.left()->attributes().insert(AttributeType::ExtrudedFace, slabs.right()->id());
        const CaseView view(*slabs.database());
        const int elements = 3 * PeriodicSlabs::height;
        QCOMPARE(clusterCount(view), PeriodicSlabs::height + 1); // not tied: as a whole
        for (MeshEntity* vertex : CaseView::verticesOn(*slabs.left())) {
            AttributeMap& attributes = vertex->attributes();
            attributes.insert(AttributeType::ExtrudedEntityType, 0);
            attributes.insert(AttributeType::ExtrudedEntityId,
                              attributes.value(AttributeType::PeriodicEntityId, 0));
            attributes.insert(AttributeType::ExtrudedWeights, QVariantList{1.0});
        }
        QCOMPARE(clusterCount(view), elements - PeriodicSlabs::height);
        QCOMPARE(tornFaces(view, cut(view, 2, true), *slabs.left(), *slabs.right(),
                           PeriodicSlabs::opposite),
                 0);
    }

    void keepsAPeriodicPairTogether_data()
    {
        QTest::addColumn<bool>("tied");
        QTest::addColumn<int>("clusters");

        const int elements = 3 * PeriodicSlabs::height;
        QTest::newRow("face by face") << true << elements - PeriodicSlabs::height;
        QTest::newRow("as a whole") << false << PeriodicSlabs::height + 1;
    }

    void keepsAPeriodicPairTogether()
    {
        QFETCH(bool, tied);
        QFETCH(int, clusters);
        PeriodicSlabs slabs(tied);
        const CaseView view(*slabs.database());
        QCOMPARE(clusterCount(view), clusters);
        QCOMPARE(tornFaces(view, cut(view, 2, true), *slabs.left(), *slabs.right(),
                           PeriodicSlabs::opposite),
                 0);
    }

    void refusesMorePartsThanGroups()
    {
        PeriodicSlabs slabs(false);
        const CaseView view(*slabs.database());
        try {
            cut(view, PeriodicSlabs::height + 2, true);
            QFAIL("was cut");
        } catch (const ToolError& error) {
            QCOMPARE(error.text(),
                     "cannot cut 13 groups of elements that stay together in 14 parts");
        }
    }

private:
    static int clusterCount(const CaseView& view)
    {
        const std::vector<int> clusters = KeptInterfaces(view).clusters();
        return *std::max_element(clusters.begin(), clusters.end()) + 1;
    }
};

QTEST_GUILESS_MAIN(PartitionTest)
#include "tst_Partition.moc"
