#include "SolverInputCase.h"

#include <QLocale>
#include <QTest>

using namespace Ovra::Geo;

namespace
{

ModelFace* asFace(ModelEntity* entity)
{
    return static_cast<ModelFace*>(entity);
}

QString part(SolverInputCase& c, double scale = 1.0)
{
    return c.written(&GbiWriter::writePartSurfaces, scale);
}

QString surface(SolverInputCase& c, double scale = 1.0)
{
    return c.written(&GbiWriter::writeSurfaceConnectivity, scale);
}

// The connectivity lines of a text with one surface, that is the lines behind the node list.
QStringList connectivity(const QString& text, int nodeLines)
{
    QStringList lines = text.split(u'\n').mid(2 + nodeLines);
    return lines.mid(0, lines.size() - 2);
}

// Two tetrahedra, 4 and 11, back to back at a shell: the vertices 1, 2 and 3 of element 4 have the
// partners 11, 12 and 13 in element 11.
struct ShellCase : SolverInputCase
{
    ModelEntity* region = modelEntity(3, 1);
    ModelEntity* far = modelEntity(3, 2);
    ModelEntity* surfaceFace = face(6, {region});

    ShellCase()
    {
        element(4, region, {1, 2, 3, 5});
        element(11, far, {11, 12, 13, 15});
        element(50, surfaceFace, {3, 1, 2});
    }

    void pair(int nodeId, int partner)
    {
        setNodeAttribute(nodeId, AttributeType::ShellVertex, partner);
    }

    QString line()
    {
        complete();
        return connectivity(surface(*this), 1).join(u'|');
    }
};

} // namespace

class TestGbiWriterSurfaces : public QObject
{
    Q_OBJECT

private slots:
    void emptyModelIsTheTerminatorAlone()
    {
        SolverInputCase c;
        QCOMPARE(part(c), QStringLiteral("-1\n"));
        QCOMPARE(surface(c), QStringLiteral("-1\n"));
    }

    void partIds_data()
    {
        QTest::addColumn<int>("faces");
        QTest::addColumn<QString>("list");
        const QString full = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20\n";
        QTest::newRow("none") << 0 << "";
        QTest::newRow("one") << 1 << "1 \n";
        QTest::newRow("19") << 19 << full.left(full.size() - 3) + "\n";
        QTest::newRow("20") << 20 << full;
        QTest::newRow("21") << 21 << full + "21 \n";
    }

    void partIds()
    {
        QFETCH(int, faces);
        QFETCH(QString, list);
        SolverInputCase c;
        auto* region = c.region(4, "Case");
        for (int id = faces; id >= 1; --id) {
            c.face(id, {region});
        }
        QCOMPARE(part(c), QStringLiteral("4 %1 Case\n0 0 0\n%2-1\n").arg(faces).arg(list));
    }

    void partFacesThatStandTwiceAreWrittenTwice()
    {
        SolverInputCase c;
        auto* region = c.region(4, "Case");
        auto* face = c.face(9, {region});
        c.face(3, {region});
        region->addAdjacency(face);
        QCOMPARE(part(c), QStringLiteral("4 3 Case\n0 0 0\n3 9 9 \n-1\n"));
    }

    void partCentroidIsScaled()
    {
        SolverInputCase c;
        auto* region = static_cast<ModelRegion*>(c.region(4, "The left half"));
        region->setCentroid(Vector(1000, -1000.0 / 3.0, 0));
        QCOMPARE(part(c, 0.001), QStringLiteral("4 0 The left half\n1 -0.333333333333333 0\n-1\n"));
    }

    void partWithoutName()
    {
        SolverInputCase c;
        c.region(4);
        QCOMPARE(part(c), QStringLiteral("4 0 \n0 0 0\n-1\n"));
    }

