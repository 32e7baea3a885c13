#include "TestMesh.h"
#include "Utility.h"

#include <QTest>

#include <algorithm>

using namespace Ovra::Geo;

namespace
{

const QList<QList<int>> triangleSides = {{0, 1}, {1, 2}, {2, 0}};
const QList<QList<int>> quadrilateralSides = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};

const QList<QList<int>>& sidesOf(int dimension, int vertexCount)
{
    static const QMap<int, QList<QList<int>>> cells = {{4, TestMesh::cellFaces(4)},
                                                       {5, TestMesh::cellFaces(5)},
                                                       {6, TestMesh::cellFaces(6)},
                                                       {8, TestMesh::cellFaces(8)}};
    if (dimension == 3) {
        return *cells.find(vertexCount);
    }
    return vertexCount == 3 ? triangleSides : quadrilateralSides;
}

// A lookup that runs before main(), and perhaps before the library's own static objects are made.
int earlyLookup()
{
    TestMesh test;
    test.addUnitCell(8);
    return Utility::getLocalFaceIndex(test.mesh().entity(2, 6), test.mesh().entity(3, 1));
}

const int earlyResult = earlyLookup();

} // namespace

class TestElementTopology : public QObject
{
    Q_OBJECT

private slots:
    void numbersTheFacesOfEveryKind_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<int>("vertexCount");
        QTest::addColumn<int>("faceCount");
        QTest::newRow("triangle") << 2 << 3 << 3;
        QTest::newRow("quadrilateral") << 2 << 4 << 4;
        QTest::newRow("tetrahedron") << 3 << 4 << 4;
        QTest::newRow("pyramid") << 3 << 5 << 5;
        QTest::newRow("wedge") << 3 << 6 << 5;
        QTest::newRow("hexahedron") << 3 << 8 << 6;
    }

    /// Every set of two, three or four vertices of the element, in every order: the rows of the
    /// table get their numbers, all others none.
    void numbersTheFacesOfEveryKind()
    {
        QFETCH(int, dimension);
        QFETCH(int, vertexCount);
        QFETCH(int, faceCount);
        const QList<QList<int>>& rows = sidesOf(dimension, vertexCount);
        QCOMPARE(rows.size(), faceCount);
        makeElement(dimension, vertexCount);
        int found = 0;
        for (unsigned mask = 1; mask < 1U << vertexCount; ++mask) {
            const QList<int> corners = bits(mask);
            const int expected = rowOf(rows, corners);
            found += expected >= 0 ? 1 : 0;
            verifyEveryOrder(corners, expected);
        }
        QCOMPARE(found, faceCount);
    }

    void givesTheFixedNumbersOfAHexahedron()
    {
        makeElement(3, 8);
        QCOMPARE(localFace({4, 5, 6, 7}), 5);
        QCOMPARE(localFace({0, 1, 2, 3}), 4);
        QCOMPARE(localFace({0, 3, 4, 7}), 0);
        QCOMPARE(localFace({1, 2, 5, 6}), 1);
        QCOMPARE(localFace({0, 1, 4, 5}), 2);
        QCOMPARE(localFace({2, 3, 6, 7}), 3);
    }

    void worksBeforeMain() { QCOMPARE(earlyResult, 5); }

    void setsOfPositions()
    {
        makeElement(3, 6);
        QCOMPARE(localVertices({5, 1, 3}), QSet<int>({1, 3, 5}));
        QCOMPARE(localVertices({2, 2}), QSet<int>({2}));
        QCOMPARE(localVertices({}), QSet<int>());
    }

    void foreignVerticesCountAsPositionZero()
    {
        makeElement(3, 8);
        auto* stranger = test_.addVertex(Vector());
        auto* face = test_.addElement(2, {corner(1), corner(2), corner(3), stranger});
        QCOMPARE(Utility::getLocalVertexIndexSet(face, element_), QSet<int>({0, 1, 2, 3}));
        QCOMPARE(Utility::getLocalFaceIndex(face, element_), 4);
        auto* other = test_.addElement(2, {corner(5), corner(6), corner(7), stranger});
        QCOMPARE(Utility::getLocalVertexIndexSet(other, element_), QSet<int>({0, 5, 6, 7}));
        QCOMPARE(Utility::getLocalFaceIndex(other, element_), -1);
    }

    void aVertexThatIsListedTwiceKeepsItsLastPosition()
    {
        makeElement(3, 8);
        element_->replaceAdjacency(corner(0), vertices_[4]);
        // The element is now 4 1 2 3 4 5 6 7 by the old positions.
        QCOMPARE(localVertices({4, 5, 6, 7}), QSet<int>({4, 5, 6, 7}));
        QCOMPARE(localFace({4, 5, 6, 7}), 5);
        QCOMPARE(localFace({4, 1, 2, 3}), -1);
        // The vertex that was replaced is foreign now.
        QCOMPARE(localFace({0, 1, 2, 3}), 4);
    }

    void theDimensionOfTheFaceChoosesTheTable()
    {
        makeElement(3, 4);
        auto* edge = test_.addElement(1, {corner(3), corner(0)});
        QCOMPARE(Utility::getLocalFaceIndex(edge, element_), 3);
        auto* diagonal = test_.addElement(1, {corner(0), corner(2)});
        QCOMPARE(Utility::getLocalFaceIndex(diagonal, element_), -1);
    }

    void answersMinusOneForOtherElements_data()
    {
        QTest::addColumn<int>("faceDimension");
        QTest::addColumn<int>("vertexCount");
        for (int count : {0, 1, 2, 5, 6, 8, 9}) {
            QTest::addRow("%d vertices, edge", count) << 1 << count;
        }
        for (int count : {0, 1, 2, 3, 7, 9, 40}) {
            QTest::addRow("%d vertices, face", count) << 2 << count;
        }
    }

    void answersMinusOneForOtherElements()
    {
        QFETCH(int, faceDimension);
        QFETCH(int, vertexCount);
        makeElement(faceDimension + 1, vertexCount);
        auto* face = test_.addElement(faceDimension, vertices_);
        QCOMPARE(Utility::getLocalFaceIndex(face, element_), -1);
    }

