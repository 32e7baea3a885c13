#include "LogCapture.h"
#include "SolverInputCase.h"

#include <QTest>

using namespace Ovra::Geo;

namespace
{

struct ExtrusionCase : SolverInputCase
{
    ModelEntity* region = modelEntity(3, 1);

    void tie(int nodeId, int type, int id, const QVariantList& weights = {})
    {
        setNodeAttribute(nodeId, AttributeType::ExtrudedEntityType, type);
        setNodeAttribute(nodeId, AttributeType::ExtrudedEntityId, id);
        setNodeAttribute(nodeId, AttributeType::ExtrudedWeights, weights);
    }

    void setMaterial(const QString& type)
    {
        region->attributes().insert(AttributeType::MaterialType, type);
    }

    QString nodal() { return written(&GbiWriter::writeExtrusionNodalData); }
    QString labelled() { return written(&GbiWriter::writeGmExtrusionData); }

    QString gatheredFaces()
    {
        return writtenAfter(&GbiWriter::writeExtrusionNodalData,
                            &GbiWriter::writeExtrusionFaceList);
    }
};

// Faces 10 and 20 of a tetrahedron, paired by an attribute of face 10.
struct PairCase : ExtrusionCase
{
    ModelEntity* faceA = face(10, {region});
    ModelEntity* faceB = face(20, {region});

    PairCase()
    {
        faceA->attributes().insert(AttributeType::ExtrudedFace, 20);
        element(5, region, {1, 2, 3, 4});
        element(51, faceA, {1, 2, 3});
        element(52, faceB, {4, 3, 2});
        tie(3, 2, 52, {0.25, 0.5, 0.25});
        tie(1, 0, 25);
        complete();
    }
};

} // namespace

class TestGbiWriterExtrusion : public QObject
{
    Q_OBJECT

private slots:
    void withoutExtrusion()
    {
        ExtrusionCase c;
        c.element(5, c.region, {1, 2, 3, 4});
        QCOMPARE(c.nodal(), QStringLiteral("0\n"));
        QCOMPARE(c.written(&GbiWriter::writeExtrusionFaceList), QStringLiteral("0\n"));
        QCOMPARE(c.labelled(), QStringLiteral("0\n--- i_extrusion ---\n--- f_extrusion ---\n"
                                              "--- EFaceList ---\n0\n"));
    }

    void nodalData()
    {
        PairCase c;
        QCOMPARE(c.nodal(), QStringLiteral("2\n1 1 25 1 \n3 3 2 3 4 0.25 0.5 0.25 \n"));
    }

    void labelledForm()
    {
        PairCase c;
        QCOMPARE(c.labelled(), QStringLiteral("2\n"
                                              "--- i_extrusion ---\n1 1 25 \n3 3 2 3 4 \n"
                                              "--- f_extrusion ---\n1 \n0.25 0.5 0.25 \n"
                                              "--- EFaceList ---\n2\n5 0\n5 3\n"));
    }

    void verticesThatTakeNoPart_data()
    {
        QTest::addColumn<QVariant>("type");
        QTest::addColumn<QVariant>("id");
        QTest::addColumn<QString>("text");
        QTest::newRow("id 0") << QVariant(1) << QVariant(0) << "0\n";
        QTest::newRow("no id") << QVariant(1) << QVariant() << "0\n";
        QTest::newRow("type -1") << QVariant(-1) << QVariant(25) << "0\n";
        QTest::newRow("no type") << QVariant() << QVariant(25) << "0\n";
        QTest::newRow("vertex 0") << QVariant(0) << QVariant(0) << "0\n";
        QTest::newRow("vertex 25") << QVariant(0) << QVariant(25) << "1\n7 1 25 1 \n";
    }

    void verticesThatTakeNoPart()
    {
        QFETCH(QVariant, type);
        QFETCH(QVariant, id);
        QFETCH(QString, text);
        ExtrusionCase c;
        if (type.isValid()) {
            c.setNodeAttribute(7, AttributeType::ExtrudedEntityType, type);
        }
        if (id.isValid()) {
            c.setNodeAttribute(7, AttributeType::ExtrudedEntityId, id);
        }
        c.setNodeAttribute(7, AttributeType::ExtrudedWeights, QVariantList{1.0});
        QCOMPARE(c.nodal(), text);
    }