    void partsOfAPlanarModel()
    {
        SolverInputCase c;
        auto* region = c.modelEntity(2, 4, "Plate");
        asFace(region)->setCentroid(Vector(1, 2, 0));
        c.bounding(1, 8, {region});
        c.bounding(1, 7, {region});
        QCOMPARE(part(c), QStringLiteral("4 2 Plate\n1 2 0\n7 8 \n-1\n"));
    }

    void severalParts()
    {
        SolverInputCase c;
        auto* a = c.region(1, "A");
        auto* b = c.region(2, "B");
        c.face(5, {a, b});
        const QString text = part(c);
        const QString partA = "1 1 A\n0 0 0\n5 \n";
        const QString partB = "2 1 B\n0 0 0\n5 \n";
        QVERIFY(text == partA + partB + "-1\n" || text == partB + partA + "-1\n");
    }

    void precisionIsRestored()
    {
        SolverInputCase c;
        c.element(1, c.face(3, {c.region(4)}), {1, 2, 3});
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(2);
        GbiWriter(&c.database).writePartSurfaces(stream, 1.0);
        QCOMPARE(stream.realNumberPrecision(), 2);
        GbiWriter(&c.database).writeSurfaceConnectivity(stream, 1.0);
        QCOMPARE(stream.realNumberPrecision(), 2);
    }

    void notationIsTheHosts()
    {
        SolverInputCase c;
        auto* region = static_cast<ModelRegion*>(c.region(4, "P"));
        region->setCentroid(Vector(0.5, 0, 0));
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberNotation(QTextStream::FixedNotation);
        GbiWriter(&c.database).writePartSurfaces(stream, 1.0);
        QCOMPARE(text, QStringLiteral(
                           "4 0 P\n0.500000000000000 0.000000000000000 0.000000000000000\n-1\n"));
    }

    void faceWithoutRegionWritesNothing()
    {
        SolverInputCase c;
        c.region(1);
        c.element(1, c.face(3), {1, 2, 3});
        QCOMPARE(surface(c), QStringLiteral("-1\n"));
    }

    void faceWithoutMeshWritesItsHeader()
    {
        SolverInputCase c;
        auto* face = c.face(3, {c.region(9)});
        face->setName("Inlet");
        asFace(face)->setCentroid(Vector(10, 20, 30));
        asFace(face)->setNormal(Vector(0, 0, -1));
        QCOMPARE(surface(c, 0.1), QStringLiteral("3 9 0 0 Inlet\n1 2 3 0 0 -1\n-1\n"));
    }

    void headerNamesTheFirstRegion()
    {
        SolverInputCase c;
        auto* first = c.region(9);
        auto* second = c.region(2);
        c.face(3, {first, second});
        QCOMPARE(surface(c), QStringLiteral("3 9 0 0 \n0 0 0 0 0 0\n-1\n"));
    }

    void normalIsNotScaled()
    {
        SolverInputCase c;
        auto* face = asFace(c.face(3, {c.region(9)}));
        face->setCentroid(Vector(1, 1, 1));
        face->setNormal(Vector(1.0 / 3.0, 2, 4));
        QCOMPARE(surface(c, 1000.0),
                 QStringLiteral("3 9 0 0 \n1000 1000 1000 0.333333333333333 2 4\n-1\n"));
    }

    void nodesStandFiveInALine_data()
    {
        QTest::addColumn<QList<int>>("triangle");
        QTest::addColumn<QString>("list");
        QTest::newRow("four") << QList<int>{1, 2, 4} << "4\n1 2 3 4 \n";
        QTest::newRow("five") << QList<int>{1, 5, 4} << "5\n1 2 3 4 5\n";
        QTest::newRow("six") << QList<int>{6, 5, 4} << "6\n1 2 3 4 5\n6 \n";
    }

