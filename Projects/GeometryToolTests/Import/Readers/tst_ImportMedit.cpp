#include "ImportChecks.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using Counts = std::vector<int>;
Q_DECLARE_METATYPE(Counts)

/// Medit files as mesh generators write them.
class TestImportMedit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void readsEveryLayout_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray lines = head() + nodes() + hexahedra(1, 2) + "End\n";
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
            head() + nodes() +
                "Corners\n2\n1\n12\nRequiredVertices 1 5\nEdges\n0\nRidges\n1\n1\nNormals\n1\n"
                "0 0 1\nNormalAtVertices\n1\n1 1\nTangents\n1\n1 0 0\nTangentAtVertices\n1\n"
                "1 1\nAngleOfCornerBound 46\nGeometry \"a file # of 3.geo\"\n" +
                hexahedra(1, 2) + "RequiredHexahedra 0\nEnd\n");
        row("bodies ahead of nodes", head() + hexahedra(1, 2) + nodes() + "End\n");
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

    // 0 and below mean that no reference is given.
    void rebuildsWhereNoReferenceIsGiven_data()
    {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("right");
        QTest::addColumn<Counts>("model");
        QTest::addColumn<Counts>("ids");
        const Counts one{0, 0, 1, 1};
        const Counts two{0, 1, 3, 2};
        QTest::newRow("none") << 0 << 0 << one << Counts{1};
        QTest::newRow("negative") << -7 << -7 << one << Counts{1};
        QTest::newRow("none and negative") << 0 << -7 << one << Counts{1};
        QTest::newRow("some and none") << 5 << 0 << two << Counts{5, 6};
        QTest::newRow("none and some") << -1 << 3 << two << Counts{3, 4};
        QTest::newRow("some") << 7 << 2 << two << Counts{2, 7};
    }

    void rebuildsWhereNoReferenceIsGiven()
    {
        QFETCH(int, left);
        QFETCH(int, right);
        QFETCH(Counts, model);
        QFETCH(Counts, ids);
        const ToolRun run = import(head() + nodes() + hexahedra(left, right) + "End\n");
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), model);
        QCOMPARE(imported.faults(), QString());
        Counts found;
        for (auto* region : imported.entities(3)) {
            found.push_back(region->id());
        }
        QCOMPARE(found, ids);
    }

    void separatesBodiesWithoutReference()
    {
        const ToolRun run =
            import(head() + "Vertices 8 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 0 5 0 0 0 6 0 0 0 5 1 0 0 "
                            "5 0 1 0 Tetrahedra 2 1 2 3 4 0 5 6 7 8 0 End\n");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(ImportedCase(path("case")).modelCounts(), (Counts{0, 0, 2, 2}));
    }

    void separatesSidesWithoutReference()
    {
        // One side of each body and the side between them; the rest is added.
        const ToolRun run =
            import(head() + nodes() + "Quadrilaterals 3 1 4 10 7 0 3 6 12 9 0 2 5 11 8 0\n" +
                   hexahedra(1, 2) + "End\n");
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
        const ToolRun run = import(head() + nodes() + section + "End\n");
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
        const ToolRun run = import(head() + nodes() + section + "End\n");
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
        const ToolRun run = import(head() + nodes() + hexahedra(1, 2).trimmed() + ending);
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
        const QByteArray both = hexahedra(1, 2);
        row("cut in the nodes", head() + "Vertices\n12\n0 0 0 0\n1 0 0 0\n2",
            "cut off at byte 64: section Vertices of line 4: it announces 12 entries, which its 9 "
            "numbers do not make up");
        row("cut in the bodies", head() + nodes() + "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n2 3",
            "section Hexahedra of line 18: it announces 2 entries, which its 11 numbers do not");
        row("cut in an entry", head() + nodes() + "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n2 3 6",
            "section Hexahedra of line 18: an entry of it has 6 numbers in place of 9");
        row("cut between entries", head() + nodes() + "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n",
            "cut off");
        row("cut behind a keyword", head() + nodes() + "Hexahedra\n", "the file ends where a");
        row("cut behind a count", head() + nodes() + "Hexahedra\n2", "cut off");
        row("cut in another section", head() + nodes() + both + "Corners\n4\n1\n2\n3",
            "section Corners of line 22: it announces 4 entries");
        row("cut ahead of the bodies", head() + nodes(), "there are no elements");
        row("too many entries", head() + nodes() + "Edges 1 1 2 3 4 5 6\n" + both + "End\n",
            "section Edges of line 18: an entry of it has 6 numbers in place of 3: nodes and a "
            "reference");
        row("no such node",
            head() + nodes() +
                "Hexahedra\n2\n1 2 5 4 7 8 11 10 1\n"
                "2 3 6 5 8 9 657 11 2\nEnd\n",
            "line 21: entry 2 of Hexahedra names node 657, but Vertices has 12 entries only");
        row("node 0", head() + nodes() + "Hexahedra\n1\n0 2 5 4 7 8 11 10 1\nEnd\n",
            "line 20: entry 1 of Hexahedra names node 0; nodes are counted from 1");
        row("word for a node", head() + nodes() + "Edges\n1\n1 2.5 1\n" + both + "End\n",
            "line 20: a whole number is expected, not \"2.5\"");
        row("no coordinate", head() + nodes().replace("2 0 0", "2 0 0x1") + both + "End\n",
            "line 8: \"0x1\" is no coordinate");
        row("number for a keyword", head() + "7\n" + nodes() + both + "End\n",
            "line 4: a keyword is expected, not \"7\"");
        row("dimension", "MeshVersionFormatted 2\nDimension 4\n" + nodes() + both + "End\n",
            "line 2: Dimension is 4, not 2 or 3");
        row("other kind of file", "solid cube\nendsolid cube\n", "not a Medit file in text form");
        row("binary", QByteArray("\1\0\0\0\3\0\0\0", 8), "not a Medit file in text form");
        row("reference", head() + nodes() + "Edges\n1\n1 2 4000000000\n" + both + "End\n",
            "line 20: the reference 4000000000 is too large");
        row("count", head() + nodes() + "Edges\n-1\n" + both + "End\n",
            "section Edges of line 18: it announces -1 entries");
    }

    void refusesWhatIsWrong()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, words);
        const ToolRun run = import(content);
        QVERIFY2(run.exitCode == 4, run.errors.constData());
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains(words), run.errors.constData());
    }

    void saysThatBinaryFilesAreNotRead()
    {
        QVERIFY(writeContent(path("in.meshb"), QByteArray("\1\0\0\0\3\0\0\0", 8)));
        const ToolRun run = runTool({"import", path("in.meshb"), "-o", path("case")});
        QCOMPARE(run.exitCode, 6);
        QVERIFY2(run.errors.contains("binary Medit files cannot be imported"),
                 run.errors.constData());
    }

private:
    static QByteArray head() { return "MeshVersionFormatted 2\nDimension\n3\n"; }

    /// Two unit cubes side by side, numbered along x, then y, then z.
    static QByteArray nodes()
    {
        QByteArray text = "Vertices\n12\n";
        for (int i = 0; i < 12; ++i) {
            text += QByteArray::number(i % 3) + ' ' + QByteArray::number(i / 3 % 2) + ' ' +
                    QByteArray::number(i / 6) + " 0\n";
        }
        return text;
    }

    static QByteArray hexahedra(int left, int right)
    {
        return "Hexahedra\n2\n1 2 5 4 7 8 11 10 " + QByteArray::number(left) +
               "\n2 3 6 5 8 9 12 11 " + QByteArray::number(right) + "\n";
    }

    QString path(const char* name) const { return directory_.filePath(QString::fromLatin1(name)); }

    ToolRun import(const QByteArray& content)
    {
        QFile::remove(path("case.geo_model"));
        QFile::remove(path("case.geo_mesh"));
        if (!writeContent(path("in.mesh"), content)) {
            return ToolRun();
        }
        return runTool({"import", path("in.mesh"), "-o", path("case")});
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportMedit)
#include "tst_ImportMedit.moc"
