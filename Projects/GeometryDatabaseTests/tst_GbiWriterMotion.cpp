#include "AssertionCapture.h"
#include "SolverInputCase.h"

#include <QTest>

using namespace Ovra::Geo;

namespace
{

using Section = void (GbiWriter::*)(QTextStream&) const;

// What one writer writes in two sections, with a change of the case in between.
template <typename Change>
QString writtenInTurn(SolverInputCase& c, Section first, Change change, Section second)
{
    QString text;
    QTextStream stream(&text);
    const GbiWriter writer(&c.database);
    (writer.*first)(stream);
    change();
    (writer.*second)(stream);
    return text;
}

template <typename Change>
QString writtenTwice(SolverInputCase& c, Section section, Change change)
{
    return writtenInTurn(c, section, change, section);
}

struct ReplicaCase : SolverInputCase
{
    ModelEntity* original = modelEntity(3, 1);
    ModelEntity* replica = modelEntity(3, 2);

    ReplicaCase()
    {
        original->attributes().insert(AttributeType::MaterialId, 5);
        replica->attributes().insert(AttributeType::MotionType, QStringLiteral("rotation"));
        replica->attributes().insert(AttributeType::OriginalMotionRegion, 1);
        replica->attributes().insert(AttributeType::MaterialId, 8);
    }

    void addMesh()
    {
        element(30, original, {9, 2, 4, 3});
        element(40, replica, {19, 12, 14, 13});
        setNodeAttribute(19, AttributeType::OriginalMotionVertex, 9);
        setNodeAttribute(12, AttributeType::OriginalMotionVertex, 2);
        setNodeAttribute(14, AttributeType::OriginalMotionVertex, 4);
        setNodeAttribute(13, AttributeType::OriginalMotionVertex, 3);
    }

    QString plain() { return written(&GbiWriter::writeMovingRegionData); }
    QString labelled() { return written(&GbiWriter::writeGmMovingRegionData); }
};

struct RotorCase : SolverInputCase
{
    ModelEntity* device(int id, int material = 0)
    {
        auto* region = modelEntity(3, id);
        region->attributes().insert(AttributeType::MaterialType, QStringLiteral("rotating_device"));
        if (material != 0) {
            region->attributes().insert(AttributeType::MaterialId, material);
        }
        return region;
    }

    ModelEntity* rotorFace(int id, ModelEntity* region, int statorFace)
    {
        auto* rotor = face(id, {region});
        rotor->attributes().insert(AttributeType::StatorFace, statorFace);
        return rotor;
    }

    void pair(int rotorNode, int statorNode)
    {
        setNodeAttribute(rotorNode, AttributeType::StatorVertex, statorNode);
    }

    QString plain() { return written(&GbiWriter::writeRotatingRegionData); }
    QString labelled() { return written(&GbiWriter::writeGmRotatingRegionData); }
};

// A device of one tetrahedron whose faces 10 and 11 have the stator faces 20 and 21 in the region
// around it. Rotor nodes are 1 to 4, their stator nodes 101 to 104.
struct DeviceCase : RotorCase
{
    ModelEntity* rotor = device(1, 6);
    ModelEntity* outside = modelEntity(3, 2);

    DeviceCase()
    {
        element(5, rotor, {1, 2, 3, 4});
        element(7, outside, {101, 103, 102, 105});
        element(8, outside, {101, 102, 104, 106});
        element(51, rotorFace(10, rotor, 20), {1, 2, 3});
        element(52, rotorFace(11, rotor, 21), {1, 2, 4});
        element(61, face(20, {outside}), {101, 102, 103});
        element(62, face(21, {outside}), {101, 102, 104});
        for (int id = 1; id <= 4; ++id) {
            pair(id, 100 + id);
        }
        complete();
    }
};

} // namespace

class TestGbiWriterMotion : public QObject
{
    Q_OBJECT

private slots:
    void withoutReplica()
    {
        ReplicaCase c;
        c.replica->attributes().clear();
        QCOMPARE(c.plain(), QStringLiteral("0\n"));
        QCOMPARE(
            c.labelled(),
            QStringLiteral("--- nReplicate ---\n0\n--- RepElems ---\n0\n--- RepNodes ---\n0\n"));
    }

