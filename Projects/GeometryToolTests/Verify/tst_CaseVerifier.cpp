#include "AttributeMap.h"
#include "AttributeRule.h"
#include "CaseVerifier.h"
#include "ClosedCase.h"
#include "ElementTopology.h"
#include "Matrix.h"
#include "Progress.h"
#include "Solver.h"

#include <QTest>

#include <limits>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

using T = AttributeType;

/// The corners of the unit cube in the order of a hexahedron, so that every kind has its vertices
/// among them: the pyramid with its apex over a corner, the wedge with its triangles left and
/// right.
std::vector<Vector> pointsOf(int vertexCount)
{
    switch (vertexCount) {
    case 3:
        return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    case 4:
        return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    case 5:
        return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}};
    case 6:
        return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
    default:
        return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    }
}

MeshEntity* addElement(Database& database, int dimension, const std::vector<int>& vertexIds,
                       ModelEntity* parent)
{
    MeshEntity* const element = MeshEntity::create(dimension);
    for (const int id : vertexIds) {
        element->addAdjacency(database.mesh()->entity(0, id));
    }
    database.mesh()->add(element);
    parent->addChild(element);
    return element;
}

ModelEntity* addModelEntity(Database& database, int dimension)
{
    ModelEntity* const entity = ModelEntity::create(dimension);
    database.model()->add(entity);
    return entity;
}

/// One element of a kind with all its sides on one model face; of a face in a planar model.
void fillWithElement(Database& database, const ElementTopology& kind)
{
    ModelEntity* const region = addModelEntity(database, kind.dimension);
    ModelEntity* const face = addModelEntity(database, kind.dimension - 1);
    ClosedCase::link(region, face);
    std::vector<int> ids;
    const bool isQuadrilateral = kind.dimension == 2 && kind.vertexCount == 4;
    std::vector<Vector> points = pointsOf(isQuadrilateral ? 8 : kind.vertexCount);
    points.resize(static_cast<std::size_t>(kind.vertexCount));
    for (const Vector& point : points) {
        auto* const vertex = new MeshVertex;
        vertex->setPoint(point);
        database.mesh()->add(vertex);
        ids.push_back(vertex->id());
    }
    addElement(database, kind.dimension, ids, region);
    for (const ElementTopology::Side& side : kind.sides) {
        std::vector<int> sideIds;
        for (const int index : side) {
            sideIds.push_back(ids[static_cast<std::size_t>(index)]);
        }
        addElement(database, kind.dimension - 1, sideIds, face);
    }
}

/// The tetrahedron of ClosedCase and one below it, each in its region, with the bottom between
/// them.
struct TwoRegions : ClosedCase
{
    TwoRegions(const QString& above, const QString& beneath)
    {
        below = addRegion();
        ModelFace* const underside = addFace();
        link(face, below);
        link(underside, below);
        addVertex(Vector(0, 0, -1));
        addElement(3, {1, 3, 2, 5}, below);
        addElement(2, {1, 3, 5}, underside);
        addElement(2, {3, 2, 5}, underside);
        addElement(2, {2, 1, 5}, underside);
        region->attributes().insert(T::MaterialType, above);
        below->attributes().insert(T::MaterialType, beneath);
        mesh()->setUpwardAdjacencies();
    }

    ModelRegion* below = nullptr;
};

} // namespace