private:
    void makeElement(int dimension, int vertexCount)
    {
        test_.database.clear();
        vertices_.clear();
        for (int i = 0; i < vertexCount; ++i) {
            vertices_.append(test_.addVertex(Vector(i, 0, 0)));
        }
        element_ = test_.addElement(dimension, vertices_);
    }

    MeshVertex* corner(int index) { return vertices_[index]; }

    MeshEntity* side(const QList<int>& corners)
    {
        TestMesh::Vertices vertices;
        for (int index : corners) {
            vertices.append(corner(index));
        }
        return test_.addElement(element_->dimension() - 1, vertices);
    }

    int localFace(const QList<int>& corners)
    {
        return Utility::getLocalFaceIndex(side(corners), element_);
    }

    QSet<int> localVertices(const QList<int>& corners)
    {
        return Utility::getLocalVertexIndexSet(side(corners), element_);
    }

    static QList<int> bits(unsigned mask)
    {
        QList<int> result;
        for (int i = 0; i < 8; ++i) {
            if ((mask & (1U << i)) != 0) {
                result.append(i);
            }
        }
        return result;
    }

    static int rowOf(const QList<QList<int>>& rows, const QList<int>& corners)
    {
        for (qsizetype row = 0; row < rows.size(); ++row) {
            if (QSet<int>(rows[row].cbegin(), rows[row].cend()) ==
                QSet<int>(corners.cbegin(), corners.cend())) {
                return static_cast<int>(row);
            }
        }
        return -1;
    }

    void verifyEveryOrder(QList<int> corners, int expected)
    {
        if (corners.size() > 4) {
            QCOMPARE(localFace(corners), expected);
            return;
        }
        do {
            QCOMPARE(localFace(corners), expected);
        } while (std::next_permutation(corners.begin(), corners.end()));
    }

    TestMesh test_;
    TestMesh::Vertices vertices_;
    MeshEntity* element_ = nullptr;
};

QTEST_APPLESS_MAIN(TestElementTopology)
#include "tst_ElementTopology.moc"
