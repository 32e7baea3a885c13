#include "ImportTest.h"
#include "TwoCubes.h"

using namespace TwoCubes;
using Counts = std::vector<int>;
Q_DECLARE_METATYPE(Counts)

/// Medit files as mesh generators write them.
class TestImportMedit : public ImportTest
{
    Q_OBJECT

private slots:
    void readsEveryLayout_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray lines = meditHead() + meditVertices() + meditHexahedra(1, 2) + "End\n";
        const auto row = [](const char* name, const QByteArray& content) {
            QTest::newRow(name) << content;
        };
        row("count on a line of its own", lines);
        row("count behind the keyword", QByteArray(lines)
                                            .replace("Vertices\n", "Vertices ")
                                            .replace("Hexahedra\n", "Hexahedra ")
                                            .replace("Dimension\n", "Dimension "));
        row("one line", lines.simplified());
        row("line breaks of another system", QByteArray(lines).replace('\n', "\r\n"));
        row("indented", "  " + QByteArray(lines).replace('\n', "\n\t "));
        row("comments",
            "# of a remesher\n" + QByteArray(lines)
                                      .replace("Vertices\n", "\n# Set of nodes\nVertices"
                                                             " # 12\n")
                                      .replace("End\n", "#3 bodies\n\nEnd\n"));
        row("version 1", QByteArray(lines).replace("Formatted 2", "Formatted 1"));
        row("version 3 on a line of its own",
            QByteArray(lines).replace("Formatted 2", "Formatted\n3"));
        row("no line break at the end", lines.trimmed());
        row("text behind the end", lines + "Vertices\n3\n");
        row("numbers as another language has them",
            QByteArray(lines).replace("1 0 0 0\n", "+1.0D+00 0.d0 -0. 0\n"));
        row("other sections",
            meditHead() + meditVertices() +
                "Corners\n2\n1\n12\nRequiredVertices 1 5\nEdges\n0\nRidges\n1\n1\nNormals\n1\n"
                "0 0 1\nNormalAtVertices\n1\n1 1\nTangents\n1\n1 0 0\nTangentAtVertices\n1\n"
                "1 1\nAngleOfCornerBound 46\nGeometry \"a file # of 3.geo\"\n" +
                meditHexahedra(1, 2) + "RequiredHexahedra 0\nEnd\n");
        row("bodies ahead of nodes",
            meditHead() + meditHexahedra(1, 2) + meditVertices() + "End\n");
    }

    void readsEveryLayout()
    {
        QFETCH(QByteArray, content);
        const ToolRun run = import(content);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{0, 1, 3, 2}));
        QCOMPARE(imported.meshCounts()[0], 12);
        QCOMPARE(imported.meshCounts()[3], 2);
        QCOMPARE(imported.faults(), QString());
        for (auto* region : imported.entities(3)) {
            QCOMPARE(ImportedCase::volume(region), 1.0);
        }
    }

    void separatesBodiesWithoutReference()
    {
        const ToolRun run = import(
            meditHead() + "Vertices 8 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 0 5 0 0 0 6 0 0 0 5 1 0 0 "
                          "5 0 1 0 Tetrahedra 2 1 2 3 4 0 5 6 7 8 0 End\n");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(ImportedCase(path("case")).modelCounts(), (Counts{0, 0, 2, 2}));
    }

    void separatesSidesWithoutReference()
    {
        // One side of each body and the side between them; the rest is added.
        const ToolRun run = import(meditHead() + meditVertices() +
                                   "Quadrilaterals 3 1 4 10 7 0 3 6 12 9 0 2 5 11 8 0\n" +
                                   meditHexahedra(1, 2) + "End\n");
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts()[2], 5);
        QCOMPARE(imported.faults(), QString());
    }

    void readsEveryKind_data()
    {
        QTest::addColumn<QByteArray>("section");
        QTest::addColumn<double>("volume");
        QTest::newRow("tetrahedra") << QByteArray("Tetrahedra 1 1 2 4 7 3\n") << 1.0 / 6.0;
        QTest::newRow("pyramids") << QByteArray("Pyramids 1 1 2 5 4 7 3\n") << 1.0 / 3.0;
        QTest::newRow("prisms") << QByteArray("Prisms 1 1 2 4 7 8 10 3\n") << 0.5;
        QTest::newRow("prisms by another name")
            << QByteArray("Pentahedra 1 1 2 4 7 8 10 3\n") << 0.5;
        QTest::newRow("hexahedra") << QByteArray("Hexahedra 1 1 2 5 4 7 8 11 10 3\n") << 1.0;
    }

    void readsEveryKind()
    {
        QFETCH(QByteArray, section);
        QFETCH(double, volume);
        const ToolRun run = import(meditHead() + meditVertices() + section + "End\n");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(!run.errors.contains("negative"), run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.meshCounts()[3], 1);
        QCOMPARE(imported.entities(3)[0]->id(), 3);
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - volume) < 1e-12);
        QCOMPARE(imported.faults(), QString());
    }

    void takesTheCornersOfHigherOrder_data()
    {
        QTest::addColumn<QByteArray>("section");
        QTest::newRow("second") << QByteArray("TetrahedraP2 1 1 2 4 7 3 5 6 8 9 10 3\n");
        QTest::newRow("second, told by the entry")
            << QByteArray("Tetrahedra 1 1 2 4 7 3 5 6 8 9 10 3\n");
        QTest::newRow("second, prisms")
            << QByteArray("PrismsP2 1 1 2 4 7 8 10 3 5 6 9 11 12 3 5 6 9 11 12 3\n");
    }

    void takesTheCornersOfHigherOrder()
    {
        QFETCH(QByteArray, section);
        const ToolRun run = import(meditHead() + meditVertices() + section + "End\n");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("of higher order"), run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.meshCounts()[3], 1);
        QVERIFY(ImportedCase::volume(imported.entities(3)[0]) > 0.16);
        QCOMPARE(imported.faults(), QString());
    }

    void readsPlanarMeshes()
    {
        const ToolRun run =
            import("MeshVersionFormatted 0\n\nDimension\n2\n\nVertices\n5\n0 0 1\n1 0 1\n1 1 1\n"
                   "0 1 1\n2 0 2\nTriangles\n1\n2 5 3 9\nQuadrilaterals\n1\n1 2 3 4 4\n"
                   "Edges\n1\n1 2 6\nSubDomain\n1\n2 1 1 0\nEnd\n");
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.model()->faceDimension(), 1);
        QCOMPARE(imported.meshCounts()[2], 2);
        QVERIFY(imported.model()->entity(2, 4) != nullptr);
        QVERIFY(imported.model()->entity(2, 9) != nullptr);
        QVERIFY(imported.model()->entity(1, 6) != nullptr);
    }

    void warnsOfAMissingEnd_data()
    {
        QTest::addColumn<QByteArray>("ending");
        QTest::addColumn<QByteArray>("more");
        QTest::newRow("ended line") << QByteArray("\n") << QByteArray();
        QTest::newRow("blank lines") << QByteArray("\n\n \n") << QByteArray();
        QTest::newRow("open line")
            << QByteArray() << QByteArray(", although its last line is not ended");
        QTest::newRow("another section last")
            << QByteArray("\nCorners\n3\n1\n2\n3\n") << QByteArray();
    }

    void warnsOfAMissingEnd()
    {
        QFETCH(QByteArray, ending);
        QFETCH(QByteArray, more);
        const ToolRun run =
            import(meditHead() + meditVertices() + meditHexahedra(1, 2).trimmed() + ending);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors,
                 "ovrageo: warning: " + path("in.mesh").toUtf8() +
                     ": there is no End; as each section has all that it announces, the "
                     "file is taken as whole" +
                     more + "\n");
        QCOMPARE(ImportedCase(path("case")).meshCounts()[3], 2);
    }

    void refusesWhatIsWrong_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const QByteArray& content, const char* words) {
            QTest::newRow(name) << content << QByteArray(words);
        };
        const QByteArray both = meditHexahedra(1, 2);
        row("cut in the nodes", meditHead() + "Vertices\n12\n0 0 0 0\n1 0 0 0\n2",
            "cut off at byte 64: section Vertices of line 4: it announces 12 entries, which its 9 "
            "numbers do not make up");
        row("cut in the first node", meditHead() + "Vertices\n12\n5",
            "it announces 12 entries, which its 1 number does not make up\n");
        row("cut in the bodies",
            meditHead() + meditVertices() + "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n2 3",
            "section Hexahedra of line 18: it announces 2 entries, which its 11 numbers do not");
        row("cut in an entry",
            meditHead() + meditVertices() + "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n2 3 6",
            "section Hexahedra of line 18: an entry of it has 6 numbers in place of 9");
        row("cut between entries",
            meditHead() + meditVertices() + "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n", "cut off");
        row("cut behind a keyword", meditHead() + meditVertices() + "Hexahedra\n",
            "the file ends where a");
        row("cut behind a count", meditHead() + meditVertices() + "Hexahedra\n2", "cut off");
        row("cut in another section", meditHead() + meditVertices() + both + "Corners\n4\n1\n2\n3",
            "section Corners of line 22: it announces 4 entries");
        row("cut ahead of the bodies", meditHead() + meditVertices(), "there are no elements");
        row("too many entries",
            meditHead() + meditVertices() + "Edges 1 1 2 3 4 5 6\n" + both + "End\n",
            "section Edges of line 18: an entry of it has 6 numbers in place of 3: nodes and a "
            "reference");
        row("no such node",
            meditHead() + meditVertices() +
                "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n"
                "2 3 6 5 8 9 657 11 2\nEnd\n",
            "line 21: entry 2 of Hexahedra names node 657, but Vertices has 12 entries only");
        row("node 0", meditHead() + meditVertices() + "Hexahedra\n1\n0 2 5 4 7 8 11 10 1\nEnd\n",
            "line 20: entry 1 of Hexahedra names node 0; nodes are counted from 1");
        row("word for a node",
            meditHead() + meditVertices() + "Edges\n1\n1 2.5 1\n" + both + "End\n",
            "line 20: a whole number is expected, not \"2.5\"");
        row("no coordinate",
            meditHead() + meditVertices().replace("2 0 0", "2 0 0x1") + both + "End\n",
            "line 8: \"0x1\" is no coordinate");
        row("number for a keyword", meditHead() + "7\n" + meditVertices() + both + "End\n",
            "line 4: a keyword is expected, not \"7\"");
        row("dimension", "MeshVersionFormatted 2\nDimension 4\n" + meditVertices() + both + "End\n",
            "line 2: Dimension is 4, not 2 or 3");
        row("GetFEM", "% GETFEM MESH FILE\nBEGIN POINTS LIST\nPOINT 0 1 2\nEND MESH\n",
            "not a Medit file in text form: it does not begin with MeshVersionFormatted");
        row("NETGEN", "mesh3d\ndimension\n3\ngeomtype\n0\n",
            "not a Medit file in text form: it does not begin with MeshVersionFormatted");
        row("other kind of file", "solid cube\nendsolid cube\n", "not a Medit file in text form");
        row("binary", QByteArray("\1\0\0\0\3\0\0\0", 8), "not a Medit file in text form");
        row("reference",
            meditHead() + meditVertices() + "Edges\n1\n1 2 4000000000\n" + both + "End\n",
            "line 20: the reference 4000000000 is too large");
        row("count", meditHead() + meditVertices() + "Edges\n-1\n" + both + "End\n",
            "section Edges of line 18: it announces -1 entries");
    }

    void refusesWhatIsWrong()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, words);
        checkRefused(import(content), 4, words);
    }

    void saysThatBinaryFilesAreNotRead()
    {
        checkRefused(importContent("in.meshb", QByteArray("\1\0\0\0\3\0\0\0", 8)), 6,
                     "binary Medit files cannot be imported");
    }

private:
    ToolRun import(const QByteArray& content) const { return importContent("in.mesh", content); }
};

QTEST_APPLESS_MAIN(TestImportMedit)
#include "tst_ImportMedit.moc"
