#include "SolverInputCase.h"

#include <QTest>

using namespace Ovra::Geo;

namespace
{

struct ShellCase : SolverInputCase
{
    ModelEntity* shell(int dimension, int id, const QVariant& isShell = true)
    {
        auto* entity = modelEntity(dimension, id);
        entity->attributes().insert(AttributeType::IsShell, isShell);
        return entity;
    }
};

} // namespace

class TestGbiWriterShells : public QObject
{
    Q_OBJECT

private slots:
    void withoutShellsOnlyTheTerminators()
    {
        ShellCase c;
        c.element(1, c.region(5), upTo(4));
        c.face(3);
        QCOMPARE(c.written(&GbiWriter::writeShellElements), QStringLiteral("-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellSurfaceNodeLinks), QStringLiteral("-1 -1 -1\n"));
    }

    void falseIsNoShellAndNoElementEither()
    {
        ShellCase c;
        c.element(1, c.shell(3, 5, false), upTo(6));
        QCOMPARE(c.written(&GbiWriter::writeShellElements), QStringLiteral("-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeElements), QStringLiteral("-1\n"));
    }

    void typeCodes_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<int>("vertices");
        QTest::addColumn<QString>("columns");
        QTest::newRow("tetrahedron") << 3 << 4 << "4 4";
        QTest::newRow("pyramid") << 3 << 5 << "6 5";
        QTest::newRow("wedge") << 3 << 6 << "5 6";
        QTest::newRow("hexahedron") << 3 << 8 << "3 8";
        QTest::newRow("solid of 3") << 3 << 3 << "0 0";
        QTest::newRow("solid of 7") << 3 << 7 << "0 0";
        QTest::newRow("triangle") << 2 << 3 << "1 3";
        QTest::newRow("surface of 4") << 2 << 4 << "0 0";
        QTest::newRow("surface of 5") << 2 << 5 << "2 4";
        QTest::newRow("surface of 6") << 2 << 6 << "0 0";
        QTest::newRow("surface of 8") << 2 << 8 << "0 0";
    }

    void typeCodes()
    {
        QFETCH(int, dimension);
        QFETCH(int, vertices);
        QFETCH(QString, columns);
        ShellCase c;
        auto* region = c.shell(dimension, 7);
        region->attributes().insert(AttributeType::MaterialId, 12);
        c.element(30, region, upTo(vertices));
        QString ids;
        for (int id : upTo(vertices)) {
            ids += QStringLiteral(" %1").arg(id);
        }
        QCOMPARE(c.written(&GbiWriter::writeShellElements),
                 "30 " + columns + " 12 7 1" + ids + "\n-1\n");
    }

    void boundaryLayerColumnIsAlwaysOne()
    {
        ShellCase c;
        c.element(30, c.shell(3, 7), {4, 3, 2, 1})->attributes().insert(AttributeType::InBL, false);
        QCOMPARE(c.written(&GbiWriter::writeShellElements),
                 QStringLiteral("30 4 4 -1 7 1 4 3 2 1\n-1\n"));
    }

    void elementsOfARegionAscend()
    {
        ShellCase c;
        auto* region = c.shell(3, 7);
        QString expected;
        for (int id = 40; id > 20; --id) {
            c.element(id, region, upTo(4));
            expected.prepend(QStringLiteral("%1 4 4 -1 7 1 1 2 3 4\n").arg(id));
        }
        QCOMPARE(c.written(&GbiWriter::writeShellElements), expected + "-1\n");
    }

    void materialIsTheRegionsOwn()
    {
        ShellCase c;
        auto* region = c.shell(3, 7);
        region->attributes().insert(AttributeType::MaterialId, 12);
        region->attributes().insert(AttributeType::FluidRegion, 8);
        c.region(8)->attributes().insert(AttributeType::MaterialId, 23);
        c.element(30, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeShellElements),
                 QStringLiteral("30 4 4 12 7 1 1 2 3 4\n-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("7 12 -1\n-1\n"));
    }

    void missingMaterialIsMinusOne()
    {
        ShellCase c;
        c.element(30, c.shell(3, 7), upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeShellElements),
                 QStringLiteral("30 4 4 -1 7 1 1 2 3 4\n-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("7 -1 -1\n-1\n"));
    }

    void unusableMaterialIsMinusOneForElementsAndZeroForRegions()
    {
        ShellCase c;
        auto* region = c.shell(3, 7);
        region->attributes().insert(AttributeType::MaterialId, QStringLiteral("steel"));
        c.element(30, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeShellElements),
                 QStringLiteral("30 4 4 -1 7 1 1 2 3 4\n-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("7 0 -1\n-1\n"));
    }

    void elementsStandRegionByRegion()
    {
        ShellCase c;
        auto* first = c.shell(3, 7);
        auto* second = c.shell(3, 8);
        c.element(33, first, upTo(4));
        c.element(32, second, upTo(5));
        c.element(31, first, upTo(4));
        c.element(30, second, upTo(5));
        const QString ofFirst = "31 4 4 -1 7 1 1 2 3 4\n33 4 4 -1 7 1 1 2 3 4\n";
        const QString ofSecond = "30 6 5 -1 8 1 1 2 3 4 5\n32 6 5 -1 8 1 1 2 3 4 5\n";
        const QString text = c.written(&GbiWriter::writeShellElements);
        QVERIFY2(text == ofFirst + ofSecond + "-1\n" || text == ofSecond + ofFirst + "-1\n",
                 qPrintable(text));
    }

    void regionData()
    {
        ShellCase c;
        auto* region = c.shell(3, 7);
        region->attributes().insert(AttributeType::MaterialId, 12);
        region->attributes().insert(AttributeType::OriginalShellFace, 91);
        c.region(8);
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("7 12 91\n-1\n"));
    }

    void regionDataOfSeveralShells()
    {
        ShellCase c;
        c.shell(3, 7);
        c.shell(3, 9);
        c.shell(3, 8, false);
        const QString text = c.written(&GbiWriter::writeShellRegionData);
        QVERIFY(text.endsWith(QStringLiteral("\n-1\n")));
        QCOMPARE(sortedLines(text), (QStringList{"", "-1", "7 -1 -1", "9 -1 -1"}));
    }

    void regionDataOfAPlanarModel()
    {
        ShellCase c;
        c.shell(2, 7)->attributes().insert(AttributeType::OriginalShellFace, 3);
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("7 -1 3\n-1\n"));
    }

    void aShellFaceIsNoShellRegion()
    {
        ShellCase c;
        c.region(1);
        c.element(30, c.shell(2, 7), upTo(3));
        QCOMPARE(c.written(&GbiWriter::writeShellElements), QStringLiteral("-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeShellRegionData), QStringLiteral("-1\n"));
    }

    void nodeLinks()
    {
        ShellCase c;
        c.region(1);
        auto* face = c.face(6);
        face->attributes().insert(AttributeType::NewShellFace, 66);
        c.element(1, face, {10, 2, 30});
        c.element(2, face, {2, 30, 7});
        c.setNodeAttribute(2, AttributeType::ShellVertex, 102);
        c.setNodeAttribute(10, AttributeType::ShellVertex, 110);
        c.setNodeAttribute(7, AttributeType::ShellVertex, 107);
        QCOMPARE(c.written(&GbiWriter::writeShellSurfaceNodeLinks),
                 QStringLiteral("6 66 4\n2 102\n7 107\n10 110\n30 0\n-1 -1 -1\n"));
    }

    void nodeLinksOfAFaceWithoutMesh()
    {
        ShellCase c;
        c.region(1);
        c.face(6)->attributes().insert(AttributeType::NewShellFace, 66);
        QCOMPARE(c.written(&GbiWriter::writeShellSurfaceNodeLinks),
                 QStringLiteral("6 66 0\n-1 -1 -1\n"));
    }

    void nodeLinksGoByThePresenceOfTheTwin()
    {
        ShellCase c;
        c.region(1);
        c.face(6)->attributes().insert(AttributeType::NewShellFace, 0);
        QCOMPARE(c.written(&GbiWriter::writeShellSurfaceNodeLinks),
                 QStringLiteral("6 0 0\n-1 -1 -1\n"));
    }

    void nodeLinksOfAPlanarModel()
    {
        ShellCase c;
        auto* edge = c.modelEntity(1, 6);
        edge->attributes().insert(AttributeType::NewShellFace, 5);
        c.element(1, edge, {2, 1});
        c.setNodeAttribute(1, AttributeType::ShellVertex, 11);
        QCOMPARE(c.written(&GbiWriter::writeShellSurfaceNodeLinks),
                 QStringLiteral("6 5 2\n1 11\n2 0\n-1 -1 -1\n"));
    }

    void literalsIgnoreTheStreamsSettings()
    {
        ShellCase c;
        c.element(30, c.shell(3, 7), upTo(4));
        QString text;
        QTextStream stream(&text);
        stream.setNumberFlags(QTextStream::ForceSign);
        stream.setRealNumberPrecision(9);
        const GbiWriter writer(&c.database);
        writer.writeShellElements(stream);
        writer.writeShellRegionData(stream);
        writer.writeShellSurfaceNodeLinks(stream);
        QCOMPARE(text, QStringLiteral("+30 +4 +4 -1 +7 1 +1 +2 +3 +4\n-1\n"
                                      "+7 -1 -1\n-1\n"
                                      "-1 -1 -1\n"));
        QCOMPARE(stream.realNumberPrecision(), 9);
    }
};

QTEST_APPLESS_MAIN(TestGbiWriterShells)
#include "tst_GbiWriterShells.moc"
