#include "AbaqusElementType.h"
#include "ImportTest.h"

#include <tuple>
#include <unistd.h>

using Names = QStringList;
using Shape = std::array<int, 2>;
using Texts = QMap<QString, QByteArray>;

/// Abaqus input files in the styles of the programs that write them.
class TestImportAbaqus : public ImportTest
{
    Q_OBJECT

private slots:
    // Two tetrahedra, 1 and 2; what is told is the first group of the region of each.
    void takesSets_data()
    {
        QTest::addColumn<QByteArray>("sets");
        QTest::addColumn<Names>("regions");
        const auto row = [](const char* name, const char* sets, const Names& regions) {
            QTest::newRow(name) << QByteArray(sets) << regions;
        };
        row("numbers", "*ELSET, ELSET=a\n1\n*ELSET, ELSET=b\n2\n", {"a", "b"});
        row("commas at the end", "*Elset,elset=a\n1,\n*Elset,elset=b\n2,\n", {"a", "b"});
        row("name of *ELEMENT", "*ELSET, ELSET=all\nEvolumes\n", {"all"});
        row("name in another case", "*ELSET, ELSET=all\nEVOLUMES\n", {"all"});
        row("numbers and names", "*ELSET, ELSET=a\n1\n*ELSET, ELSET=both\n2, a\n", {"a", "both"});
        row("name defined further down",
            "*ELSET, ELSET=both\n2, a\n*ELSET, ELSET=b\n2\n*ELSET, ELSET=a\n1\n", {"both", "both"});
        row("three levels",
            "*ELSET, ELSET=x\n1\n*ELSET, ELSET=y\nX\n*ELSET, ELSET=z\ny\n*ELSET, ELSET=b\n2\n",
            {"x", "b"});
        row("generated",
            "*ELSET, ELSET=a, GENERATE\n1, 1, 1\n*ELSET, ELSET=b, generate\n2, 2000, 2\n",
            {"a", "b"});
        row("generated without step", "*ELSET, GENERATE, ELSET=all\n1, 2\n", {"all"});
        row("generated far", "*ELSET, ELSET=all, GENERATE\n1, 2147483647\n", {"all"});
        row("same set twice", "*ELSET, ELSET=a\n1\n*ELSET, ELSET=A\n2\n", {"a"});
        row("blanks", "*ELSET , ELSET = a \n 1 , \n*elset,  Elset  =b\n\t2\n", {"a", "b"});
        row("name with blanks", "*ELSET, ELSET=left side\n1\n*ELSET, ELSET=\"b, c\"\n2\n",
            {"left side", "b, c"});
        row("quoted member", "*ELSET, ELSET=\"in, side\"\n1\n*ELSET, ELSET=a\n\"in, side\", 2\n",
            {"in, side", "a"});
        row("quoted names keep their case", "*ELSET, ELSET=\"a\"\n1\n*ELSET, ELSET=A\n2\n",
            {"a", "A"});
        row("parameters on two lines", "*ELSET, ELSET=a,\n GENERATE\n1, 2\n", {"a"});
        row("internal", "*ELSET, ELSET=_P2, INTERNAL\n1\n*ELSET, ELSET=b\n2\n", {"Evolumes", "b"});
        row("internal as a member", "*ELSET, ELSET=_P2, INTERNAL\n1\n*ELSET, ELSET=a\n_P2\n",
            {"a", "Evolumes"});
        row("elements of another analysis", "*ELSET, ELSET=all\n1, 2, 77\n", {"all"});
        row("name with a full stop", "*ELSET, ELSET=Box.1\n1\n*ELSET, ELSET=a\nBox.1, 2\n",
            {"Box.1", "a"});
        row("set with a section first",
            "*ELSET, ELSET=all\nEvolumes\n*ELSET, ELSET=a\n1\n*ELSET, ELSET=b\n2\n"
            "*MATERIAL, NAME=Steel\n*SOLID SECTION, ELSET=A, MATERIAL=Steel\n"
            "*SOLID SECTION, ELSET=b, MATERIAL=Steel\n",
            {"a", "b"});
        row("material of an internal set",
            "*ELSET, ELSET=_P1, INTERNAL\n1\n*ELSET, ELSET=b\n2\n"
            "*SOLID SECTION, ELSET=_P1, MATERIAL=Steel\n",
            {"Evolumes", "b"});
        row("node sets are nothing to elements",
            "*NSET, NSET=n\n1, 2\n*NSET, NSET=m\nn, 3, Nall\n*NSET, NSET=k, ELSET=Evolumes\n"
            "*ELSET, ELSET=n\n1, 2\n",
            {"n"});
        row("step", "*STEP\n*STATIC\n*ELEMENT OUTPUT, ELSET=a\nS\n*END STEP\n", {"Evolumes"});
    }

