#include "GermanLocale.h"
#include "SolverInputCase.h"

#include <QLocale>
#include <QTest>

#include <type_traits>

using namespace Ovra::Geo;

static_assert(std::is_convertible_v<Database*, GbiWriter>);

namespace
{

// A stream with settings of the host's that a section must keep.
struct HostStream
{
    QString text;
    QTextStream stream{&text};
};

} // namespace

class TestGbiWriterElements : public QObject
{
    Q_OBJECT

private slots:
    void emptyMeshIsTheTerminatorAlone()
    {
        SolverInputCase c;
        QCOMPARE(c.written(&GbiWriter::writeNodes, 1.0), QStringLiteral("-1\n"));
        QCOMPARE(c.written(&GbiWriter::writeElements), QStringLiteral("-1\n"));
    }

    void nodesAreScaled()
    {
        SolverInputCase c;
        c.node(7, Vector(1000, 2000, 0));
        QCOMPARE(c.written(&GbiWriter::writeNodes, 0.001), QStringLiteral("7 1 2 0\n-1\n"));
        QCOMPARE(c.node(7)->point(), Vector(1000, 2000, 0));
    }

    void nodesHaveFifteenDigits()
    {
        SolverInputCase c;
        c.node(3, Vector(1.0 / 3.0, -2.0 / 3.0, 1.25e-20));
        QCOMPARE(c.written(&GbiWriter::writeNodes, 1.0),
                 QStringLiteral("3 0.333333333333333 -0.666666666666667 1.25e-20\n-1\n"));
    }

    void nodesOfAllIdsAppear()
    {
        SolverInputCase c;
        c.node(2, Vector(1, 0, 0));
        c.node(11, Vector(0, 1, 0));
        c.node(5, Vector(0, 0, 1));
        const QString text = c.written(&GbiWriter::writeNodes, 1.0);
        QVERIFY(text.endsWith(QStringLiteral("\n-1\n")));
        QCOMPARE(sortedLines(text), (QStringList{"", "-1", "11 0 1 0", "2 1 0 0", "5 0 0 1"}));
    }

    void nodesRestoreThePrecision()
    {
        SolverInputCase c;
        c.node(1, Vector(1.0 / 3.0, 0, 0));
        HostStream host;
        host.stream.setRealNumberPrecision(3);
        GbiWriter(&c.database).writeNodes(host.stream, 1.0);
        QCOMPARE(host.stream.realNumberPrecision(), 3);
        host.stream << 2.0 / 3.0;
        QCOMPARE(host.text, QStringLiteral("1 0.333333333333333 0 0\n-1\n0.667"));
    }

    void nodesKeepTheNotation()
    {
        SolverInputCase c;
        c.node(1, Vector(0.5, 0, -1));
        HostStream host;
        host.stream.setRealNumberNotation(QTextStream::FixedNotation);
        GbiWriter(&c.database).writeNodes(host.stream, 1.0);
        QCOMPARE(host.text,
                 QStringLiteral("1 0.500000000000000 0.000000000000000 -1.000000000000000\n-1\n"));
        QCOMPARE(host.stream.realNumberNotation(), QTextStream::FixedNotation);
    }

    void scientificNotationIsTheHosts()
    {
        SolverInputCase c;
        c.node(1, Vector(1024, 0, 0));
        HostStream host;
        host.stream.setRealNumberNotation(QTextStream::ScientificNotation);
        GbiWriter(&c.database).writeNodes(host.stream, 1.0);
        QCOMPARE(host.text, QStringLiteral("1 1.024000000000000e+03 0.000000000000000e+00 "
                                           "0.000000000000000e+00\n-1\n"));
    }

    void theStreamsLocaleIsFollowed()
    {
        SolverInputCase c;
        c.node(12345, Vector(0.5, 0, 0));
        HostStream host;
        host.stream.setLocale(QLocale(QLocale::German, QLocale::Germany));
        GbiWriter(&c.database).writeNodes(host.stream, 1.0);
        QCOMPARE(host.text, QStringLiteral("12.345 0,5 0 0\n-1\n"));
    }

    void theDefaultLocaleIsNot()
    {
        const GermanLocale german;
        SolverInputCase c;
        c.node(12345, Vector(0.5, 0, 0));
        QCOMPARE(c.written(&GbiWriter::writeNodes, 1.0), QStringLiteral("12345 0.5 0 0\n-1\n"));
    }