    void aReplicaHasBothAttributes()
    {
        ReplicaCase moving;
        moving.replica->attributes().remove(AttributeType::OriginalMotionRegion);
        QCOMPARE(moving.plain(), QStringLiteral("0\n"));
        ReplicaCase still;
        still.replica->attributes().remove(AttributeType::MotionType);
        QCOMPARE(still.plain(), QStringLiteral("0\n"));
    }

    void motionTypeCountsByItsPresence()
    {
        ReplicaCase c;
        c.replica->attributes().insert(AttributeType::MotionType, QVariant());
        QCOMPARE(c.plain(), QStringLiteral("1\n8\n0\n0\n"));
    }

    void replicaWithMesh()
    {
        ReplicaCase c;
        c.addMesh();
        QCOMPARE(c.plain(), QStringLiteral("1\n8\n1\n30 40\n4\n2 12\n3 13\n4 14\n9 19\n"));
        QCOMPARE(c.labelled(), QStringLiteral("--- nReplicate ---\n1\n8\n"
                                              "--- RepElems ---\n1\n30 40\n"
                                              "--- RepNodes ---\n4\n2 12\n3 13\n4 14\n9 19\n"));
    }

    void materialOfTheFluidRegion()
    {
        ReplicaCase c;
        c.replica->attributes().insert(AttributeType::FluidRegion, 7);
        c.region(7)->attributes().insert(AttributeType::MaterialId, 77);
        QCOMPARE(c.plain(), QStringLiteral("1\n77\n0\n0\n"));
    }

    void missingMaterialIsZero()
    {
        ReplicaCase c;
        c.replica->attributes().remove(AttributeType::MaterialId);
        QCOMPARE(c.plain(), QStringLiteral("1\n0\n0\n0\n"));
    }

    void aMaterialStandsOncePerReplica()
    {
        ReplicaCase c;
        auto* second = c.region(3);
        second->attributes().insert(AttributeType::MotionType, 1);
        second->attributes().insert(AttributeType::OriginalMotionRegion, 1);
        second->attributes().insert(AttributeType::MaterialId, 8);
        QCOMPARE(c.plain(), QStringLiteral("2\n8\n8\n0\n0\n"));
    }

    void nodesWithoutOriginalLandOnZero()
    {
        ReplicaCase c;
        c.element(30, c.original, {1});
        c.element(40, c.replica, {11});
        QCOMPARE(c.plain(), QStringLiteral("1\n8\n1\n30 40\n1\n0 11\n"));
    }

    void elementsGoByThePlaceInTheWalk()
    {
        ReplicaCase c;
        for (int id = 60; id > 30; --id) {
            c.element(id, c.original, {1});
            c.element(id + 100, c.replica, {11});
        }
        QMap<int, int> expected;
        auto originals = c.original->childIterator();
        for (auto copies = c.replica->childIterator(); copies.hasNext();) {
            originals.next();
            copies.next();
            expected.insert(originals.value()->id(), copies.value()->id());
        }
        QString lines;
        for (auto entry = expected.cbegin(); entry != expected.cend(); ++entry) {
            lines += QStringLiteral("%1 %2\n").arg(entry.key()).arg(entry.value());
        }
        QCOMPARE(c.plain(), "1\n8\n30\n" + lines + "1\n0 11\n");
    }

    void ofVerticesThatNameOneOriginalTheLastByIdIsWritten()
    {
        ReplicaCase c;
        c.element(30, c.original, {9, 2, 4, 3});
        c.element(40, c.replica, {19, 12, 14, 13});
        for (const int node : {19, 12, 14, 13}) {
            c.setNodeAttribute(node, AttributeType::OriginalMotionVertex, 9);
        }
        QCOMPARE(c.plain(), QStringLiteral("1\n8\n1\n30 40\n1\n9 19\n"));
    }

    void replicaOfAPlanarModel()
    {
        SolverInputCase c;
        auto* original = c.modelEntity(2, 1);
        auto* replica = c.modelEntity(2, 2);
        replica->attributes().insert(AttributeType::MotionType, 1);
        replica->attributes().insert(AttributeType::OriginalMotionRegion, 1);
        c.element(30, original, {1, 2, 3});
        c.element(40, replica, {11, 12, 13});
        c.setNodeAttribute(11, AttributeType::OriginalMotionVertex, 1);
        c.setNodeAttribute(12, AttributeType::OriginalMotionVertex, 2);
        c.setNodeAttribute(13, AttributeType::OriginalMotionVertex, 3);
        QCOMPARE(c.written(&GbiWriter::writeMovingRegionData),
                 QStringLiteral("1\n0\n1\n30 40\n3\n1 11\n2 12\n3 13\n"));
    }