    void takesSets()
    {
        QFETCH(QByteArray, sets);
        QFETCH(Names, regions);
        const ToolRun run = import(Nodes + Elements + sets);
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(imported.mesh()->count(3), 2);
        QCOMPARE(regionNames(imported), regions);
    }

    void givesMaterialsAsGroups_data()
    {
        QTest::addColumn<QByteArray>("material");
        QTest::addColumn<QByteArray>("groups");
        QTest::newRow("name of its own") << QByteArray("Steel") << QByteArray("Evolumes, Steel, a");
        QTest::newRow("quoted") << QByteArray("\"Al 99\"") << QByteArray("Al 99, Evolumes, a");
        QTest::newRow("name of a set") << QByteArray("A") << QByteArray("Evolumes, a");
    }

    void givesMaterialsAsGroups()
    {
        QFETCH(QByteArray, material);
        QFETCH(QByteArray, groups);
        QVERIFY(writeContent(path("none.json"), "{\"groups\": {\"no such\": {}}}"));
        const ToolRun run = import(Nodes + Elements +
                                       "*ELSET, ELSET=a\n1\n*SHELL SECTION, ELSET=a, "
                                       "MATERIAL=" +
                                       material + "\n0.1\n",
                                   {"--attributes", path("none.json")});
        QVERIFY2(run.errors.contains("the input has " + groups + '\n'), run.errors.constData());
    }