    void stencilWithoutLinks()
    {
        ExtrusionCase c;
        c.element(60, c.face(40), {9, 8, 7});
        c.tie(3, 2, 60, {0.0, -1.0, 0.0});
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 0 \n"));
        QCOMPARE(c.labelled(), QStringLiteral("1\n--- i_extrusion ---\n3 0 \n"
                                              "--- f_extrusion ---\n\n--- EFaceList ---\n0\n"));
    }

    void linksAscendWithTheirWeights()
    {
        ExtrusionCase c;
        c.element(60, c.face(40), {9, 8, 7, 6});
        c.tie(3, 2, 60, {0.125, 0.0, 0.375, 0.5});
        QCOMPARE(c.nodal(), QStringLiteral("1\n3 3 6 7 9 0.5 0.375 0.125 \n"));
    }

    void stencilsAscendByNode()
    {
        ExtrusionCase c;
        QString expected = "30\n";
        for (int id = 30; id >= 1; --id) {
            c.tie(id, 0, 100 + id);
        }
        for (int id = 1; id <= 30; ++id) {
            expected += QStringLiteral("%1 1 %2 1 \n").arg(id).arg(100 + id);
        }
        QCOMPARE(c.nodal(), expected);
    }

    void nodalDataRestoresThePrecision()
    {
        ExtrusionCase c;
        c.element(60, c.face(40), {9, 8, 7});
        c.tie(3, 2, 60, {1.0 / 3.0, 2.0 / 3.0, 0.0});
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(12);
        GbiWriter(&c.database).writeExtrusionNodalData(stream);
        QCOMPARE(text, QStringLiteral("1\n3 2 8 9 0.666667 0.333333 \n"));
        QCOMPARE(stream.realNumberPrecision(), 12);
    }

    void labelledFormFlushesAllLinesButTheFaceCount()
    {
        PairCase pair;
        QCOMPARE(pair.arrived(&GbiWriter::writeGmExtrusionData), pair.labelled());
        QCOMPARE(pair.arrived(&GbiWriter::writeExtrusionNodalData), QString());
        ExtrusionCase empty;
        QCOMPARE(empty.arrived(&GbiWriter::writeGmExtrusionData),
                 QStringLiteral("0\n--- i_extrusion ---\n--- f_extrusion ---\n"
                                "--- EFaceList ---\n"));
    }

    void labelledFormLeavesThePrecisionAtSix()
    {
        ExtrusionCase c;
        c.element(60, c.face(40), {9, 8, 7});
        c.tie(3, 2, 60, {1.0 / 3.0, 2.0 / 3.0, 0.0});
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(12);
        const GbiWriter writer(&c.database);
        writer.writeGmExtrusionData(stream);
        QVERIFY(text.contains("--- f_extrusion ---\n0.666667 0.333333 \n"));
        QCOMPARE(stream.realNumberPrecision(), 6);
        writer.writeNodes(stream, 1.0);
        QCOMPARE(stream.realNumberPrecision(), 6);
    }

    void faceListGathersNothing()
    {
        PairCase c;
        QCOMPARE(c.written(&GbiWriter::writeExtrusionFaceList), QStringLiteral("0\n"));
    }

    void faceListFlags_data()
    {
        QTest::addColumn<QString>("material");
        QTest::addColumn<QString>("text");
        QTest::newRow("fluid") << "fluid"
                               << "2\n5 0 1\n5 3 1\n";
        QTest::newRow("fan") << "centrifugal_fan"
                             << "2\n5 0 1\n5 3 1\n";
        QTest::newRow("solid") << "solid"
                               << "2\n5 0 0\n5 3 0\n";
    }

    void faceListFlags()
    {
        QFETCH(QString, material);
        QFETCH(QString, text);
        PairCase c;
        c.setMaterial(material);
        QCOMPARE(c.gatheredFaces(), text);
    }