    void replicasAreGatheredOnce()
    {
        ReplicaCase c;
        const QString text = writtenTwice(c, &GbiWriter::writeMovingRegionData, [&c] {
            c.replica->attributes().insert(AttributeType::MaterialId, 9);
        });
        QCOMPARE(text, QStringLiteral("1\n8\n0\n0\n1\n8\n0\n0\n"));
    }

    void bothFormsShareTheReplicas()
    {
        ReplicaCase c;
        c.addMesh();
        const QString plain = c.plain();
        const QString labelled = c.labelled();
        const auto change = [&c] { c.replica->attributes().insert(AttributeType::MaterialId, 9); };
        QCOMPARE(writtenInTurn(c, &GbiWriter::writeMovingRegionData, change,
                               &GbiWriter::writeGmMovingRegionData),
                 plain + labelled);
        c.replica->attributes().insert(AttributeType::MaterialId, 8);
        QCOMPARE(writtenInTurn(c, &GbiWriter::writeGmMovingRegionData, change,
                               &GbiWriter::writeMovingRegionData),
                 labelled + plain);
    }

    void withoutReplicaEachCallGathers()
    {
        ReplicaCase c;
        c.replica->attributes().remove(AttributeType::MotionType);
        const QString text = writtenTwice(c, &GbiWriter::writeMovingRegionData, [&c] {
            c.replica->attributes().insert(AttributeType::MotionType, 1);
        });
        QCOMPARE(text, QStringLiteral("0\n1\n8\n0\n0\n"));
    }

    void withoutRotatingDevice()
    {
        RotorCase c;
        c.rotorFace(10, c.region(1), 99);
        QCOMPARE(c.plain(), QStringLiteral("0 0 0\n"));
        QCOMPARE(c.labelled(), QStringLiteral("--- nRotSystems ---\n0\n--- RotatingNodeList ---\n"
                                              "--- RotorFaceList ---\n--- StatorFaceList ---\n"));
    }

    void otherRegionsDoNotRotate_data()
    {
        QTest::addColumn<QString>("material");
        QTest::addColumn<QVariant>("isSuppressed");
        QTest::addColumn<QString>("text");
        QTest::newRow("fan") << "centrifugal_fan" << QVariant(false) << "0 0 0\n";
        QTest::newRow("capitals") << "Rotating_Device" << QVariant(false) << "0 0 0\n";
        QTest::newRow("suppressed") << "rotating_device" << QVariant(true) << "0 0 0\n";
        QTest::newRow("device") << "rotating_device" << QVariant(false) << "1 0 0\n1 0\n0\n0\n0\n";
    }

    void otherRegionsDoNotRotate()
    {
        QFETCH(QString, material);
        QFETCH(QVariant, isSuppressed);
        QFETCH(QString, text);
        RotorCase c;
        auto* region = c.region(1);
        region->attributes().insert(AttributeType::MaterialType, material);
        region->attributes().insert(AttributeType::IsSuppressed, isSuppressed);
        QCOMPARE(c.plain(), text);
    }

    void facesOfASuppressedDeviceAreNotLookedAt()
    {
        RotorCase c;
        auto* device = c.device(1);
        device->attributes().insert(AttributeType::IsSuppressed, true);
        c.element(51, c.rotorFace(10, device, 99), {1, 2, 3});
        QCOMPARE(c.plain(), QStringLiteral("0 0 0\n"));
    }

    void aDeviceWithoutRotorFaceCounts()
    {
        RotorCase c;
        c.face(10, {c.device(4, 3)});
        QCOMPARE(c.plain(), QStringLiteral("1 0 0\n4 3\n0\n0\n0\n"));
        QCOMPARE(c.labelled(), QStringLiteral("--- nRotSystems ---\n1\n"
                                              "--- RotatingNodeList ---\n--- 0 ---\n0\n"
                                              "--- RotorFaceList ---\n--- 0 ---\n0\n"
                                              "--- StatorFaceList ---\n--- 0 ---\n0\n"));
    }