    void refusesSets_data()
    {
        QTest::addColumn<QByteArray>("sets");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* sets, const char* words) {
            QTest::newRow(name) << QByteArray(sets) << QByteArray(words);
        };
        row("unknown name", "*ELSET, ELSET=a\n1\n*ELSET, ELSET=b\n2, c\n",
            "line 13: the set \"b\" names \"c\", which does not exist");
        row("unknown name in a node set", "*NSET, NSET=a\nb\n",
            "line 11: the set \"a\" names \"b\", which does not exist");
        row("node set in a set of elements", "*ELSET, ELSET=a\nNall\n",
            "the set \"a\" names \"Nall\", which does not exist");
        row("itself", "*ELSET, ELSET=a\n1, a\n", "the set \"a\" contains itself, by way of \"a\"");
        row("circle", "*ELSET, ELSET=a\nb\n*ELSET, ELSET=b\nc\n*ELSET, ELSET=c\nA\n",
            "line 14: the set \"a\" contains itself, by way of \"c\"");
        row("circle of node sets", "*NSET, NSET=a\nb\n*NSET, NSET=b\na\n",
            "the set \"a\" contains itself, by way of \"b\"");
        row("no name", "*ELSET\n1\n", "line 10: *ELSET without ELSET");
        row("number 0", "*ELSET, ELSET=a\n0\n", "\"0\" is no number of a node or element");
        row("fraction", "*ELSET, ELSET=a\n1.5\n", "\"1.5\" is no number of a node or element");
        row("beyond all numbers", "*ELSET, ELSET=a\n4294967297\n", "\"4294967297\" is no number");
        row("generated backwards", "*ELSET, ELSET=a, GENERATE\n5, 2, 1\n",
            "line 11: the last number, 2, is below the first, 5");
        row("generated on the spot", "*ELSET, ELSET=a, GENERATE\n1, 5, 0\n", "\"0\" is no number");
        row("instance that is none", "*ELSET, ELSET=a, INSTANCE=Part-1-1\n1\n",
            "line 10: there is no instance \"Part-1-1\"");
        row("section of no set", "*SOLID SECTION, ELSET=b, MATERIAL=m\n",
            "line 10: the section names the set \"b\", which does not exist");
    }

    void refusesSets()
    {
        QFETCH(QByteArray, sets);
        QFETCH(QByteArray, words);
        checkRefused(import(Nodes + Elements + sets), 4, words);
    }

    // A chain and a ladder of sets, whose walk must neither nest nor double.
    void takesDeeplyNestedSets()
    {
        QByteArray sets = "*ELSET, ELSET=s0\n1\n";
        for (int i = 1; i < 20000; ++i) {
            const QByteArray before = "s" + QByteArray::number(i - 1);
            sets += "*ELSET, INTERNAL, ELSET=s" + QByteArray::number(i) + '\n' + before + ',' +
                    before + '\n';
        }
        sets += "*ELSET, ELSET=all\ns19999, 2\n";
        const ToolRun run = import(Nodes + Elements + sets);
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(regionNames(imported), (Names{"s0", "all"}));
    }

    void takesAssemblies_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<Names>("regions");
        QTest::addColumn<QString>("box");
        const auto row = [](const char* name, const QByteArray& text, const Names& regions,
                            const char* box) {
            QTest::newRow(name) << text << regions << QString::fromLatin1(box);
        };
        row("one instance", PartText + assembly(instance("P-1-1")),
            {"P-1-1.Set-1", "P-1-1.Evolumes"}, "0 0 0 1 1 1");
        row("moved", PartText + assembly(instance("P-1-1", "10., 20., 30.\n")),
            {"P-1-1.Set-1", "P-1-1.Evolumes"}, "10 20 30 11 21 31");
        row("moved along one axis", PartText + assembly(instance("P-1-1", " 10.,\n")),
            {"P-1-1.Set-1", "P-1-1.Evolumes"}, "10 0 0 11 1 1");
        row("moved, then turned about an axis off the origin",
            PartText + assembly(instance("P-1-1", "2., 0., 0.\n2., 0., 0., 2., 0., 5., 90.\n")),
            {"P-1-1.Set-1", "P-1-1.Evolumes"}, "1 0 0 2 1 1");
        row("turned half round",
            PartText + assembly(instance("P-1-1", "0.,0.,0.\n1.,0.,0.,1.,1.,0.,"
                                                  "180.\n")),
            {"P-1-1.Set-1", "P-1-1.Evolumes"}, "1 0 -1 2 1 0");
        row("twice", PartText + assembly(instance("A") + instance("B", "5., 0., 0.\n")),
            {"A.Set-1", "A.Evolumes", "B.Set-1", "B.Evolumes"}, "0 0 0 6 1 1");
        row("sets of the assembly",
            PartText + assembly(instance("A") + instance("B", "5., 0., 0.\n") +
                                "*Elset, elset=Hot, instance=A\n 2,\n"
                                "*Elset, elset=Hot, instance=B\n 2,\n"
                                "*Elset, elset=Cold\n A.Set-1, b.1\n"),
            {"Cold", "Hot", "Cold", "Hot"}, "0 0 0 6 1 1");
        row("sets of the assembly ahead of those of its instances",
            PartText + assembly(instance("A") + "*Elset, elset=All\n A.Evolumes\n"), {"All", "All"},
            "0 0 0 1 1 1");
        row("no sets",
            QByteArray(PartText)
                    .replace("*Elset, elset=Set-1\n1,\n", "")
                    .replace(", ELSET=Evolumes", "") +
                assembly(instance("A") + instance("B", "5., 0., 0.\n")),
            {"A", "B"}, "0 0 0 6 1 1");
        row("mesh of the instance",
            "*Part, name=P-1\n*End Part\n" + assembly("*Instance, name=A, part=P-1\n 0., 0., 3.\n" +
                                                      Nodes + Elements + "*End Instance\n"),
            {"A.Evolumes"}, "0 0 3 1 1 4");
        row("no assembly", PartText, {"P-1.Set-1", "P-1.Evolumes"}, "0 0 0 1 1 1");
        row("reference node of the assembly",
            PartText + assembly(instance("A") + "*Node\n 1, 9., 9., 9.\n*Nset, nset=RP\n 1,\n"),
            {"A.Set-1", "A.Evolumes"}, "0 0 0 1 1 1");
    }

    void takesAssemblies()
    {
        QFETCH(QByteArray, text);
        QFETCH(Names, regions);
        QFETCH(QString, box);
        const ToolRun run = import(text);
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        Names names = regionNames(imported);
        QCOMPARE(names, regions);
        QCOMPARE(boxOf(imported), box);
        QCOMPARE(imported.mesh()->count(3), run.exitCode == 0 ? elementsIn(text) : 0);
    }

    void warnsOfAPartWithoutInstance()
    {
        const ToolRun run =
            import(PartText + QByteArray(PartText).replace("P-1", "P-2") + assembly(instance("A")));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors,
                 warningOf("case.inp", "the part \"P-2\" has no instance and is left out"));
    }

    void refusesAssemblies_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const QByteArray& text, const char* words) {
            QTest::newRow(name) << text << QByteArray(words);
        };
        row("no such part", assembly(instance("A")),
            "there is no part \"p-1\" ahead of its instance");
        row("part twice", PartText + PartText, "the part \"P-1\" is there twice");
        row("instance twice", PartText + assembly(instance("A") + instance("a")),
            "the instance \"a\" is there twice");
        row("part not ended", QByteArray(PartText).replace("*End Part\n", ""),
            "the file is cut off: there is no *END PART");
        row("part within a part", QByteArray(PartText).replace("*End Part\n", "") + PartText,
            "*PART within a part or an instance, which is not ended");
        row("instance not ended",
            PartText + "*Assembly, name=A\n*Instance, name=A, part=P-1\n*End Assembly\n",
            "there is no *END INSTANCE");
        row("end of nothing", Nodes + Elements + "*End Part\n", "*END PART without *PART");
        row("too many numbers", PartText + assembly(instance("A", "1., 2., 3., 4.\n")),
            "an instance has a line of 3 numbers that moves it, and behind that one of 7");
        row("too few numbers", PartText + assembly(instance("A", "1.\n1., 2., 3., 4.\n")),
            "an instance has a line of 3 numbers that moves it, and behind that one of 7");
        row("axis without direction",
            PartText + assembly(instance("A", "0.\n1., 2., 3., 1., 2., 3., 90.\n")),
            "the two points of the axis are the same");
        row("node of another part",
            PartText + "*Part, name=P-2\n*Element, type=C3D4\n7, 1, 2, 3, 4\n*End Part\n" +
                assembly("*Instance, name=B, part=P-2\n*End Instance\n"),
            "case.inp: line 16: element 7 of \"B\" names node 1, which \"B\" does not have; the "
            "file "
            "is damaged, or was put together from files whose nodes are numbered apart");
        row("node at two places", Nodes + "*NODE\n2, 1., 0., 0.5\n" + Elements,
            "node 2 is there twice, at different places");
        row("element twice", Nodes + Elements + Elements, "element 1 is there twice");
    }

    void refusesAssemblies()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, words);
        checkRefused(import(text), 4, words);
    }

    void takesANodeThatIsThereTwiceAtOnePlace()
    {
        const ToolRun run = import(Nodes + "*NODE\n2, 1., 0., 0.\n" + Elements);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(ImportedCase(path("case")).meshCounts()[0], 5);
    }

    void followsIncludes_data()
    {
        QTest::addColumn<Texts>("files");
        const auto row = [](const char* name, const Texts& files) { QTest::newRow(name) << files; };
        row("one file",
            {{"case.inp", "*INCLUDE, INPUT=mesh.inc\n"}, {"mesh.inc", Nodes + Elements}});
        row("any case, quoted",
            {{"case.inp", "*Include, input=\"my mesh.inc\"\n"}, {"my mesh.inc", Nodes + Elements}});
        row("beside the file that includes",
            {{"case.inp", "*INCLUDE, INPUT=parts/all.inc\n"},
             {"parts/all.inc", "*INCLUDE, INPUT=nodes.inc\n*INCLUDE, INPUT=elements.inc\n"},
             {"parts/nodes.inc", Nodes},
             {"parts/elements.inc", Elements}});
        row("data of the keyword before",
            {{"case.inp", "*NODE, NSET=Nall\n*INCLUDE, INPUT=nodes.txt\n" + Elements},
             {"nodes.txt", nodeLines()}});
        row("data named by INPUT",
            {{"case.inp", "*NODE, INPUT=nodes.txt\n" + Elements}, {"nodes.txt", nodeLines()}});
        row("the same file in two parts",
            {{"case.inp", "*PART, NAME=A\n*INCLUDE, INPUT=mesh.inc\n*END PART\n*PART, NAME=B\n"
                          "*INCLUDE, INPUT=mesh.inc\n*END PART\n" +
                              assembly("*INSTANCE, NAME=A-1, PART=A\n*END INSTANCE\n")},
             {"mesh.inc", Nodes + Elements}});
    }

    void followsIncludes()
    {
        QFETCH(Texts, files);
        writeAll(files);
        const ToolRun run = importFile("case.inp");
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(imported.meshCounts()[3], 2);
    }

    void refusesIncludes_data()
    {
        QTest::addColumn<Texts>("files");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const Texts& files, int exitCode, const char* words) {
            QTest::newRow(name) << files << exitCode << QByteArray(words);
        };
        row("missing", {{"case.inp", "*HEADING\n*INCLUDE, INPUT=none.inc\n"}}, 3,
            "%1/case.inp: line 2: none.inc: no such file in %1\n");
        row("missing data", {{"case.inp", "*NODE, INPUT=./none.txt\n"}}, 3,
            "%1/case.inp: line 1: ./none.txt: no such file in %1\n");
        row("missing, by its whole path", {{"case.inp", "*INCLUDE, INPUT=/none/of/it.inc\n"}}, 3,
            "%1/case.inp: line 1: /none/of/it.inc: no such file in /none/of\n");
        row("missing beside the file that includes",
            {{"case.inp", "*INCLUDE, INPUT=parts/all.inc\n"},
             {"parts/all.inc", "*HEADING\n*INCLUDE, INPUT=\"no nodes.inc\"\n"}},
            3, "%1/parts/all.inc: line 2: no nodes.inc: no such file in %1/parts\n");
        row("directory", {{"case.inp", "*INCLUDE, INPUT=.\n"}}, 3,
            "case.inp: line 1: .: is not a plain file");
        row("device", {{"case.inp", "*INCLUDE, INPUT=/dev/zero\n"}}, 3,
            "case.inp: line 1: /dev/zero: is not a plain file");
        row("no name", {{"case.inp", "*INCLUDE\n"}}, 4, "line 1: INPUT names no file");
        row("itself", {{"case.inp", "*INCLUDE, INPUT=case.inp\n"}}, 4,
            "case.inp: line 1: case.inp would be read within itself");
        row("circle",
            {{"case.inp", "*INCLUDE, INPUT=a.inc\n"},
             {"a.inc", "*HEADING\n*INCLUDE, INPUT=b.inc\n"},
             {"b.inc", "*INCLUDE, INPUT=./a.inc\n"}},
            4, "b.inc: line 1: ./a.inc would be read within itself");
        row("fault in the included file",
            {{"case.inp", "*INCLUDE, INPUT=a.inc\n" + Elements}, {"a.inc", "*NODE\n1, x, 2.\n"}}, 4,
            "a.inc: line 2: \"x\" is no coordinate");
        row("unknown node in the included file",
            {{"case.inp", Nodes + "*INCLUDE, INPUT=a.inc\n*NSET, NSET=last\n1\n"},
             {"a.inc", "*ELEMENT, TYPE=C3D4\n1, 1, 2, 3, 4\n2, 2, 3,\n4, 9\n"}},
            4, "%1/a.inc: line 3: element 2 names node 9, which the file does not have");
        row("cut off",
            {{"case.inp", "*INCLUDE, INPUT=a.inc\n" + Elements}, {"a.inc", "*NODE\n1, 2"}}, 4,
            "a.inc: line 2: the last line is not ended; the file is cut off");
        row("doubling",
            {{"case.inp", doubling(1)},
             {"1.inc", doubling(2)},
             {"2.inc", doubling(3)},
             {"3.inc", doubling(4)},
             {"4.inc", doubling(5)},
             {"5.inc", doubling(6)},
             {"6.inc", doubling(7)},
             {"7.inc", doubling(8)},
             {"8.inc", doubling(9)},
             {"9.inc", doubling(10)},
             {"10.inc", "*HEADING\n"}},
            4, "more than 1000 files are included");
    }

    void refusesIncludes()
    {
        QFETCH(Texts, files);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, words);
        writeAll(files);
        checkRefused(importFile("case.inp"), exitCode, words.replace("%1", folder().toUtf8()));
    }

    /// From where the file lies, too.
    void namesAnIncludeAsItIsWritten()
    {
        writeAll({{"case.inp", "*HEADING\n*INCLUDE, INPUT=none.inc\n"}});
        const ToolRun run = runTool({"import", "case.inp", "-o", "case"}, QString(), inDirectory());
        QCOMPARE(run.errors, "ovrageo: error: case.inp: line 2: none.inc: no such file in " +
                                 folder().toUtf8() + '\n');
        QCOMPARE(run.exitCode, 3);
    }

    void namesTheLineOfAnIncludeAsItIsWritten()
    {
        writeAll({{"case.inp", "*INCLUDE, INPUT=a.inc\n"}, {"a.inc", "*NODE\n1, x, 2.\n"}});
        const ToolRun run = runTool({"import", "case.inp", "-o", "case"}, QString(), inDirectory());
        QCOMPARE(run.errors, QByteArray("ovrageo: error: a.inc: line 2: \"x\" is no coordinate\n"));
    }

    void knowsElementTypes_data()
    {
        QTest::addColumn<QByteArray>("types");
        QTest::addColumn<Shape>("dimensionAndNodes");
        const auto row = [](int dimension, int nodes, const char* types) {
            QTest::newRow(types) << QByteArray(types) << Shape{dimension, nodes};
        };
        row(3, 4, "C3D4 C3D4H DC3D4 AC3D4 C3D4T F3D4 Q3D4 EMC3D4");
        row(3, 5, "C3D5");
        row(3, 6, "C3D6 C3D6H SC6R F3D6 DC3D6 AC3D6");
        row(3, 8, "C3D8 C3D8R C3D8I C3D8RHT DCC3D8D EC3D8R SC8R CSS8 F3D8 Q3D8 C3D8P FC3D8");
        row(3, 10, "C3D10 C3D10M C3D10HS C3D10I DC3D10 AC3D10");
        row(3, 15, "C3D15 C3D15H DC3D15");
        row(3, 18, "C3D15V C3D15VH");
        row(3, 20, "C3D20 C3D20R C3D20RH C3D20RT DC3D20");
        row(3, 27, "C3D27 C3D27R");
        row(2, 3, "S3 S3R S3RS STRI3 CPS3 CPE3 CAX3 M3D3 R3D3 DS3 SFM3D3 DC2D3 CGAX3 CPEG3 DCAX3");
        row(2, 4, "S4 S4R S4RS S4R5 CPS4R CPE4I CAX4RT M3D4R R3D4 DS4 SFM3D4R DC2D4 DCC2D4");
        row(2, 6, "STRI65 S6 CPS6M CPE6 CAX6 M3D6 DS6 SFM3D6");
        row(2, 8, "S8R S8R5 CPS8R CPE8 CAX8 M3D8 DS8");
        row(2, 9, "S9R5 M3D9R");
        row(1, 2, "B21 B31 B31OS B31H B23 B33H T2D2 T3D2 T3D2H PIPE21 PIPE31 R2D2 RB3D2 DC1D2");
        row(1, 3, "B22 B32 B32R B32OS T2D3 T3D3 PIPE32H DC1D3");
        row(0, 0,
            "SPRINGA SPRING2 DASHPOTA MASS ROTARYI CONN3D2 CONN2D2 GAPUNI U1 ACIN3D4 CIN3D8 SAX1 "
            "RAX2 C3D7 C3D S COH3D8");
    }

    void knowsElementTypes()
    {
        QFETCH(QByteArray, types);
        QFETCH(Shape, dimensionAndNodes);
        for (const QByteArray& name : types.split(' ')) {
            const auto type = Ovra::GeoTool::AbaqusElementType::named(name);
            QVERIFY2((Shape{type.dimension, type.nodeCount}) == dimensionAndNodes,
                     name.constData());
        }
    }

    // Lines carry 16 numbers, as the format has them.
    void takesTheCornersOfElements_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<int>("dimension");
        QTest::addColumn<int>("nodes");
        QTest::addColumn<int>("corners");
        const auto row = [](const char* type, int dimension, int nodes, int corners) {
            QTest::newRow(type) << QByteArray(type) << dimension << nodes << corners;
        };
        row("C3D5", 3, 5, 5);
        row("c3d10m", 3, 10, 4);
        row("C3D15", 3, 15, 6);
        row("C3D15V", 3, 18, 6);
        row("C3D20R", 3, 20, 8);
        row("C3D27", 3, 27, 8);
        row("SC8R", 3, 8, 8);
        row("S4R", 2, 4, 4);
        row("STRI65", 2, 6, 3);
        row("CPS8R", 2, 8, 4);
        row("S9R5", 2, 9, 4);
    }

    void takesTheCornersOfElements()
    {
        QFETCH(QByteArray, type);
        QFETCH(int, dimension);
        QFETCH(int, nodes);
        QFETCH(int, corners);
        const ToolRun run = import(elementText(type, dimension, nodes, corners));
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(run.errors.contains("linear"), nodes > corners);
        ImportedCase imported(path("case"));
        const auto elements = imported.meshEntities(dimension);
        QCOMPARE(elements.size(), std::size_t(1));
        QCOMPARE(elements[0]->adjacencyCount(0), corners);
        QCOMPARE(imported.faults(), QString());
    }

    void takesTheEndsOfLines_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("nodes");
        QTest::newRow("B31") << QByteArray("B31") << QByteArray("1, 2");
        QTest::newRow("B33") << QByteArray("B33") << QByteArray("1, 2");
        QTest::newRow("B32") << QByteArray("B32") << QByteArray("1, 9, 2");
    }

    void takesTheEndsOfLines()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, nodes);
        QCOMPARE(import(Nodes + "9, 0.5, 0., 0.\n" + Elements +
                        "*ELEMENT, ELSET=edge, TYPE=" + type + "\n7, " + nodes + '\n')
                     .exitCode,
                 0);
        ImportedCase imported(path("case"));
        const auto lines = imported.entities(1);
        const auto named = std::find_if(lines.begin(), lines.end(), [](const auto* line) {
            return line->name() == QStringLiteral("edge");
        });
        QVERIFY(named != lines.end());
        QCOMPARE(ImportedCase::children(*named).size(), std::size_t(1));
        auto* edge = ImportedCase::children(*named).front();
        QCOMPARE(
            (edge->adjacencyAt(0, 0)->centroid() - edge->adjacencyAt(0, 1)->centroid()).length(),
            1.0);
    }

    void refusesWhatWouldChangeTheMesh_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("words");
        for (const char* keyword : {"NGEN", "NFILL", "NCOPY", "NMAP", "ELGEN", "ELCOPY"}) {
            QTest::newRow(keyword) << QByteArray(Nodes + Elements + '*' + keyword + "\n1, 2, 1\n")
                                   << QByteArray("line 10: *") + keyword + " is not carried out";
        }
        QTest::newRow("SYSTEM") << QByteArray("*SYSTEM\n1., 0., 0., 1., 1., 0.\n" + Nodes +
                                              Elements)
                                << QByteArray("line 2: *SYSTEM is not carried out");
        QTest::newRow("spherical") << QByteArray("*NODE, SYSTEM=S\n1, 1., 0., 0.\n")
                                   << QByteArray("coordinates of SYSTEM=S are not converted");
    }

    void refusesWhatWouldChangeTheMesh()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, words);
        checkRefused(import(text), 6, words);
    }

    void takesTheOriginalSystemAgain()
    {
        QCOMPARE(import("*SYSTEM\n" + Nodes + Elements).errors, QByteArray());
    }

    void convertsCylindricalCoordinates()
    {
        QCOMPARE(import("*NODE, SYSTEM=C\n1, 1., 0., 0.\n2, 2., 90., 0.\n3, 3., 180., 0.\n"
                        "4, 1., 0., 5.\n" +
                        QByteArray("*ELEMENT, TYPE=C3D4\n1, 1, 2, 3, 4\n"))
                     .exitCode,
                 0);
        ImportedCase imported(path("case"));
        QCOMPARE(boxOf(imported), QStringLiteral("-3 0 0 1 2 5"));
    }

