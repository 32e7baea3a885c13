#include "ElementFaceData.h"
#include "InterpolationData.h"
#include "LinkData.h"
#include "MeshEntityPair.h"
#include "PeriodicTransform.h"
#include "TestMesh.h"

#include <QSet>
#include <QTest>

#include <array>
#include <limits>

using namespace Ovra::Geo;

namespace
{

ElementFaceData faceData(int element, int face, bool interface = false)
{
    ElementFaceData data;
    data.elementId_ = element;
    data.localFace_ = face;
    data.fluidInterface_ = interface;
    return data;
}

MeshEntityPair pairOf(MeshEntity& first, MeshEntity& second)
{
    MeshEntityPair pair;
    pair.first_ = &first;
    pair.second_ = &second;
    return pair;
}

/// A quarter turn about the line through (1, 2, 0) along z, in a frame that is not that of space: x
/// goes to y.
PeriodicTransform quarterTurn()
{
    PeriodicTransform transform;
    transform.origin = Vector(1, 2, 0);
    transform.xAxis = Vector(0, 1, 0);
    transform.yAxis = Vector(-1, 0, 0);
    transform.zAxis = Vector(0, 0, 1);
    transform.matrix(0, 1) = -1.0;
    transform.matrix(1, 0) = 1.0;
    transform.matrix(2, 2) = 1.0;
    return transform;
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void anElementFaceStartsAsNone()
    {
        const ElementFaceData data;
        QCOMPARE(data.elementId_, 0);
        QCOMPARE(data.localFace_, -1);
        QCOMPARE(data.fluidInterface_, false);
    }

    void elementFacesCompareWithoutTheInterface()
    {
        QVERIFY(faceData(3, 2, true) == faceData(3, 2, false));
        QVERIFY(!(faceData(3, 2) == faceData(3, 1)));
        QVERIFY(!(faceData(3, 2) == faceData(4, 2)));
        QVERIFY(!(faceData(3, 2, false) < faceData(3, 2, true)));
        QVERIFY(!(faceData(3, 2, true) < faceData(3, 2, false)));
    }

    void elementFacesAreOrderedByElementThenFace()
    {
        QVERIFY(faceData(3, 5) < faceData(4, 0));
        QVERIFY(!(faceData(4, 0) < faceData(3, 5)));
        QVERIFY(faceData(3, 1) < faceData(3, 2));
        QVERIFY(!(faceData(3, 2) < faceData(3, 1)));
        QVERIFY(faceData(-1, 0) < faceData(0, -1));
        QVERIFY(faceData(0, -1) < faceData(0, 0));
    }

    void elementFacesHashByTheirNumber_data()
    {
        QTest::addColumn<int>("element");
        QTest::addColumn<int>("face");
        QTest::addColumn<qint64>("number");
        QTest::newRow("ordinary") << 5 << 3 << qint64(43);
        QTest::newRow("none") << 0 << -1 << qint64(-1);
        QTest::newRow("zero") << 0 << 0 << qint64(0);
        QTest::newRow("negative") << -2 << 1 << qint64(-15);
        QTest::newRow("wraps") << 0x20000001 << 1 << qint64(9);
    }

    void elementFacesHashByTheirNumber()
    {
        QFETCH(int, element);
        QFETCH(int, face);
        QFETCH(qint64, number);
        QCOMPARE(qHash(faceData(element, face)), static_cast<uint>(::qHash(number, 0)));
        QCOMPARE(qHash(faceData(element, face, true)), qHash(faceData(element, face)));
    }

    void elementFacesGoIntoHashedContainers()
    {
        const QSet<ElementFaceData> set = {faceData(1, 2), faceData(1, 2, true), faceData(1, 3)};
        QCOMPARE(set.size(), 2);
        QVERIFY(set.contains(faceData(1, 3, true)));
    }

    void aLinkStartsClear()
    {
        const LinkData data;
        QCOMPARE(data.nodeId_, 0);
        QCOMPARE(data.linkCount_, 0);
        for (size_t i = 0; i < 4; ++i) {
            QCOMPARE(data.linkIds_[i], 0);
            QCOMPARE(data.linkWeights_[i], 0.0);
        }
    }

    void linksCompareByNodeAlone()
    {
        LinkData a;
        LinkData b;
        a.nodeId_ = 4;
        b.nodeId_ = 4;
        b.linkCount_ = 2;
        QVERIFY(a == b);
        QVERIFY(!(a < b));
        b.nodeId_ = 5;
        QVERIFY(!(a == b));
        QVERIFY(a < b);
        a.nodeId_ = -6;
        QVERIFY(a < b);
        QVERIFY(!(b < a));
    }

    void linksHashByNode()
    {
        for (int id : {0, 1, 77, -3, std::numeric_limits<int>::max()}) {
            LinkData data;
            data.nodeId_ = id;
            QCOMPARE(qHash(data), static_cast<uint>(::qHash(qint64(id), 0)));
        }
    }

    void sortsLinksById_data()
    {
        using Ids = std::array<int, 4>;
        using Weights = std::array<double, 4>;
        QTest::addColumn<int>("count");
        QTest::addColumn<Ids>("ids");
        QTest::addColumn<Weights>("weights");
        QTest::addColumn<Ids>("sortedIds");
        QTest::addColumn<Weights>("sortedWeights");
        const Ids ids = {7, 3, 5, 1};
        const Weights weights = {0.1, 0.2, 0.7, 0.9};
        QTest::newRow("none") << 0 << ids << weights << ids << weights;
        QTest::newRow("one") << 1 << ids << weights << ids << weights;
        QTest::newRow("two") << 2 << ids << weights << Ids{3, 7, 5, 1}
                             << Weights{0.2, 0.1, 0.7, 0.9};
        QTest::newRow("three") << 3 << ids << weights << Ids{3, 5, 7, 1}
                               << Weights{0.2, 0.7, 0.1, 0.9};
        QTest::newRow("four") << 4 << ids << weights << Ids{1, 3, 5, 7}
                              << Weights{0.9, 0.2, 0.7, 0.1};
        QTest::newRow("equal ids keep their order")
            << 4 << Ids{5, 2, 5, 2} << weights << Ids{2, 2, 5, 5} << Weights{0.2, 0.9, 0.1, 0.7};
    }

    void sortsLinksById()
    {
        using Ids = std::array<int, 4>;
        using Weights = std::array<double, 4>;
        QFETCH(int, count);
        QFETCH(Ids, ids);
        QFETCH(Weights, weights);
        QFETCH(Ids, sortedIds);
        QFETCH(Weights, sortedWeights);
        LinkData data;
        data.nodeId_ = 12;
        data.linkCount_ = count;
        data.linkIds_ = ids;
        data.linkWeights_ = weights;
        data.sort();
        QCOMPARE(data.nodeId_, 12);
        QCOMPARE(data.linkCount_, count);
        QVERIFY(data.linkIds_ == sortedIds);
        QVERIFY(data.linkWeights_ == sortedWeights);
    }

    void aPairStartsEmpty()
    {
        const MeshEntityPair pair;
        QCOMPARE(pair.first_, nullptr);
        QCOMPARE(pair.second_, nullptr);
    }

    void thePairsOrderDoesNotCount()
    {
        MeshVertex a;
        MeshVertex b;
        MeshVertex c;
        a.setId(1);
        b.setId(2);
        c.setId(3);
        QVERIFY(pairOf(a, b) == pairOf(b, a));
        QVERIFY(pairOf(a, b) == pairOf(a, b));
        QVERIFY(!(pairOf(a, b) == pairOf(a, c)));
        QVERIFY(!(pairOf(a, b) == pairOf(a, a)));
        QCOMPARE(pairOf(a, b).smallest(), &a);
        QCOMPARE(pairOf(b, a).smallest(), &a);
    }

    void pairsCompareTheirSmallestAlone()
    {
        MeshVertex a;
        MeshVertex b;
        MeshVertex c;
        a.setId(1);
        b.setId(2);
        c.setId(3);
        QVERIFY(pairOf(c, a) < pairOf(b, c));
        QVERIFY(!(pairOf(b, c) < pairOf(c, a)));
        QVERIFY(!(pairOf(a, b) < pairOf(c, a)));
        QVERIFY(!(pairOf(c, a) < pairOf(a, b)));
    }

    void thePairsEntitiesCompareByValue()
    {
        MeshVertex vertex;
        MeshVertex twin;
        MeshEdge edge;
        for (MeshEntity* entity : QList<MeshEntity*>{&vertex, &twin, &edge}) {
            entity->setId(4);
        }
        QCOMPARE(pairOf(vertex, twin).smallest(), &twin);
        QVERIFY(pairOf(vertex, vertex) == pairOf(twin, twin));
        QVERIFY(!(pairOf(vertex, vertex) == pairOf(edge, edge)));
        QVERIFY(!(pairOf(vertex, vertex) < pairOf(edge, edge)));
    }

    void aPlaceStartsUnset()
    {
        const InterpolationData data;
        QCOMPARE(data.entityType, -1);
        QCOMPARE(data.entityId, 0);
        QVERIFY(data.weights.isEmpty());
    }

    void thePlacesWeightsAreDoubles()
    {
        InterpolationData data;
        data.entityType = 2;
        data.weights = {0.5, 0.0, 0.5};
        QCOMPARE(data.weightList(), QVariantList({0.5, 0.0, 0.5}));
        for (const QVariant& weight : data.weightList()) {
            QCOMPARE(weight.typeId(), static_cast<int>(QMetaType::Double));
        }
    }

    void aPlaceOnAVertexHasTheWeightOne()
    {
        InterpolationData data;
        data.entityType = 0;
        QCOMPARE(data.weightList(), QVariantList{QVariant(1.0)});
        data.weights = {0.25, 0.75};
        QCOMPARE(data.weightList(), QVariantList{QVariant(1.0)});
        QCOMPARE(data.weightList().constFirst().typeId(), static_cast<int>(QMetaType::Double));
    }

    void aTransformStartsAsZeroAndTakesEveryPointToZero()
    {
        const PeriodicTransform transform;
        for (const Vector& vector : {transform.origin, transform.translation, transform.xAxis,
                                     transform.yAxis, transform.zAxis}) {
            QCOMPARE(vector, Vector());
        }
        for (int i = 0; i < 9; ++i) {
            QCOMPARE(transform.matrix(i / 3, i % 3), 0.0);
        }
        QCOMPARE(transform.map(Vector(1, 2, 3)), Vector());
    }

    void aTranslationThatIsNotExactlyZeroExcludesTheRotation()
    {
        PeriodicTransform transform = quarterTurn();
        QCOMPARE(transform.map(Vector(3, 2, 5)), Vector(1, 4, 5));
        transform.translation = Vector(0, 0, 1e-300);
        QCOMPARE(transform.map(Vector(3, 2, 5)), Vector(3, 2, 5));
        transform.translation = Vector(1, -2, 4);
        QCOMPARE(transform.map(Vector(3, 2, 5)), Vector(4, 0, 9));
    }

    void theInverseLeadsBack()
    {
        PeriodicTransform transform = quarterTurn();
        QCOMPARE(transform.inverse().map(Vector(1, 4, 5)), Vector(3, 2, 5));
        QCOMPARE(transform.inverse().origin, transform.origin);
        QCOMPARE(transform.inverse().xAxis, transform.xAxis);
        transform.translation = Vector(1, -2, 4);
        QCOMPARE(transform.inverse().translation, Vector(-1, 2, -4));
        QCOMPARE(transform.inverse().map(Vector(4, 0, 9)), Vector(3, 2, 5));
    }
};

QTEST_APPLESS_MAIN(TestRecords)
#include "tst_Records.moc"
