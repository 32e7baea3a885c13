#include "ImportTest.h"
#include "TwoCubes.h"

#include <span>

using Counts = std::vector<int>;

/// Groups and kinds of elements of universal files: two cubes in a row along x, with an inlet.
class TestImportUniversal : public ImportTest
{
    Q_OBJECT

private slots:
    void takesNamesFromGroups_data()
    {
        QTest::addColumn<int>("dataset");
        QTest::addColumn<int>("width");
        for (const int dataset : {2435, 2452, 2467, 2477}) {
            QTest::addRow("%d", dataset) << dataset << 4;
        }
        for (const int dataset : {2417, 2429, 2430, 2432}) {
            QTest::addRow("%d", dataset) << dataset << 2;
        }
    }

    void takesNamesFromGroups()
    {
        QFETCH(int, dataset);
        QFETCH(int, width);
        const ToolRun run = import(mesh() + set(dataset, group("left solid", {{8, 1}}, width) +
                                                             group("right", {{8, 2}}, width) +
                                                             group("inlet", {{8, 3}}, width)));
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(names(imported, 3), (QStringList{"left solid", "right"}));
        QCOMPARE(imported.meshCounts()[3], 2);
        QVERIFY(names(imported, 2).contains("inlet"));
    }

    /// What shares a property but not its groups becomes entities of their own.
    void keepsPropertiesAsNumbers()
    {
        QCOMPARE(import(mesh()).exitCode, 0);
        QCOMPARE(ImportedCase(path("case")).modelCounts()[3], 1);
        const ToolRun run =
            import(mesh() + set(2467, group("both", {{8, 1}, {8, 2}}) + group("right", {{8, 2}})));
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(imported.entities(3).size(), std::size_t(2));
        QCOMPARE(imported.entities(3)[0]->id(), 4); // the property
        QCOMPARE(names(imported, 3), (QStringList{"both", "both"}));
    }

    void tellsWhatIsLeftOut_data()
    {
        QTest::addColumn<QByteArray>("more");
        QTest::addColumn<QByteArray>("warning");
        QTest::newRow("group of nodes") << set(2467, group("fixed", {{7, 1}, {7, 2}, {7, 3}}))
                                        << QByteArray("nodes of groups are left out: fixed");
        QTest::newRow("group of other elements")
            << set(2467, group("springs", {{8, 77}}))
            << QByteArray("groups without an element that is imported: springs");
        QTest::newRow("elements of one node")
            << set(2412, element(8, 161, std::vector{1}) + element(9, 161, std::vector{2}))
            << QByteArray("2 elements of one node are left out");
        QTest::newRow("boundary conditions")
            << set(791, "         1         1\ninlet\n")
            << QByteArray("boundary conditions are left out: data sets 791");
    }

    void tellsWhatIsLeftOut()
    {
        QFETCH(QByteArray, more);
        QFETCH(QByteArray, warning);
        const ToolRun run = import(mesh() + more);
        QCOMPARE(run.errors, warningOf("case.unv", warning));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(ImportedCase(path("case")).meshCounts()[3], 2);
    }

    void takesLinesOfShells()
    {
        const ToolRun run = import(mesh() + set(2412, element(8, 171, std::vector{1, 2})) +
                                   set(2467, group("rim", {{8, 8}})));
        QCOMPARE(run.errors, QByteArray());
        ImportedCase imported(path("case"));
        QVERIFY(names(imported, 1).contains("rim"));
        QCOMPARE(imported.faults(), QString());
    }

    void refuses_data()
    {
        addRefusalColumns();
        const auto row = addRefusal;
        row("group beyond its set",
            mesh() + set(2467, group("a", {{8, 1}}).replace("1\na", "9\na")), 4,
            ": the group \"a\" has 1 of 9 members");
        row("member that is no number",
            mesh() + set(2467, group("a", {{8, 1}}).replace("8 1", "8 x")), 4,
            "\"x\" is no whole number");
        row("short record", mesh() + set(2467, "1 2 3\na\n"), 4,
            "the record of a group needs 8 numbers");
        row("older elements", mesh() + set(780, "1\n"), 6,
            "elements of data set 780 are not read; save them in 2412");
        row("strange kinds", mesh() + set(2412, element(8, 136, std::vector{1, 2})), 6,
            "elements of kinds that cannot be imported: 1 of type 136");
        row("too many nodes", mesh() + set(2412, "8 115 4 4 7 3\n1 2 3 4\n"), 4,
            "an element has 4 nodes where its record announces 3");
        row("endless nodes", mesh() + set(2412, "8 115 4 4 7 2000000000\n1 2 3 4\n"), 4,
            "the data set ends within the nodes of an element");
        row("no coordinate", mesh().replace("1 0 0\n", "1 nan 0\n"), 4, "\"nan\" is no coordinate");
        row("node at two places", mesh() + set(2411, "1 1 1 11\n5 5 5\n"), 4,
            "the number 1 of a node is taken");
        row("no elements", set(2411, "1 1 1 11\n5 5 5\n"), 4, "there are no elements in it");
    }

    void refuses() { checkRefusal("case.unv"); }

private:
    using Members = std::vector<std::array<int, 2>>;

    static QByteArray number(qsizetype value) { return QByteArray::number(value); }

    static QByteArray set(int dataset, const QByteArray& lines)
    {
        return "    -1\n" + number(dataset).rightJustified(6) + '\n' + lines + "    -1\n";
    }

    static QByteArray element(int label, int type, std::span<const int> nodes)
    {
        QByteArray text = number(label) + ' ' + number(type) + " 4 4 7 " +
                          number(static_cast<qsizetype>(nodes.size())) + '\n';
        for (const int node : nodes) {
            text += number(node) + ' ';
        }
        return text.trimmed() + '\n';
    }

    /// Members are pairs of a code, 7 for nodes and 8 for elements, and a number.
    static QByteArray group(const QByteArray& name, const Members& members, int width = 4)
    {
        QByteArray text =
            "1 0 0 0 0 0 0 " + number(static_cast<qsizetype>(members.size())) + '\n' + name + '\n';
        const int inLine = 8 / width;
        int count = 0;
        for (const auto& [code, label] : members) {
            text += number(code) + ' ' + number(label) + (width == 4 ? " 0 0" : "");
            text += ++count % inLine == 0 ? '\n' : ' ';
        }
        return text.trimmed() + '\n';
    }

    /// Nodes 1 to 12, three along x, and the elements 1 to 3 of property 4.
    static QByteArray mesh()
    {
        const QByteArray nodes = TwoCubes::eachCorner([](int label, int x, int y, int z) {
            return number(label) + " 1 1 11\n" + number(x) + ' ' + number(y) + ' ' + number(z) +
                   '\n';
        });
        return set(2411, nodes) + set(2412, element(1, 115, TwoCubes::corners[0]) +
                                                element(2, 115, TwoCubes::corners[1]) +
                                                element(3, 94, std::vector{1, 4, 10, 7}));
    }

    static QStringList names(ImportedCase& imported, int dimension)
    {
        QStringList all;
        for (auto* entity : imported.entities(dimension)) {
            all.append(entity->name());
        }
        return all;
    }

    ToolRun import(const QByteArray& content) const { return importContent("case.unv", content); }
};

QTEST_APPLESS_MAIN(TestImportUniversal)
#include "tst_ImportUniversal.moc"
