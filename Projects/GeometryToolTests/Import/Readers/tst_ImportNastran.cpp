#include "ImportTest.h"

using Counts = std::vector<int>;

/// Forms of fields, coordinate systems and kinds of elements of Nastran files.
class TestImportNastran : public ImportTest
{
    Q_OBJECT

private slots:
    void readsAllForms_data()
    {
        QTest::addColumn<QByteArray>("content");
        const auto row = [](const char* name, const QByteArray& content) {
            QTest::newRow(name) << content;
        };
        const QByteArray element = "CTETRA,1,7,1,2,3,4\n";
        const QByteArray end = "ENDDATA\n";
        row("free", Grids + element + end);
        row("lower case", (Grids + element + end).toLower());
        row("line ends of other systems", QByteArray(Grids + element + end).replace("\n", "\r\n"));
        row("comments", "$ by hand\nSOL 101\nCEND\nTITLE = GRID\n  SPC = 1\nBEGIN BULK\n" +
                            QByteArray(Grids).replace("\n", " $ place\n") + element + end);
        row("small fields", "GRID           1       0      0.      0.      0.\n"
                            "GRID           2              2.      0.      0.\n"
                            "GRID           3              0.      3.      0.\n"
                            "GRID           4              0.      0.      1.\n"
                            "CTETRA         1       7       1       2       3       4\n" +
                                end);
        row("tabs", QByteArray(Grids + element + end).replace(',', '\t'));
        row("large fields", large("GRID", {"1", "", "0.", "0.", "0."}) +
                                large("GRID", {"2", "", "2.", "0.", "0."}) +
                                large("GRID", {"3", "", "0.", "3.0D0", "0."}) +
                                large("GRID", {"4", "", "0.", "0.", "10.-1"}) +
                                large("CTETRA", {"1", "7", "1", "2", "3", "4"}) + end);
        row("large fields with commas", QByteArray(Grids + element + end)
                                            .replace(Grids, "GRID*,1,,0.,0.,*A\n*A,0.\n"
                                                            "GRID*,2,,2.,0.\n*,0.\n"
                                                            "GRID*,3,,0.,3.\n*,0.\n"
                                                            "GRID*,4,,0.,0.\n*,1.\n"));
        row("exponents", QByteArray(Grids + element + end)
                             .replace(",2.,", ",2.0+0,")
                             .replace(",3.,", ",.3D1,")
                             .replace(",1.\n", ",1.E+00\n"));
        row("the same place twice", Grids + Grids + element + end);
        row("more behind the end", Grids + element + end + "GRID,x\n");
        row("system", QByteArray(Grids).replace("GRID,4,,0.,0.,1.", "GRID,4,5,1.,0.,0.") +
                          "CORD2R,5,0,0.,0.,0.,1.,0.,0.\n,0.,0.,1.\n" + element + end);
        row("cylinder", QByteArray(Grids).replace("GRID,3,,0.,3.,0.", "GRID,3,5,3.,90.,-1.") +
                            "CORD2C,5,6,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
                            "CORD2R,6,,0.,0.,1.,0.,0.,2.\n,1.,0.,1.\n" +
                            element + end);
        row("pieces of other analyses",
            Grids + "CONM2,9,1,,3.\nPSOLID,7,1\nCORD2R,9,9,0.,0.,0.\n" + element + end);
    }