private:
    static inline const QByteArray Nodes = "*NODE, NSET=Nall\n1, 0., 0., 0.\n2, 1., 0., 0.\n"
                                           "3, 0., 1., 0.\n4, 0., 0., 1.\n5, 1., 1., 1.\n";
    static inline const QByteArray Elements =
        "*ELEMENT, TYPE=C3D4, ELSET=Evolumes\n1, 1, 2, 3, 4\n2, 2, 3, 4, 5\n";
    static inline const QByteArray PartText =
        "*Part, name=P-1\n" + Nodes + Elements + "*Elset, elset=Set-1\n1,\n*End Part\n";

    /// A modifier for runTool(): the tool starts beside the files.
    std::function<void()> inDirectory() const
    {
        const QByteArray name = QFile::encodeName(folder());
        return [name] { std::ignore = chdir(name.constData()); };
    }

    static QByteArray nodeLines() { return Nodes.mid(Nodes.indexOf('\n') + 1); }

    static QByteArray instance(const QByteArray& name, const QByteArray& placement = {})
    {
        return "*Instance, name=" + name + ", part=p-1\n" + placement + "*End Instance\n";
    }

    static QByteArray assembly(const QByteArray& content)
    {
        return "*Assembly, name=Assembly\n" + content + "*End Assembly\n";
    }

    static int elementsIn(const QByteArray& text)
    {
        return 2 * static_cast<int>(qMax<qsizetype>(1, text.count("*Instance")));
    }

    static QByteArray doubling(int next)
    {
        const QByteArray line = "*INCLUDE, INPUT=" + QByteArray::number(next) + ".inc\n";
        return line + line;
    }

    /// One element at the corners of a unit cell; the nodes between them need no place of their
    /// own. Lines carry 16 numbers, as the format has them.
    static QByteArray elementText(const QByteArray& type, int dimension, int nodes, int corners)
    {
        static const QMap<std::pair<int, int>, QByteArrayList> places{
            {{2, 3}, {"0,0,0", "1,0,0", "0,1,0"}},
            {{2, 4}, {"0,0,0", "1,0,0", "1,1,0", "0,1,0"}},
            {{3, 4}, {"0,0,0", "1,0,0", "0,1,0", "0,0,1"}},
            {{3, 5}, {"0,0,0", "1,0,0", "1,1,0", "0,1,0", "0,0,1"}},
            {{3, 6}, {"0,0,0", "1,0,0", "0,1,0", "0,0,1", "1,0,1", "0,1,1"}},
            {{3, 8}, {"0,0,0", "1,0,0", "1,1,0", "0,1,0", "0,0,1", "1,0,1", "1,1,1", "0,1,1"}}};
        QByteArray text = "*NODE\n";
        QByteArray element = "*ELEMENT, TYPE=" + type + "\n1";
        for (int i = 1; i <= nodes; ++i) {
            text += QByteArray::number(i) + ',' +
                    places[{dimension, corners}].value(i - 1, "0.5,0.5,0") + '\n';
            element += (i % 16 == 0 ? ",\n" : ", ") + QByteArray::number(i);
        }
        return text + element + '\n';
    }

    ToolRun import(const QByteArray& text, const QStringList& options = {}) const
    {
        return importContent("case.inp", text, options);
    }

    void writeAll(const Texts& files)
    {
        for (auto file = files.cbegin(); file != files.cend(); ++file) {
            QVERIFY(QDir().mkpath(QFileInfo(path(file.key())).path()));
            QVERIFY(writeContent(path(file.key()), file.value()));
        }
    }

    static Names regionNames(ImportedCase& imported)
    {
        Names names;
        for (const auto* region : imported.entities(3)) {
            names.append(region->name());
        }
        return names;
    }

    static QString boxOf(ImportedCase& imported)
    {
        Ovra::Geo::Box box;
        for (const auto* vertex : imported.meshEntities(0)) {
            box += vertex->centroid();
        }
        QStringList numbers;
        for (const auto& corner : {box.minimum(), box.maximum()}) {
            for (int i = 0; i < 3; ++i) {
                numbers.append(QString::number(std::round(corner[i] * 1e9) / 1e9 + 0.0));
            }
        }
        return numbers.join(QLatin1Char(' '));
    }
};

QTEST_APPLESS_MAIN(TestImportAbaqus)
#include "tst_ImportAbaqus.moc"