    void nodesStandFiveInALine()
    {
        QFETCH(QList<int>, triangle);
        QFETCH(QString, list);
        SolverInputCase c;
        auto* face = c.face(3, {c.region(9)});
        face->setName("");
        c.element(20, face, {3, 2, 1});
        c.element(21, face, triangle);
        const QStringList parts = list.split(u'\n');
        const QString text = surface(c);
        QVERIFY(text.startsWith("3 9 2 " + parts.first() + " \n0 0 0 0 0 0\n" +
                                parts.mid(1).join(u'\n') + "0 "));
    }

    void sevenNodes()
    {
        SolverInputCase c;
        auto* face = c.face(3, {c.region(9)});
        c.element(20, face, {17, 12, 11, 14});
        c.element(21, face, {16, 15, 13});
        const QString text = surface(c);
        QVERIFY2(text.startsWith("3 9 2 7 \n0 0 0 0 0 0\n11 12 13 14 15\n16 17 \n0 "),
                 qPrintable(text));
    }

    void meshFaceBetweenTwoElements()
    {
        SolverInputCase c;
        auto* a = c.region(1);
        auto* b = c.region(2);
        c.element(9, a, {1, 2, 3, 5});
        c.element(4, b, {1, 3, 2, 6});
        c.element(50, c.face(3, {a, b}), {3, 1, 2});
        c.complete();
        QCOMPARE(surface(c), QStringLiteral("3 1 1 3 \n0 0 0 0 0 0\n1 2 3 \n4 3 1 2 9\n-1\n"));
    }