    void numbersGoThroughTheIntegerSettings()
    {
        SolverInputCase c;
        auto* region = c.region(2);
        c.element(9, region, {1, 2, 3, 4});
        HostStream host;
        host.stream.setNumberFlags(QTextStream::ForceSign);
        GbiWriter(&c.database).writeElements(host.stream);
        QCOMPARE(host.text, QStringLiteral("+9 +4 +4 +0 +2 +0 +1 +2 +3 +4\n-1\n"));
    }

    void typeCodesOfSolids_data()
    {
        QTest::addColumn<int>("vertices");
        QTest::addColumn<QString>("columns");
        QTest::newRow("tetrahedron") << 4 << "4 4 0 2 0 1 2 3 4";
        QTest::newRow("pyramid") << 5 << "6 5 0 2 0 1 2 3 4 5";
        QTest::newRow("wedge") << 6 << "5 6 0 2 0 1 2 3 4 5 6";
        QTest::newRow("hexahedron") << 8 << "3 8 0 2 0 1 2 3 4 5 6 7 8";
        QTest::newRow("three vertices") << 3 << "0 0 0 2 0 1 2 3";
        QTest::newRow("seven vertices") << 7 << "0 0 0 2 0 1 2 3 4 5 6 7";
        QTest::newRow("nine vertices") << 9 << "0 0 0 2 0 1 2 3 4 5 6 7 8 9";
        QTest::newRow("no vertices") << 0 << "0 0 0 2 0";
    }

    void typeCodesOfSolids()
    {
        QFETCH(int, vertices);
        QFETCH(QString, columns);
        SolverInputCase c;
        c.element(30, c.region(2), upTo(vertices));
        QCOMPARE(c.written(&GbiWriter::writeElements), "30 " + columns + "\n-1\n");
    }

    void typeCodesOfSurfaces_data()
    {
        QTest::addColumn<int>("vertices");
        QTest::addColumn<QString>("columns");
        QTest::newRow("triangle") << 3 << "1 3 0 2 0 1 2 3";
        QTest::newRow("quadrilateral") << 4 << "2 4 0 2 0 1 2 3 4";
        QTest::newRow("five vertices") << 5 << "0 0 0 2 0 1 2 3 4 5";
        QTest::newRow("eight vertices") << 8 << "0 0 0 2 0 1 2 3 4 5 6 7 8";
    }

    void typeCodesOfSurfaces()
    {
        QFETCH(int, vertices);
        QFETCH(QString, columns);
        SolverInputCase c;
        c.element(30, c.modelEntity(2, 2), upTo(vertices));
        QCOMPARE(c.written(&GbiWriter::writeElements), "30 " + columns + "\n-1\n");
    }

    void verticesKeepTheNodeOrder()
    {
        SolverInputCase c;
        c.element(1, c.region(5), {40, 10, 30, 20});
        QCOMPARE(c.written(&GbiWriter::writeElements),
                 QStringLiteral("1 4 4 0 5 0 40 10 30 20\n-1\n"));
    }