    void deviceWithTwoRotorFaces()
    {
        DeviceCase c;
        QCOMPARE(c.plain(), QStringLiteral("1 2 2\n"
                                           "1 6\n"
                                           "4\n1 101\n2 102\n3 103\n4 104\n"
                                           "2\n5 2\n5 3\n"
                                           "2\n7 3\n8 3\n"));
        QCOMPARE(c.labelled(), QStringLiteral("--- nRotSystems ---\n1\n"
                                              "--- RotatingNodeList ---\n--- 0 ---\n4\n"
                                              "1 101\n2 102\n3 103\n4 104\n"
                                              "--- RotorFaceList ---\n--- 0 ---\n2\n5 2\n5 3\n"
                                              "--- StatorFaceList ---\n--- 0 ---\n2\n7 3\n8 3\n"));
    }

    void pairsGoByTheRotorNodeAndFacesByTheElement()
    {
        RotorCase c;
        auto* device = c.device(1);
        auto* outside = c.region(2);
        c.element(9, device, {1, 2, 3, 4});
        c.element(5, device, {1, 2, 4, 6});
        c.element(8, outside, {21, 22, 23, 25});
        c.element(7, outside, {21, 22, 24, 26});
        c.element(51, c.rotorFace(10, device, 20), {1, 2, 3});
        c.element(52, c.rotorFace(11, device, 21), {1, 2, 6});
        c.element(61, c.face(20, {outside}), {21, 22, 23});
        c.element(62, c.face(21, {outside}), {21, 22, 26});
        c.pair(1, 24);
        c.pair(2, 23);
        c.pair(3, 22);
        c.pair(6, 21);
        c.complete();
        QCOMPARE(c.plain(), QStringLiteral("1 2 2\n1 0\n"
                                           "4\n1 24\n2 23\n3 22\n6 21\n"
                                           "2\n5 2\n9 3\n"
                                           "2\n7 2\n8 3\n"));
    }

    void materialIsTheDevicesOwn()
    {
        RotorCase c;
        auto* device = c.device(4, 3);
        device->attributes().insert(AttributeType::FluidRegion, 5);
        c.region(5)->attributes().insert(AttributeType::MaterialId, 33);
        QVERIFY(c.plain().startsWith("1 0 0\n4 3\n"));
    }

    void totalsAreSumsOverTheDevices()
    {
        DeviceCase c;
        auto* second = c.device(3);
        c.element(9, second, {201, 202, 203, 204});
        c.element(53, c.rotorFace(12, second, 22), {201, 202, 203});
        c.face(22, {c.outside});
        for (int id = 201; id <= 203; ++id) {
            c.pair(id, id + 100);
        }
        c.mesh().clearUpwardAdjacencies();
        c.complete();
        const QString first = "1 6\n4\n1 101\n2 102\n3 103\n4 104\n2\n5 2\n5 3\n2\n7 3\n8 3\n";
        const QString other = "3 0\n3\n201 301\n202 302\n203 303\n1\n9 3\n0\n";
        const QString text = c.plain();
        QVERIFY2(text == "2 3 2\n" + first + other || text == "2 3 2\n" + other + first,
                 qPrintable(text));
    }

    void indexLinesCountPositions()
    {
        RotorCase c;
        c.device(40);
        c.device(50);
        QCOMPARE(c.labelled(),
                 QStringLiteral("--- nRotSystems ---\n2\n"
                                "--- RotatingNodeList ---\n--- 0 ---\n0\n--- 1 ---\n0\n"
                                "--- RotorFaceList ---\n--- 0 ---\n0\n--- 1 ---\n0\n"
                                "--- StatorFaceList ---\n--- 0 ---\n0\n--- 1 ---\n0\n"));
    }

    void deviceOfAPlanarModel()
    {
        SolverInputCase c;
        auto* device = c.modelEntity(2, 1);
        auto* outside = c.modelEntity(2, 2);
        device->attributes().insert(AttributeType::MaterialType, QStringLiteral("rotating_device"));
        auto* rotor = c.bounding(1, 10, {device});
        rotor->attributes().insert(AttributeType::StatorFace, 20);
        c.element(5, device, {1, 2, 3});
        c.element(6, outside, {11, 12, 13});
        c.element(51, rotor, {1, 2});
        c.element(61, c.bounding(1, 20, {outside}), {12, 13});
        c.setNodeAttribute(1, AttributeType::StatorVertex, 12);
        c.setNodeAttribute(2, AttributeType::StatorVertex, 13);
        c.complete();
        QCOMPARE(c.written(&GbiWriter::writeRotatingRegionData),
                 QStringLiteral("1 1 1\n1 0\n2\n1 12\n2 13\n1\n5 0\n1\n6 1\n"));
    }