    void meshFaceWithOneElement()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(4, region, {1, 2, 3, 5});
        c.element(50, c.face(3, {region}), {3, 1, 2});
        c.complete();
        QCOMPARE(surface(c), QStringLiteral("3 1 1 3 \n0 0 0 0 0 0\n1 2 3 \n4 3 1 2 0\n-1\n"));
    }

    void meshFaceWithoutElement()
    {
        SolverInputCase c;
        c.element(50, c.face(3, {c.region(1)}), {3, 1, 2});
        QCOMPARE(surface(c), QStringLiteral("3 1 1 3 \n0 0 0 0 0 0\n1 2 3 \n0 3 1 2 0\n-1\n"));
    }

    void linesAscendByTheirFirstElement()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(30, region, {1, 2, 3, 4});
        c.element(7, region, {1, 2, 3, 5});
        c.element(100, region, {1, 2, 3, 6});
        auto* face = c.face(3, {region});
        c.element(1, face, {1, 2, 4});
        c.element(2, face, {1, 2, 5});
        c.element(3, face, {1, 2, 6});
        c.complete();
        QCOMPARE(connectivity(surface(c), 1),
                 (QStringList{"7 1 2 5 0", "30 1 2 4 0", "100 1 2 6 0"}));
    }

    void manyLinesAscendByTheirFirstElement()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        auto* face = c.face(3, {region});
        QStringList expected;
        for (int i = 1; i <= 30; ++i) {
            const int id = i * 7 % 31; // each of 1 to 30 once, in no order
            const int apex = 100 + id;
            c.element(id, region, {1, 2, 3, apex});
            c.element(200 + i, face, {1, 2, apex});
        }
        for (int id = 1; id <= 30; ++id) {
            expected += QStringLiteral("%1 1 2 %2 0").arg(id).arg(100 + id);
        }
        c.complete();
        QCOMPARE(connectivity(surface(c), 7), expected);
    }

    void severalSurfacesStandOneBehindTheOther()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(4, region, {1, 2, 3, 5});
        c.element(50, c.face(3, {region}), {3, 1, 2});
        c.element(51, c.face(6, {region}), {1, 2, 5});
        c.complete();
        const QString first = "3 1 1 3 \n0 0 0 0 0 0\n1 2 3 \n4 3 1 2 0\n";
        const QString second = "6 1 1 3 \n0 0 0 0 0 0\n1 2 5 \n4 1 2 5 0\n";
        const QString text = surface(c);
        QVERIFY2(text == first + second + "-1\n" || text == second + first + "-1\n",
                 qPrintable(text));
    }

    void ofTwoLinesOfOneElementTheLaterFoundIsFirst()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(4, region, {1, 2, 3, 4});
        auto* face = c.face(3, {region});
        c.element(10, face, {1, 2, 3});
        c.element(11, face, {2, 3, 4});
        c.element(12, face, {3, 4, 1});
        c.complete();
        QStringList expected;
        for (auto walk = face->childIterator(); walk.hasNext();) {
            walk.next();
            const MeshEntity* child = walk.value();
            expected.prepend(QStringLiteral("4 %1 %2 %3 0")
                                 .arg(child->adjacencyAt(0, 0)->id())
                                 .arg(child->adjacencyAt(0, 1)->id())
                                 .arg(child->adjacencyAt(0, 2)->id()));
        }
        QCOMPARE(connectivity(surface(c), 1), expected);
    }

    void faceMadeByExtrusionGoesUnderAnotherFacesName()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        auto* origin = asFace(c.face(8)); // without region, so that it has no block of its own
        origin->setName("Origin");
        origin->setCentroid(Vector(1, 2, 3));
        origin->setNormal(Vector(0, 1, 0));
        auto* face = c.face(3, {region});
        face->setName("Made");
        asFace(face)->setCentroid(Vector(9, 9, 9));
        face->attributes().insert(AttributeType::NonExtrudedFace, 8);
        c.element(4, region, {1, 2, 3, 5});
        c.element(50, face, {3, 1, 2});
        c.complete();
        QCOMPARE(surface(c, 2.0),
                 QStringLiteral("3 1 1 3 Origin\n2 4 6 0 1 0\n1 2 3 \n4 3 1 2 0\n-1\n"));
    }

    void nonExtrudedFaceZeroIsNone()
    {
        SolverInputCase c;
        auto* face = c.face(3, {c.region(9)});
        face->setName("Own");
        face->attributes().insert(AttributeType::NonExtrudedFace, 0);
        QCOMPARE(surface(c), QStringLiteral("3 9 0 0 Own\n0 0 0 0 0 0\n-1\n"));
    }

    void nonExtrudedFaceOfAPlanarModelIsAnEdge()
    {
        SolverInputCase c;
        auto* region = c.modelEntity(2, 1, "Plate");
        c.modelEntity(1, 8, "Origin");
        c.modelEntity(2, 8, "Other plate");
        auto* edge = c.bounding(1, 7, {region});
        edge->attributes().insert(AttributeType::NonExtrudedFace, 8);
        QCOMPARE(surface(c), QStringLiteral("7 1 0 0 Origin\n0 0 0 0 0 0\n-1\n"));
    }

    void shellIsCrossed()
    {
        ShellCase c;
        c.pair(1, 11);
        c.pair(2, 12);
        c.pair(3, 13);
        QCOMPARE(c.line(), QStringLiteral("4 3 1 2 -11 13 11 12 "));
    }

    void vertexWithoutPartnerStandsForItself()
    {
        ShellCase c;
        c.pair(1, 11);
        c.pair(3, 13);
        c.element(12, c.far, {2, 11, 13, 15});
        QCOMPARE(c.line(), QStringLiteral("4 3 1 2 -12 13 11 2 "));
    }

    void noElementHoldsAllPartners()
    {
        ShellCase c;
        c.pair(1, 11);
        c.pair(2, 12);
        QCOMPARE(c.line(), QStringLiteral("4 3 1 2 0"));
    }

    void severalElementsHoldAllPartners()
    {
        ShellCase c;
        c.pair(1, 11);
        c.pair(2, 12);
        c.pair(3, 13);
        c.element(12, c.far, {11, 12, 13, 16});
        QCOMPARE(c.line(), QStringLiteral("4 3 1 2 0"));
    }

    void shellSurfaceIsNotMapped_data()
    {
        QTest::addColumn<bool>("isShell");
        QTest::addColumn<QString>("line");
        QTest::newRow("true") << true << "4 3 1 2 0";
        QTest::newRow("false") << false << "4 3 1 2 -11 13 11 12 ";
    }

    void shellSurfaceIsNotMapped()
    {
        QFETCH(bool, isShell);
        QFETCH(QString, line);
        ShellCase c;
        c.surfaceFace->attributes().insert(AttributeType::IsShell, isShell);
        c.pair(1, 11);
        c.pair(2, 12);
        c.pair(3, 13);
        QCOMPARE(c.line(), line);
    }

    void meshFaceWithTwoElementsIsNotMapped()
    {
        ShellCase c;
        c.pair(1, 11);
        c.pair(2, 12);
        c.pair(3, 13);
        c.element(2, c.region, {1, 2, 3, 6});
        QCOMPARE(c.line(), QStringLiteral("2 3 1 2 4"));
    }

    void meshFaceWithoutElementGetsThePartners()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(11, region, {11, 12, 13, 15});
        c.element(50, c.face(6, {region}), {3, 1, 2});
        c.setNodeAttribute(1, AttributeType::ShellVertex, 11);
        c.setNodeAttribute(2, AttributeType::ShellVertex, 12);
        c.setNodeAttribute(3, AttributeType::ShellVertex, 13);
        c.complete();
        QCOMPARE(connectivity(surface(c), 1), QStringList{"11 13 11 12 0"});
    }

    void meshFaceWithoutElementOnEitherSide()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(11, region, {11, 12, 14, 15});
        c.element(50, c.face(6, {region}), {3, 1, 2});
        c.node(13);
        c.setNodeAttribute(1, AttributeType::ShellVertex, 11);
        c.setNodeAttribute(3, AttributeType::ShellVertex, 13);
        c.complete();
        QCOMPARE(connectivity(surface(c), 1), QStringList{"0 13 11 2 0"});
    }

    void planarModel()
    {
        SolverInputCase c;
        auto* region = c.modelEntity(2, 1);
        auto* edge = static_cast<ModelEdge*>(c.bounding(1, 7, {region}));
        edge->setName("Wall");
        edge->setCentroid(Vector(0.5, 0, 0));
        edge->setNormal(Vector(0, -1, 0));
        c.element(4, region, {1, 2, 3});
        c.element(50, edge, {2, 1});
        c.complete();
        QCOMPARE(surface(c), QStringLiteral("7 1 1 2 Wall\n0.5 0 0 0 -1 0\n1 2 \n4 2 1 0\n-1\n"));
    }

    void planarShellIsCrossed()
    {
        SolverInputCase c;
        auto* region = c.modelEntity(2, 1);
        c.element(4, region, {1, 2, 3});
        c.element(5, region, {11, 12, 13});
        c.element(50, c.bounding(1, 7, {region}), {2, 1});
        c.setNodeAttribute(1, AttributeType::ShellVertex, 11);
        c.setNodeAttribute(2, AttributeType::ShellVertex, 12);
        c.complete();
        QCOMPARE(connectivity(surface(c), 1), QStringList{"4 2 1 -5 12 11 "});
    }

    void connectivityLinesIgnoreTheStreamsSettings()
    {
        SolverInputCase c;
        auto* region = c.region(1);
        c.element(4000, region, {1001, 1002, 1003, 5});
        c.element(50, c.face(3, {region}), {1003, 1001, 1002});
        c.complete();
        QString text;
        QTextStream stream(&text);
        stream.setLocale(QLocale(QLocale::German, QLocale::Germany));
        GbiWriter(&c.database).writeSurfaceConnectivity(stream, 1.0);
        QCOMPARE(text, QStringLiteral("3 1 1 3 \n0 0 0 0 0 0\n1.001 1.002 1.003 \n"
                                      "4000 1003 1001 1002 0\n-1\n"));
    }
};

QTEST_APPLESS_MAIN(TestGbiWriterSurfaces)
#include "tst_GbiWriterSurfaces.moc"