    void meshFacesOfASolidModelAreNoElements()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        c.element(1, c.face(1, {region}), {1, 2, 3});
        QCOMPARE(c.written(&GbiWriter::writeElements), QStringLiteral("-1\n"));
    }

    void boundaryLayerIsReadFromTheElement_data()
    {
        QTest::addColumn<QVariant>("onElement");
        QTest::addColumn<QString>("column");
        QTest::newRow("true") << QVariant(true) << "1";
        QTest::newRow("false") << QVariant(false) << "0";
        QTest::newRow("absent") << QVariant() << "0";
    }

    void boundaryLayerIsReadFromTheElement()
    {
        QFETCH(QVariant, onElement);
        QFETCH(QString, column);
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::InBL, true);
        auto* element = c.element(1, region, upTo(4));
        if (onElement.isValid()) {
            element->attributes().insert(AttributeType::InBL, onElement);
        }
        QCOMPARE(c.written(&GbiWriter::writeElements), "1 4 4 0 5 " + column + " 1 2 3 4\n-1\n");
    }

    void shellElementsAreLeftOut_data()
    {
        QTest::addColumn<QVariant>("isShell");
        QTest::newRow("true") << QVariant(true);
        QTest::newRow("false") << QVariant(false);
        QTest::newRow("invalid") << QVariant();
    }

    void shellElementsAreLeftOut()
    {
        QFETCH(QVariant, isShell);
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::IsShell, isShell);
        c.element(1, region, upTo(4));
        c.element(2, c.region(6), upTo(5));
        QCOMPARE(c.written(&GbiWriter::writeElements),
                 QStringLiteral("2 6 5 0 6 0 1 2 3 4 5\n-1\n"));
    }

    void shellElementOfUnknownFluidRegionDoesNoHarm()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::IsShell, true);
        region->attributes().insert(AttributeType::FluidRegion, 99);
        c.element(1, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeElements), QStringLiteral("-1\n"));
    }

    void materialOfTheRegion()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::MaterialId, 17);
        c.element(1, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeElements),
                 QStringLiteral("1 4 4 17 5 0 1 2 3 4\n-1\n"));
    }

    void materialOfTheFluidRegion()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::MaterialId, 17);
        region->attributes().insert(AttributeType::FluidRegion, 8);
        c.region(8)->attributes().insert(AttributeType::MaterialId, 23);
        c.element(1, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeElements),
                 QStringLiteral("1 4 4 23 5 0 1 2 3 4\n-1\n"));
    }

    void fluidRegionWithoutMaterialGivesZero()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::MaterialId, 17);
        region->attributes().insert(AttributeType::FluidRegion, 8);
        c.region(8);
        c.element(1, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeElements), QStringLiteral("1 4 4 0 5 0 1 2 3 4\n-1\n"));
    }

    void fluidRegionZeroIsNone()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        region->attributes().insert(AttributeType::MaterialId, 17);
        region->attributes().insert(AttributeType::FluidRegion, 0);
        c.element(1, region, upTo(4));
        QCOMPARE(c.written(&GbiWriter::writeElements),
                 QStringLiteral("1 4 4 17 5 0 1 2 3 4\n-1\n"));
    }

    void fluidRegionOfAPlanarModelIsAFace()
    {
        SolverInputCase c;
        auto* region = c.modelEntity(2, 5);
        region->attributes().insert(AttributeType::FluidRegion, 8);
        c.modelEntity(2, 8)->attributes().insert(AttributeType::MaterialId, 23);
        c.element(1, region, upTo(3));
        QCOMPARE(c.written(&GbiWriter::writeElements), QStringLiteral("1 1 3 23 5 0 1 2 3\n-1\n"));
    }

    void elementsOfSeveralRegions()
    {
        SolverInputCase c;
        auto* a = c.region(1);
        auto* b = c.region(2);
        a->attributes().insert(AttributeType::MaterialId, 10);
        b->attributes().insert(AttributeType::MaterialId, 20);
        c.element(1, a, {1, 2, 3, 4});
        c.element(2, b, {2, 3, 4, 5});
        c.element(3, a, {3, 4, 5, 6});
        const QString text = c.written(&GbiWriter::writeElements);
        QVERIFY(text.endsWith(QStringLiteral("\n-1\n")));
        QCOMPARE(sortedLines(text), (QStringList{"", "-1", "1 4 4 10 1 0 1 2 3 4",
                                                 "2 4 4 20 2 0 2 3 4 5", "3 4 4 10 1 0 3 4 5 6"}));
    }

    void elementsLeaveThePrecision()
    {
        SolverInputCase c;
        c.element(1, c.region(5), upTo(4));
        HostStream host;
        host.stream.setRealNumberPrecision(9);
        GbiWriter(&c.database).writeElements(host.stream);
        QCOMPARE(host.stream.realNumberPrecision(), 9);
    }

    void changesBetweenCallsAreSeen()
    {
        SolverInputCase c;
        auto* region = c.region(5);
        c.element(1, region, upTo(4));
        const GbiWriter writer(&c.database);
        HostStream host;
        writer.writeElements(host.stream);
        region->attributes().insert(AttributeType::MaterialId, 3);
        writer.writeElements(host.stream);
        QCOMPARE(host.text, QStringLiteral("1 4 4 0 5 0 1 2 3 4\n-1\n1 4 4 3 5 0 1 2 3 4\n-1\n"));
    }

    void copiesShareModelAndMesh()
    {
        SolverInputCase c;
        SolverInputCase other;
        c.node(4, Vector(1, 2, 3));
        const GbiWriter writer(&c.database);
        const GbiWriter copy(writer);
        GbiWriter assigned(&other.database);
        assigned = writer;
        HostStream host;
        copy.writeNodes(host.stream, 1.0);
        assigned.writeNodes(host.stream, 2.0);
        QCOMPARE(host.text, QStringLiteral("4 1 2 3\n-1\n4 2 4 6\n-1\n"));
    }
};

QTEST_APPLESS_MAIN(TestGbiWriterElements)
#include "tst_GbiWriterElements.moc"