    void readsAllForms()
    {
        QFETCH(QByteArray, content);
        const ToolRun run = import(content);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(imported.meshCounts()[0], 4);
        QCOMPARE(imported.entities(3).size(), std::size_t(1));
        QCOMPARE(imported.entities(3)[0]->id(), 7);
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 1.0) < 1e-9);
    }

    void tellsWhatIsDropped_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("warning");
        const QByteArray between = "GRID,5,,1.,0.,0.\nGRID,6,,1.,1.5,0.\nGRID,7,,0.,1.5,0.\n"
                                   "GRID,8,,0.,0.,.5\nGRID,9,,1.,0.,.5\nGRID,10,,0.,1.5,.5\n";
        QTest::newRow("curved") << Grids + between + "CTETRA,1,7,1,2,3,4,5,6\n,7,8,9,10\nENDDATA\n"
                                << QByteArray("1 element of higher order becomes linear");
        QTest::newRow("curved, columns and a blank continuation")
            << Grids + between +
                   "CTETRA         1       7       1       2       3       4       5       6\n"
                   "               7       8       9      10\nENDDATA\n"
            << QByteArray("1 element of higher order becomes linear");
        QTest::newRow("partly curved")
            << Grids + "CTETRA,1,7,1,2,3,4,3\nENDDATA\n"
            << QByteArray("1 element with some of its nodes between corners becomes linear");
        QTest::newRow("no ENDDATA") << Grids + "CTETRA,1,7,1,2,3,4\n"
                                    << QByteArray("there is no ENDDATA; as its last line is ended, "
                                                  "the file is taken as whole");
    }

    void tellsWhatIsDropped()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, warning);
        const ToolRun run = import(content);
        QCOMPARE(run.errors, warningOf("case.bdf", warning));
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.meshCounts()[0], 4);
        QCOMPARE(imported.meshCounts()[3], 1);
    }

    void refuses_data()
    {
        addRefusalColumns();
        const auto row = addRefusal;
        const QByteArray whole = Grids + "CTETRA,1,7,1,2,3,4\nENDDATA\n";
        row("blanks between fields", "GRID    1               0.00E+00 0.00E+00 0.00E+00\n" + whole,
            4, "line 1: GRID: field 6, \"0 0.00E+\", is no number");
        row("no coordinate", QByteArray(whole).replace("2.,", "2x,"), 4,
            "line 2: GRID: field 4, \"2x\", is no number");
        row("not finite", QByteArray(whole).replace("2.,", "inf,"), 4,
            "line 2: GRID: field 4, \"inf\", is no number");
        row("no number of a node", QByteArray(whole).replace("1,2,3,4", "1,2,c,4"), 4,
            "line 5: CTETRA: field 6, \"c\", is no whole number");
        row("corner not given", QByteArray(whole).replace("1,2,3,4", "1,2,3"), 4,
            "line 5: CTETRA: corner 4 of 4 is not given");
        row("unknown node", QByteArray(whole).replace("1,2,3,4", "1,2,3,5"), 4,
            "line 5: element 1 names node 5, which the file does not have");
        row("two places", "GRID,1,,5.,5.,5.\n" + whole, 4,
            "line 2: GRID 1 is there twice, at two places");
        row("last line not ended", QByteArray(whole).replace("\nENDDATA\n", ""), 4,
            "there is no ENDDATA, and its last line is not ended");
        row("continuation of another", QByteArray(whole).replace("3,4\n", "3,4,,,+A\n+B,1\n"), 4,
            "line 6: the continuation B does not belong to CTETRA of line 5");
        row("unknown system", QByteArray(whole).replace("GRID,2,,", "GRID,2,3,"), 6,
            "line 2: GRID 2: the coordinate system 3 is not given by CORD2R or CORD2C");
        row("system of itself",
            "CORD2R,3,3,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n" +
                QByteArray(whole).replace("GRID,2,,", "GRID,2,3,"),
            6, "line 4: GRID 2: the coordinate system 3 refers to itself");
        row("system in line",
            "CORD2R,3,0,0.,0.,0.,0.,0.,1.\n,0.,0.,2.\n" +
                QByteArray(whole).replace("GRID,2,,", "GRID,2,3,"),
            6, "line 4: GRID 2: the points of the coordinate system 3 are in line");
        row("default system", "GRDSET,,3\n" + whole, 6, "line 1: a coordinate system for all");
        row("include", "INCLUDE 'more.bdf'\n" + whole, 6, "line 1: INCLUDE is not followed");
        row("strange kinds", "CBUSH,9,1,1,2\nCGAP,8,1,1,2\n" + whole, 6,
            "elements of kinds that cannot be imported: 1 of type CBUSH, 1 of type CGAP");
        row("no elements", Grids + "ENDDATA\n", 4, "there are no elements in it");
    }

    void refuses() { checkRefusal("case.bdf"); }

private:
    static inline const QByteArray Grids = "GRID,1,,0.,0.,0.\nGRID,2,,2.,0.,0.\n"
                                           "GRID,3,,0.,3.,0.\nGRID,4,,0.,0.,1.\n";

    static QByteArray large(const QByteArray& name, const QByteArrayList& fields)
    {
        QByteArray text = (name + '*').leftJustified(8);
        for (qsizetype i = 0; i < fields.size(); ++i) {
            text += (i == 4 ? "*\n*       " : "") + fields[i].rightJustified(16);
        }
        return text + '\n';
    }

    ToolRun import(const QByteArray& content) const { return importContent("case.bdf", content); }
};

QTEST_APPLESS_MAIN(TestImportNastran)
#include "tst_ImportNastran.moc"