/// \brief What a run of the tool cannot show: cases in memory, and sound cases of every kind.
class TestCaseVerifier : public QObject
{
    Q_OBJECT

private slots:
    void takesEveryKindOfElement_data()
    {
        QTest::addColumn<int>("index");
        const auto& kinds = ElementTopology::all();
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            if (kinds[i].dimension > 1) {
                QTest::newRow(kinds[i].name) << static_cast<int>(i);
            }
        }
    }

    void takesEveryKindOfElement()
    {
        QFETCH(int, index);
        Database database;
        fillWithElement(database, ElementTopology::all().at(static_cast<std::size_t>(index)));
        database.mesh()->setUpwardAdjacencies();
        expectNothing(database);
    }

    void takesAnEmptyCase()
    {
        Database database;
        expectNothing(database);
    }

    void takesAModelWithoutMesh()
    {
        ClosedCase closed;
        closed.mesh()->clear();
        const CaseFindings findings = verify(closed.database);
        QVERIFY(findings.isSound());
        QCOMPARE(linesOf(findings, FindingKind::NoElements),
                 QStringList("the mesh has no entities, though there are model regions"));
        QCOMPARE(findings.warningCount(), 1);
    }

    void takesSurfacesOfAnUnmeshedRegion()
    {
        ClosedCase closed;
        closed.mesh()->remove(closed.tetrahedron);
        closed.mesh()->setUpwardAdjacencies();
        expectNothing(closed.database);
    }

    void takesPlanarCases()
    {
        PlanarCase planar;
        planar.addElement(2, {1, 3, 4}, planar.faces[1]);
        planar.database.mesh()->setUpwardAdjacencies();
        expectNothing(planar.database);
    }

    void findsMixedOrientation()
    {
        PlanarCase planar;
        planar.addElement(2, {1, 4, 3}, planar.faces[1]);
        planar.database.mesh()->setUpwardAdjacencies();
        const CaseFindings findings = verify(planar.database);
        QVERIFY(findings.isSound());
        QCOMPARE(linesOf(findings, FindingKind::MixedOrientation),
                 QStringList("mesh face 1 at (0.666667, 0.333333, 0) runs the same way as mesh "
                             "face 2 along the mesh vertices 1, 3; their normals are opposed"));
        QCOMPARE(findings.warningCount(), 1);
    }

    /// Findings go by ids, and in their order, however far apart the ids lie.
    void findsElementsOfVerticesOfAnyIds()
    {
        Database database;
        ModelEntity* const region = addModelEntity(database, 3);
        const std::vector<int> ids = {7, 2000000000, 900000000, 3};
        for (std::size_t i = 0; i < ids.size(); ++i) {
            auto* const vertex = new MeshVertex;
            vertex->setPoint(pointsOf(4)[i]);
            vertex->setId(ids[i]);
            database.mesh()->add(vertex);
        }
        addElement(database, 3, ids, region);
        addElement(database, 3, ids, region);
        database.mesh()->setUpwardAdjacencies();
        const CaseFindings findings = verify(database);
        const QString name = QStringLiteral("mesh region %1 at (0.25, 0.25, 0.25) ");
        QCOMPARE(linesOf(findings, FindingKind::DuplicateElement),
                 QStringList(name.arg(2) + "has the same vertices as mesh region 1"));
        const QString overlap = name.arg(1) + "lies on the same side of the mesh vertices %1 as "
                                              "mesh region 2; the two overlap";
        QCOMPARE(linesOf(findings, FindingKind::OverlappingElements),
                 QStringList({overlap.arg("3, 7, 900000000"), overlap.arg("3, 7, 2000000000"),
                              overlap.arg("3, 900000000, 2000000000"),
                              overlap.arg("7, 900000000, 2000000000")}));
    }

    void findsPlanarSidesWithoutElement()
    {
        PlanarCase planar; // the second face has no element
        planar.addVertex(Vector(2, 0, 0));
        planar.addVertex(Vector(2, 1, 0));
        planar.addElement(1, {5, 6}, planar.edges[1]);
        planar.database.mesh()->setUpwardAdjacencies();
        const CaseFindings findings = verify(planar.database);
        QCOMPARE(findings.errorCount(), 1);
        QCOMPARE(findings.firstError(),
                 QString("mesh edge 6 at (2, 0.5, 0) is a side of no element, though its model "
                         "edge 2 bounds model face 1, which has a mesh"));
    }

    void takesWhatTheSolverPreparationLeaves_data()
    {
        QTest::addColumn<QString>("above");
        QTest::addColumn<QString>("below");
        QTest::addColumn<bool>("moves");
        QTest::newRow("split") << "fluid"
                               << "solid" << false;
        QTest::newRow("split towards a device") << "led_device"
                                                << "fluid" << false;
        QTest::newRow("replicated") << "solid"
                                    << "fluid" << true;
        QTest::newRow("peripheral") << "rotating_device"
                                    << "fluid" << false;
    }

    void takesWhatTheSolverPreparationLeaves()
    {
        QFETCH(QString, above);
        QFETCH(QString, below);
        QFETCH(bool, moves);
        TwoRegions two(above, below);
        if (above == "led_device") {
            two.mesh()->remove(two.tetrahedron);
            two.mesh()->clearUpwardAdjacencies();
            two.mesh()->setUpwardAdjacencies();
        }
        if (moves) {
            two.region->attributes().insert(T::MotionType, 1);
        }
        expectNothing(two.database);
        const int faces = two.model()->count(2);
        Solver solver(&two.database);
        solver.replicateMovingRegions();
        solver.splitFluidSolidFaces();
        solver.addPeripheralFaces();
        QVERIFY(two.model()->count(2) > faces);
        two.mesh()->clearUpwardAdjacencies();
        two.mesh()->setUpwardAdjacencies();
        expectNothing(two.database);
    }

    void takesWhatTheInterpolationLeaves()
    {
        ClosedCase closed;
        closed.mesh()->setUpwardAdjacencies();
        closed.face->attributes().insert(T::ExtrudedFace, closed.walls->id());
        expectNothing(closed.database);
        Solver(&closed.database).interpolateExtrudedFaces();
        QVERIFY(closed.vertex(4).contains(T::ExtrudedWeights));
        expectNothing(closed.database);
    }

    void findsDeadPointers_data()
    {
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("line");
        QTest::newRow("vertex of an element")
            << 0 << "mesh face 5 lists among its vertices one that is no longer there";
        QTest::newRow("element of a vertex")
            << 1 << "mesh vertex 1 lists among its regions one that is no longer there";
        QTest::newRow("parent") << 2
                                << "mesh face 5 stands on a model entity that is no longer there";
        QTest::newRow("model neighbour")
            << 3 << "model region 2 lists among its faces one that is no longer there";
    }

    void findsDeadPointers()
    {
        QFETCH(int, fault);
        QFETCH(QString, line);
        ClosedCase closed;
        closed.mesh()->setUpwardAdjacencies();
        ModelFace* const spare = closed.addFace();
        switch (fault) {
        case 0:
            closed.addVertex(Vector(2, 2, 2));
            closed.addElement(2, {1, 2, 5}, spare);
            closed.mesh()->remove(closed.mesh()->entity(0, 5));
            break;
        case 1: {
            MeshRegion stray; // gone at the end of this block, and not in the mesh ever
            closed.vertices[0]->addAdjacency(&stray);
            break;
        }
        case 2:
            closed.addElement(2, {1, 2, 3}, spare);
            closed.model()->remove(spare);
            break;
        default:
            closed.region->addAdjacency(spare);
            closed.model()->remove(spare);
        }
        const CaseFindings findings = verify(closed.database);
        QCOMPARE(linesOf(findings, FindingKind::DeadPointer), QStringList(line));
        QCOMPARE(findings.groups().size(), std::size_t(1));
        if (fault == 2) { // or the mesh would take leave of it
            closed.mesh()->entity(2, 5)->setParent(nullptr);
        }
    }

    void findsLostChildren()
    {
        ClosedCase closed;
        closed.mesh()->setUpwardAdjacencies();
        closed.bottom->setParent(closed.walls);
        QCOMPARE(linesOf(verify(closed.database), FindingKind::LostChild),
                 QStringList({"model face 3 has the child 1, which stands elsewhere",
                              "model face 3 has 1 child in its table, where 0 mesh entities of "
                              "its dimension stand on it",
                              "model face 4 has 3 children in its table, where 4 mesh entities of "
                              "its dimension stand on it"}));
        closed.bottom->setParent(closed.face);
    }

    void keepsToItsTopics()
    {
        ClosedCase closed;
        closed.mesh()->setUpwardAdjacencies();
        closed.addVertex(Vector(2, 2, 2));
        closed.region->removeAdjacency(closed.face);
        Progress progress;
        const CaseVerifier verifier(closed.database);
        const auto countOf = [&](CaseVerifier::Topics topics) {
            return verifier.verify(progress, topics).errorCount();
        };
        QCOMPARE(countOf(CaseVerifier::Elements), 1);
        QCOMPARE(countOf(CaseVerifier::ModelLinks), 1);
        QCOMPARE(countOf(CaseVerifier::Elements | CaseVerifier::ModelLinks), 2);
        QCOMPARE(countOf(CaseVerifier::Attributes | CaseVerifier::Surfaces), 0);
        QCOMPARE(countOf(CaseVerifier::AllTopics), 2);
    }

    void knowsTheTypesOfAttributes_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("accepted");
        const auto row = [](const char* tag, const QVariant& value, bool accepted) {
            QTest::addRow("%s %s", tag, value.typeName()) << QString(tag) << value << accepted;
        };
        row("material_id", 7, true);
        row("material_id", qint64(7), true);
        row("material_id", quint64(std::numeric_limits<quint64>::max()), false);
        row("material_id", 7.0, false);
        row("material_id", QStringLiteral("7"), false);
        row("material_id", QVariant(), false);
        row("is_shell", true, true);
        row("is_shell", 1, true);
        row("is_shell", 2u, false);
        row("is_shell", QStringLiteral("true"), false);
        row("visual_scale_factor", 0.5, true);
        row("visual_scale_factor", 2, true);
        row("visual_scale_factor", QStringLiteral("2"), false);
        row("material_type", QStringLiteral("fluid"), true);
        row("material_type", 1, false);
        row("hot_faces", QVariantList{1, 2}, true);
        row("hot_faces", 1, false);
        row("cold_faces", QVariantList{0.5}, false);
        row("periodic_weights", QVariantList{0.5, 1}, true);
        row("extruded_weights", QVariantList{QStringLiteral("1")}, false);
        row("periodic_origin", QVariant(Vector(1, 2, 3)), true);
        row("periodic_x_axis", QVariant(Matrix()), false);
        row("periodic_matrix", QVariant(Matrix()), true);
        row("mesh_size", QStringLiteral("fine"), true);
    }

    void knowsTheTypesOfAttributes()
    {
        QFETCH(QString, tag);
        QFETCH(QVariant, value);
        const AttributeType type = AttributeType::fromString(tag);
        QVERIFY(type.isValid());
        QTEST(AttributeRule::of(type).accepts(value), "accepted");
    }

private:
    static CaseFindings verify(const Database& database)
    {
        Progress progress;
        return CaseVerifier(database).verify(progress);
    }

    static QStringList linesOf(const CaseFindings& findings, FindingKind kind)
    {
        QStringList lines;
        const auto group = findings.groups().find(kind);
        if (group != findings.groups().end()) {
            for (const Finding& finding : group->second.first) {
                lines += finding.line();
            }
        }
        return lines;
    }

    static void expectNothing(const Database& database)
    {
        const CaseFindings findings = verify(database);
        QStringList lines;
        for (const auto& [kind, group] : findings.groups()) {
            lines += linesOf(findings, kind);
        }
        QCOMPARE(lines, QStringList());
    }
};

QTEST_APPLESS_MAIN(TestCaseVerifier)
#include "tst_CaseVerifier.moc"
