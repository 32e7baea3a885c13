#include "Matrix.h"
#include "SolverInputCase.h"

#include <QTest>

#include <utility>

using namespace Ovra::Geo;

namespace
{

struct PeriodicCase : SolverInputCase
{
    ModelEntity* region = modelEntity(3, 1);

    ModelEntity* periodicFace(int id, int pair, int side)
    {
        auto* entity = bounding(model().faceDimension(), id, {region});
        entity->attributes().insert(AttributeType::PeriodicPairId, pair);
        entity->attributes().insert(AttributeType::PeriodicSideId, side);
        return entity;
    }

    void tie(int nodeId, int type, int id, const QVariantList& weights = {})
    {
        setNodeAttribute(nodeId, AttributeType::PeriodicEntityType, type);
        setNodeAttribute(nodeId, AttributeType::PeriodicEntityId, id);
        setNodeAttribute(nodeId, AttributeType::PeriodicWeights, weights);
    }

    QString nodal() { return written(&GbiWriter::writePeriodicNodalData); }
    QString labelled() { return written(&GbiWriter::writeGmPeriodicData); }

    QString gatheredFaces()
    {
        return writtenAfter(&GbiWriter::writePeriodicNodalData, &GbiWriter::writePeriodicFaceList);
    }
};

// One tetrahedron between the periodic faces 10 (side A) and 20 (side B) of pair 1.
struct PairCase : PeriodicCase
{
    ModelEntity* faceA = periodicFace(10, 1, 1);
    ModelEntity* faceB = periodicFace(20, 1, 2);

    PairCase()
    {
        element(5, region, {1, 2, 3, 4});
        element(51, faceA, {1, 2, 3});
        element(52, faceB, {4, 3, 2});
        tie(1, 0, 4);
        tie(2, 2, 52, {0.5, 0.0, 0.5});
        tie(3, 2, 52, {0.25, 0.25, 0.5});
        tie(4, 2, 51, {1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0});
        complete();
    }
};

// A single node on faces whose pairs and sides are given as "pair side"; its status.
QString statusOn(const QList<std::pair<int, int>>& pairsAndSides)
{
    PeriodicCase c;
    int id = 10;
    for (const auto& [pair, side] : pairsAndSides) {
        c.element(100 + id, c.periodicFace(id, pair, side), {7});
        ++id;
    }
    c.tie(7, 0, 17);
    const QStringList lines = c.labelled().split(u'\n');
    return lines.value(4);
}

const QString NoTransform = QStringLiteral("0 0 0\n0 0 0\n0 0 0 0 0 0 0 0 0\n0 0 0 0 0 0 0 0 0\n");

QString emptyTopic(const QString& neighbours)
{
    return "--- nPeriodic ---\n0\n--- node_per_status ---\n0\n--- AFaceList ---\n0\n"
           "--- BFaceList ---\n0\n--- ANodeList ---\n0\n--- BNodeList ---\n0\n"
           "--- nMaxANabors ---\n" +
           neighbours + "\n--- nMaxBNabors ---\n" + neighbours +
           "\n--- ALinksCon and ALinksWht ---\n0\n--- BLinksCon and BLinksWht ---\n0\n"
           "--- Transform ---\n0\n" +
           NoTransform;
}

} // namespace

class TestGbiWriterPeriodic : public QObject
{
    Q_OBJECT

private slots:
    void withoutPeriodicFaces()
    {
        PeriodicCase c;
        c.face(2, {c.region});
        QCOMPARE(c.written(&GbiWriter::writePeriodicFaceList), QStringLiteral("0\n0\n"));
        QCOMPARE(c.nodal(), QStringLiteral("0\n0\n"));
        QCOMPARE(c.labelled(), emptyTopic("4"));
    }

    void planarModelHasTwoNeighbours()
    {
        SolverInputCase c;
        c.modelEntity(2, 1);
        QCOMPARE(c.written(&GbiWriter::writeGmPeriodicData), emptyTopic("2"));
    }