    void devicesAreGatheredOnce()
    {
        RotorCase c;
        c.device(4);
        const QString text =
            writtenTwice(c, &GbiWriter::writeRotatingRegionData, [&c] { c.device(5); });
        QCOMPARE(text, QStringLiteral("1 0 0\n4 0\n0\n0\n0\n1 0 0\n4 0\n0\n0\n0\n"));
    }

    void bothFormsShareTheDevices()
    {
        RotorCase c;
        c.device(4);
        const QString plain = c.plain();
        const QString labelled = c.labelled();
        QCOMPARE(writtenInTurn(
                     c, &GbiWriter::writeRotatingRegionData, [&c] { c.device(5); },
                     &GbiWriter::writeGmRotatingRegionData),
                 plain + labelled);
        RotorCase other;
        other.device(4);
        QCOMPARE(writtenInTurn(
                     other, &GbiWriter::writeGmRotatingRegionData, [&other] { other.device(5); },
                     &GbiWriter::writeRotatingRegionData),
                 labelled + plain);
    }

    void withoutDeviceEachCallGathers()
    {
        RotorCase c;
        const QString text =
            writtenTwice(c, &GbiWriter::writeRotatingRegionData, [&c] { c.device(4); });
        QCOMPARE(text, QStringLiteral("0 0 0\n1 0 0\n4 0\n0\n0\n0\n"));
    }

    void precisionIsLeftAlone()
    {
        DeviceCase c;
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(9);
        const GbiWriter writer(&c.database);
        writer.writeRotatingRegionData(stream);
        writer.writeGmRotatingRegionData(stream);
        writer.writeMovingRegionData(stream);
        writer.writeGmMovingRegionData(stream);
        QCOMPARE(stream.realNumberPrecision(), 9);
    }

    void allSectionsFlush()
    {
        ReplicaCase moving;
        moving.addMesh();
        QCOMPARE(moving.arrived(&GbiWriter::writeMovingRegionData), moving.plain());
        QCOMPARE(moving.arrived(&GbiWriter::writeGmMovingRegionData), moving.labelled());
        DeviceCase rotating;
        QCOMPARE(rotating.arrived(&GbiWriter::writeRotatingRegionData), rotating.plain());
        QCOMPARE(rotating.arrived(&GbiWriter::writeGmRotatingRegionData), rotating.labelled());
    }

    void aRotorVertexWithoutStatorVertexStops()
    {
        DeviceCase c;
        c.setNodeAttribute(3, AttributeType::StatorVertex, 0);
        const QString message = stopMessage([&c] { c.plain(); });
        QVERIFY2(message.startsWith("ASSERT: \"statorVertexId != InvalidId\" in file "
                                    "Projects/GeometryDatabase/GbiWriter"),
                 qPrintable(message));
    }

    void aSideWithTwoElementsStops_data()
    {
        QTest::addColumn<QList<int>>("element");
        QTest::newRow("rotor") << QList<int>{1, 2, 3, 9};
        QTest::newRow("stator") << QList<int>{101, 102, 103, 9};
    }

    void aSideWithTwoElementsStops()
    {
        QFETCH(QList<int>, element);
        DeviceCase c;
        c.element(90, c.outside, element);
        c.mesh().clearUpwardAdjacencies();
        c.complete();
        const QString message = stopMessage([&c] { c.plain(); });
        QVERIFY2(
            message.startsWith("ASSERT: \"meshFace->adjacencyCount( meshFace->dimension() + 1 ) "
                               "== 1\" in file Projects/GeometryDatabase/GbiWriter"),
            qPrintable(message));
    }

    void aSideWithoutElementStops()
    {
        DeviceCase c;
        c.mesh().clearUpwardAdjacencies();
        const QString message = stopMessage([&c] { c.labelled(); });
        QVERIFY2(message.contains("meshFace->adjacencyCount("), qPrintable(message));
    }

    void aSoundCaseDoesNotStop()
    {
        DeviceCase c;
        QCOMPARE(stopMessage([&c] { c.plain(); }), QString());
    }
};

QTEST_APPLESS_MAIN(TestGbiWriterMotion)
#include "tst_GbiWriterMotion.moc"
