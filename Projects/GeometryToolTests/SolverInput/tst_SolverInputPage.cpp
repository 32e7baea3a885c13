#include "ElementTopology.h"
#include "GbiWriter.h"
#include "GeometryDatabaseTests/TestMesh.h"
#include "Places.h"
#include "Utility.h"

#include <QFile>
#include <QMap>
#include <QTest>

using namespace Ovra::Geo;
using Ovra::GeoTool::ElementTopology;

namespace
{

/// What the page says of a kind of element.
struct Row
{
    QString code;
    QList<QList<int>> faces;
};

QList<int> numbers(const QString& text)
{
    QList<int> result;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        result.append(word.toInt());
    }
    return result;
}

/// The rows of the table of elements, by name.
QMap<QString, Row> readTable()
{
    QMap<QString, Row> table;
    QFile file(Places::documentation() + QStringLiteral("/SolverInput.md"));
    if (!file.open(QIODevice::ReadOnly)) {
        return table;
    }
    QString page = QString::fromUtf8(file.readAll());
    page = page.mid(page.indexOf(QLatin1String("| Element | Code |")));
    for (const QString& line : page.left(page.indexOf(QLatin1String("\n\n"))).split('\n').mid(2)) {
        const QStringList cells = line.split(QLatin1Char('|'));
        Row& row = table[cells.value(1).trimmed()];
        row.code = cells.value(2).trimmed();
        for (const QString& cell : cells.mid(3)) {
            if (!cell.trimmed().isEmpty()) {
                row.faces.append(numbers(cell));
            }
        }
    }
    return table;
}

} // namespace

/// The table of elements on the page about the solver input says what the library does.
class TestSolverInputPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { table_ = readTable(); }

    void hasEveryKindOfElement()
    {
        QStringList kinds;
        for (const ElementTopology& kind : ElementTopology::all()) {
            if (kind.dimension > 1) {
                kinds.append(QLatin1String(kind.name));
            }
        }
        kinds.sort();
        QCOMPARE(table_.keys(), kinds);
    }

    void numbersFacesLikeTheLibrary_data() { addKinds(); }

    void numbersFacesLikeTheLibrary()
    {
        QFETCH(int, dimension);
        QFETCH(int, size);
        const Row row = table_.value(QString::fromLatin1(QTest::currentDataTag()));
        TestMesh test;
        MeshEntity* const element = elementOf(test, dimension, size);
        for (int face = 0; face < row.faces.size(); ++face) {
            TestMesh::Vertices vertices;
            for (const int position : row.faces.at(face)) {
                vertices.append(static_cast<MeshVertex*>(element->adjacencyAt(0, position)));
            }
            MeshEntity* const side = test.addElement(dimension - 1, vertices);
            QCOMPARE(Utility::getLocalFaceIndex(side, element), face);
        }
        const auto& sides = ElementTopology::find(dimension, size)->sides;
        QCOMPARE(static_cast<std::size_t>(row.faces.size()), sides.size());
        for (std::size_t side = 0; side < sides.size(); ++side) {
            QCOMPARE(row.faces.at(static_cast<qsizetype>(side)),
                     QList<int>(sides[side].begin(), sides[side].end()));
        }
    }

    void hasTheCodesOfTheElementSection_data() { addKinds(); }

    void hasTheCodesOfTheElementSection()
    {
        QFETCH(int, dimension);
        QFETCH(int, size);
        TestMesh test;
        ModelEntity* const region =
            dimension == 3 ? test.addModelRegion() : static_cast<ModelEntity*>(test.addModelFace());
        region->addChild(elementOf(test, dimension, size));
        QString text;
        QTextStream stream(&text);
        GbiWriter(&test.database).writeElements(stream);
        const Row row = table_.value(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(text.split(QLatin1Char(' ')).value(1), row.code);
    }

private:
    static void addKinds()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<int>("size");
        for (const ElementTopology& kind : ElementTopology::all()) {
            if (kind.dimension > 1) {
                QTest::newRow(kind.name) << kind.dimension << kind.vertexCount;
            }
        }
    }

    static MeshEntity* elementOf(TestMesh& test, int dimension, int size)
    {
        TestMesh::Vertices vertices;
        for (int i = 0; i < size; ++i) {
            vertices.append(test.addVertex(Vector(i, i * i, i * i * i)));
        }
        return test.addElement(dimension, vertices);
    }

    QMap<QString, Row> table_;
};

QTEST_APPLESS_MAIN(TestSolverInputPage)
#include "tst_SolverInputPage.moc"