    void pairZeroIsNotPeriodic()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 0, 1), {1, 2, 3});
        QCOMPARE(c.labelled(), emptyTopic("4"));
    }

    void faceListGathersNothing()
    {
        PairCase c;
        QCOMPARE(c.written(&GbiWriter::writePeriodicFaceList), QStringLiteral("0\n0\n"));
    }

    void faceListAfterGathering()
    {
        PairCase c;
        QCOMPARE(c.gatheredFaces(), QStringLiteral("1\n5 3\n1\n5 0\n"));
    }

    void faceListAfterTheLabelledForm()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writeGmPeriodicData(stream);
        const qsizetype size = text.size();
        writer.writePeriodicFaceList(stream);
        QCOMPARE(text.mid(size), QStringLiteral("1\n5 3\n1\n5 0\n"));
    }

    void faceListIsSortedAndKeepsRepeats_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<QString>("text");
        QTest::newRow("A") << 1 << "5\n5 3\n5 3\n9 2\n9 3\n9 3\n0\n";
        QTest::newRow("B") << 2 << "0\n5\n5 3\n5 3\n9 2\n9 3\n9 3\n";
    }

    void faceListIsSortedAndKeepsRepeats()
    {
        QFETCH(int, side);
        QFETCH(QString, text);
        PeriodicCase c;
        c.element(9, c.region, {1, 2, 3, 4});
        c.element(5, c.region, {1, 2, 3, 5});
        c.element(51, c.periodicFace(10, 1, side), {1, 2, 3});
        c.element(52, c.periodicFace(11, 2, side), {1, 2, 4});
        c.element(53, c.periodicFace(12, 3, side), {3, 2, 1});
        for (int id = 1; id <= 4; ++id) {
            c.tie(id, 0, id);
        }
        c.complete();
        QCOMPARE(c.gatheredFaces(), text);
    }

    void nodalData()
    {
        PairCase c;
        QCOMPARE(c.nodal(), QStringLiteral("3\n"
                                           "1 1 1 4 1 \n"
                                           "2 3 2 2 4 0.5 0.5 \n"
                                           "3 3 3 2 3 4 0.5 0.25 0.25 \n"
                                           "3\n"
                                           "2 3 2 2 4 0.5 0.5 \n"
                                           "3 3 3 2 3 4 0.5 0.25 0.25 \n"
                                           "4 2 3 1 2 3 0.333333 0.333333 0.333333 \n"));
    }

    void nodalDataRestoresThePrecision()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(3);
        GbiWriter(&c.database).writePeriodicNodalData(stream);
        QVERIFY(text.contains("0.333333 "));
        QCOMPARE(stream.realNumberPrecision(), 3);
    }

    void nodalDataFollowsTheNotation()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberNotation(QTextStream::FixedNotation);
        GbiWriter(&c.database).writePeriodicNodalData(stream);
        QVERIFY(text.startsWith("3\n1 1 1 4 1.000000 \n"));
    }

    void nodalDataGathersOnce()
    {
        PairCase c;
        QString first;
        QString second;
        QTextStream firstStream(&first);
        QTextStream secondStream(&second);
        const GbiWriter writer(&c.database);
        writer.writePeriodicNodalData(firstStream);
        c.tie(1, 0, 99);
        c.element(60, c.periodicFace(30, 2, 1), {1, 2, 4});
        writer.writePeriodicNodalData(secondStream);
        QVERIFY(first.contains("1 1 1 4 1 \n"));
        QCOMPARE(second, first);
        QVERIFY(c.nodal().contains("1 5 1 99 1 \n"));
    }

    void bothFormsShareWhatWasGathered()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writeGmPeriodicData(stream);
        const QString labelled = std::exchange(text, QString());
        const QString nodal = c.nodal();
        c.faceA->attributes().insert(AttributeType::PeriodicPairId, 2);
        writer.writePeriodicNodalData(stream);
        QCOMPARE(std::exchange(text, QString()), nodal);
        writer.writeGmPeriodicData(stream);
        QCOMPARE(text, labelled);
    }

    void aFaceWithoutMeshMakesTheTopicGathered()
    {
        PeriodicCase c;
        auto* face = c.periodicFace(10, 1, 1);
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writePeriodicNodalData(stream);
        c.element(51, face, {3});
        c.tie(3, 0, 17);
        writer.writePeriodicNodalData(stream);
        QCOMPARE(text, QStringLiteral("0\n0\n0\n0\n"));
    }

    void anEmptyTopicIsLookedForAgain()
    {
        PeriodicCase c;
        c.element(51, c.face(10, {c.region}), {1, 2, 3});
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writePeriodicNodalData(stream);
        c.model().entity(2, 10)->attributes().insert(AttributeType::PeriodicPairId, 1);
        for (int id = 1; id <= 3; ++id) {
            c.tie(id, 0, 9);
        }
        writer.writePeriodicNodalData(stream);
        QCOMPARE(text, QStringLiteral("0\n0\n0\n3\n1 -2147483648 1 9 1 \n2 -2147483648 1 9 1 \n"
                                      "3 -2147483648 1 9 1 \n"));
    }

    void tiedToAVertexWithoutLookUp()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, 1), {3});
        c.tie(3, 0, 17, {0.25});
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 1 1 17 1 \n0\n"));
    }

    void weightsOfZeroOrLessAreLeftOut()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, 1), {3});
        c.element(60, c.face(40), {9, 8, 7, 6});
        c.tie(3, 2, 60, {0.75, -0.25, 0.0, 0.5});
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 1 2 6 9 0.5 0.75 \n0\n"));
    }

    void allWeightsLeftOut()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, 1), {3});
        c.element(60, c.face(40), {9, 8, 7});
        c.tie(3, 2, 60, {0.0, 0.0, -1.0});
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 1 0 \n0\n"));
    }

    void tiedToAnEdge()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, 1), {3});
        c.element(60, c.modelEntity(1, 40), {9, 8});
        c.tie(3, 1, 60, {0.25, 0.75});
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 1 2 8 9 0.75 0.25 \n0\n"));
    }

    void sidesOtherThanOneAreB()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, 3), {3});
        c.tie(3, 0, 17);
        QCOMPARE(c.nodal(), QStringLiteral("0\n1\n3 4 1 17 1 \n"));
    }

    void statusBits_data()
    {
        QTest::addColumn<int>("pair");
        QTest::addColumn<int>("side");
        QTest::addColumn<QString>("line");
        QTest::newRow("1 A") << 1 << 1 << "7 1";
        QTest::newRow("1 B") << 1 << 2 << "7 2";
        QTest::newRow("2 A") << 2 << 1 << "7 4";
        QTest::newRow("2 B") << 2 << 2 << "7 8";
        QTest::newRow("16 A") << 16 << 1 << "7 1073741824";
        QTest::newRow("16 B is bit 31") << 16 << 2 << "7 -2147483648";
        QTest::newRow("17 A wraps") << 17 << 1 << "7 1";
        QTest::newRow("1, no side, wraps") << 1 << 0 << "7 -2147483648";
    }

    void statusBits()
    {
        QFETCH(int, pair);
        QFETCH(int, side);
        QFETCH(QString, line);
        QCOMPARE(statusOn({{pair, side}}), line);
    }

    void statusOfANodeOnSeveralFaces()
    {
        QCOMPARE(statusOn({{1, 1}, {2, 1}}), QStringLiteral("7 5"));
        QCOMPARE(statusOn({{1, 1}, {1, 2}, {2, 2}}), QStringLiteral("7 11"));
        QCOMPARE(statusOn({{1, 1}, {17, 1}}), QStringLiteral("7 1"));
    }

    void aNodeOnTwoFacesOfASideStandsOnce_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<QString>("nodal");
        QTest::addColumn<QString>("lists");
        QTest::newRow("A") << 1 << "3\n3 1 1 13 1 \n4 4 1 14 1 \n7 5 1 17 1 \n0\n"
                           << "--- ANodeList ---\n3\n3 4 7 \n--- BNodeList ---\n0\n---";
        QTest::newRow("B") << 2 << "0\n3\n3 2 1 13 1 \n4 8 1 14 1 \n7 10 1 17 1 \n"
                           << "--- ANodeList ---\n0\n--- BNodeList ---\n3\n3 4 7 \n---";
    }

    void aNodeOnTwoFacesOfASideStandsOnce()
    {
        QFETCH(int, side);
        QFETCH(QString, nodal);
        QFETCH(QString, lists);
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, side), {7, 3});
        c.element(52, c.periodicFace(11, 2, side), {7, 4});
        c.tie(7, 0, 17);
        c.tie(3, 0, 13);
        c.tie(4, 0, 14);
        QCOMPARE(c.nodal(), nodal);
        QVERIFY(c.labelled().contains(lists));
    }

    void aNodeOnBothSidesStandsOnceInEach()
    {
        PeriodicCase c;
        c.element(51, c.periodicFace(10, 1, 1), {7});
        c.element(52, c.periodicFace(11, 1, 2), {7});
        c.tie(7, 0, 17);
        QCOMPARE(c.nodal(), QStringLiteral("1\n7 3 1 17 1 \n1\n7 3 1 17 1 \n"));
    }

    void labelledForm()
    {
        PairCase c;
        const QString expected = "--- nPeriodic ---\n2\n"
                                 "--- node_per_status ---\n4\n1 1\n2 3\n3 3\n4 2\n"
                                 "--- AFaceList ---\n1\n5 3\n"
                                 "--- BFaceList ---\n1\n5 0\n"
                                 "--- ANodeList ---\n3\n1 2 3 \n"
                                 "--- BNodeList ---\n3\n2 3 4 \n"
                                 "--- nMaxANabors ---\n4\n--- nMaxBNabors ---\n4\n"
                                 "--- ALinksCon and ALinksWht ---\n3\n"
                                 "1 1 4 1 \n2 2 2 4 0.5 0.5 \n3 3 2 3 4 0.5 0.25 0.25 \n"
                                 "--- BLinksCon and BLinksWht ---\n3\n"
                                 "2 2 2 4 0.5 0.5 \n3 3 2 3 4 0.5 0.25 0.25 \n"
                                 "4 3 1 2 3 0.333333 0.333333 0.333333 \n"
                                 "--- Transform ---\n1\n";
        QCOMPARE(c.labelled(), expected + NoTransform);
    }

    void labelledFormKeepsThePrecision()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(9);
        GbiWriter(&c.database).writeGmPeriodicData(stream);
        QVERIFY(text.contains("4 3 1 2 3 0.333333333 0.333333333 0.333333333 \n"));
        QCOMPARE(stream.realNumberPrecision(), 9);
    }

    void theTransformAndTheLabelledFormFlush()
    {
        PairCase c;
        QCOMPARE(c.arrived(&GbiWriter::writePeriodicTransform), NoTransform);
        QCOMPARE(c.arrived(&GbiWriter::writeGmPeriodicData), c.labelled());
        QCOMPARE(c.arrived(&GbiWriter::writePeriodicNodalData), QString());
        QCOMPARE(c.arrived(&GbiWriter::writePeriodicFaceList), QString());
    }

    void aNodeOfIdZeroFallsOutOfTheLists()
    {
        MeshVertex stray;
        stray.attributes().insert(AttributeType::PeriodicEntityType, 0);
        PeriodicCase c;
        MeshEntity* meshFace = c.element(51, c.periodicFace(10, 1, 1), {3});
        meshFace->addAdjacency(&stray);
        c.tie(3, 0, 17);
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 1 1 17 1 \n0\n"));
        const QString text = c.labelled();
        QVERIFY(text.contains("--- node_per_status ---\n2\n0 1\n3 1\n---"));
        QVERIFY(text.contains("--- ANodeList ---\n1\n3 \n---"));
    }

    void threeFacesAreOnePairInTheTransform()
    {
        PairCase c;
        c.periodicFace(30, 2, 1);
        const QString text = c.labelled();
        QVERIFY(text.startsWith("--- nPeriodic ---\n3\n"));
        QVERIFY(text.endsWith("--- Transform ---\n1\n" + NoTransform));
    }

    void nodeListsHaveTwentyIdsALine()
    {
        PeriodicCase c;
        auto* face = c.periodicFace(10, 1, 1);
        for (int id = 1; id <= 21; ++id) {
            c.element(100 + id, face, {id});
            c.tie(id, 0, id);
        }
        QVERIFY(c.labelled().contains("--- ANodeList ---\n21\n"
                                      "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20\n21 \n"
                                      "--- BNodeList ---\n0\n---"));
    }

    void planarModel()
    {
        SolverInputCase c;
        auto* region = c.modelEntity(2, 1);
        auto* edge = c.bounding(1, 10, {region});
        edge->attributes().insert(AttributeType::PeriodicPairId, 1);
        edge->attributes().insert(AttributeType::PeriodicSideId, 1);
        c.element(5, region, {1, 2, 3});
        c.element(51, edge, {3, 1});
        c.element(52, c.bounding(1, 11, {region}), {2, 3});
        c.setNodeAttribute(1, AttributeType::PeriodicEntityType, 0);
        c.setNodeAttribute(1, AttributeType::PeriodicEntityId, 2);
        c.setNodeAttribute(3, AttributeType::PeriodicEntityType, 1);
        c.setNodeAttribute(3, AttributeType::PeriodicEntityId, 52);
        c.setNodeAttribute(3, AttributeType::PeriodicWeights, QVariantList{0.25, 0.75});
        c.complete();
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writePeriodicNodalData(stream);
        writer.writePeriodicFaceList(stream);
        QCOMPARE(text, QStringLiteral("2\n1 1 1 2 1 \n3 1 2 2 3 0.25 0.75 \n0\n1\n5 2\n0\n"));
    }

    void transformByDefault()
    {
        SolverInputCase c;
        QCOMPARE(c.written(&GbiWriter::writePeriodicTransform), NoTransform);
    }

    void transform()
    {
        SolverInputCase c;
        AttributeMap& attributes = c.model().attributes();
        Matrix matrix;
        for (int i = 0; i < 9; ++i) {
            matrix(i / 3, i % 3) = 10 + i;
        }
        attributes.insert(AttributeType::PeriodicTranslation, Vector(1000, 0, -500));
        attributes.insert(AttributeType::PeriodicOrigin, Vector(100, 200, 300));
        attributes.insert(AttributeType::PeriodicXAxis, Vector(1, 2, 3));
        attributes.insert(AttributeType::PeriodicYAxis, Vector(4, 5, 6));
        attributes.insert(AttributeType::PeriodicZAxis, Vector(7, 8, 9));
        attributes.insert(AttributeType::PeriodicMatrix, matrix);
        attributes.insert(AttributeType::VisualScaleFactor, 0.001);
        QCOMPARE(c.written(&GbiWriter::writePeriodicTransform),
                 QStringLiteral("1 0 -0.5\n100 200 300\n1 2 3 4 5 6 7 8 9\n"
                                "10 11 12 13 14 15 16 17 18\n"));
    }

    void transformIsNotScaledByDefault()
    {
        SolverInputCase c;
        c.model().attributes().insert(AttributeType::PeriodicTranslation, Vector(1000, 0, 0));
        QVERIFY(c.written(&GbiWriter::writePeriodicTransform).startsWith("1000 0 0\n"));
    }

    void transformKeepsTheStreamsPrecision()
    {
        SolverInputCase c;
        c.model().attributes().insert(AttributeType::PeriodicOrigin, Vector(1.0 / 3.0, 0, 0));
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(9);
        GbiWriter(&c.database).writePeriodicTransform(stream);
        QVERIFY(text.startsWith("0 0 0\n0.333333333 0 0\n"));
        QCOMPARE(stream.realNumberPrecision(), 9);
    }

    void copiesKeepTheirOwnCaches()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        const GbiWriter fresh(&c.database);
        GbiWriter gathered(fresh);
        gathered.writePeriodicNodalData(stream);
        const GbiWriter copy(gathered);
        stream.flush();
        text.clear();
        fresh.writePeriodicFaceList(stream);
        copy.writePeriodicFaceList(stream);
        QCOMPARE(text, QStringLiteral("0\n0\n1\n5 3\n1\n5 0\n"));
    }
};

QTEST_APPLESS_MAIN(TestGbiWriterPeriodic)
#include "tst_GbiWriterPeriodic.moc"