    void aSolidBesideEitherFaceClearsAllFlags_data()
    {
        QTest::addColumn<QString>("material");
        QTest::addColumn<QString>("partnerMaterial");
        QTest::addColumn<QString>("text");
        QTest::newRow("fluids") << "fluid"
                                << "fluid"
                                << "2\n5 3 1\n6 3 1\n";
        QTest::newRow("solid at the partner") << "fluid"
                                              << "solid"
                                              << "2\n5 3 0\n6 3 0\n";
        QTest::newRow("solid at the face") << "solid"
                                           << "fluid"
                                           << "2\n5 3 0\n6 3 0\n";
    }

    void aSolidBesideEitherFaceClearsAllFlags()
    {
        QFETCH(QString, material);
        QFETCH(QString, partnerMaterial);
        QFETCH(QString, text);
        ExtrusionCase c;
        c.setMaterial(material);
        auto* partnerRegion = c.modelEntity(3, 2);
        partnerRegion->attributes().insert(AttributeType::MaterialType, partnerMaterial);
        auto* first = c.face(10, {c.region});
        auto* partner = c.face(20, {partnerRegion});
        first->attributes().insert(AttributeType::ExtrudedFace, 20);
        c.element(5, c.region, {1, 2, 3, 4});
        c.element(6, partnerRegion, {11, 12, 13, 14});
        c.element(51, first, {1, 2, 3});
        c.element(52, partner, {11, 12, 13});
        c.complete();
        QCOMPARE(c.gatheredFaces(), text);
    }

    void facesOfAMutualPairStandTwice()
    {
        PairCase c;
        c.faceB->attributes().insert(AttributeType::ExtrudedFace, 10);
        QCOMPARE(c.gatheredFaces(), QStringLiteral("4\n5 0 0\n5 0 0\n5 3 0\n5 3 0\n"));
    }

    void extrudedFaceZeroIsNone()
    {
        PairCase c;
        c.faceA->attributes().insert(AttributeType::ExtrudedFace, 0);
        QCOMPARE(c.gatheredFaces(), QStringLiteral("0\n"));
    }

    void foundPairsAreLogged()
    {
        PairCase c;
        const LogCapture log;
        c.nodal();
        QCOMPARE(log.messages(), QStringList{"Found face 10 and face 20"});
    }

    void gathersOnce()
    {
        PairCase c;
        const LogCapture log;
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writeExtrusionNodalData(stream);
        writer.writeGmExtrusionData(stream);
        writer.writeExtrusionNodalData(stream);
        QCOMPARE(log.messages().size(), 1);
    }

    void gathersAgainWhereNoStencilWasFound()
    {
        PairCase c;
        c.setNodeAttribute(1, AttributeType::ExtrudedEntityId, 0);
        c.setNodeAttribute(3, AttributeType::ExtrudedEntityId, 0);
        const LogCapture log;
        QString text;
        QTextStream stream(&text);
        const GbiWriter writer(&c.database);
        writer.writeExtrusionNodalData(stream);
        writer.writeGmExtrusionData(stream);
        writer.writeExtrusionFaceList(stream);
        QCOMPARE(log.messages().size(), 2);
        QCOMPARE(text, QStringLiteral("0\n"
                                      "0\n--- i_extrusion ---\n--- f_extrusion ---\n"
                                      "--- EFaceList ---\n2\n5 0\n5 3\n"
                                      "2\n5 0 0\n5 3 0\n"));
    }

    void planarModelPairsFacesAndNotEdges()
    {
        SolverInputCase c;
        auto* face = c.modelEntity(2, 10);
        c.modelEntity(2, 20);
        face->attributes().insert(AttributeType::ExtrudedFace, 20);
        c.modelEntity(1, 30)->attributes().insert(AttributeType::ExtrudedFace, 30);
        const LogCapture log;
        QCOMPARE(c.written(&GbiWriter::writeExtrusionNodalData), QStringLiteral("0\n"));
        QCOMPARE(log.messages(), QStringList{"Found face 10 and face 20"});
    }

    void spatiallyVaryingConditionsWriteNothing()
    {
        PairCase c;
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberPrecision(9);
        GbiWriter(&c.database).writeSpatiallyVaryingNodalBC(stream);
        QCOMPARE(text, QString());
        QCOMPARE(stream.realNumberPrecision(), 9);
    }
};

QTEST_APPLESS_MAIN(TestGbiWriterExtrusion)
#include "tst_GbiWriterExtrusion.moc"
