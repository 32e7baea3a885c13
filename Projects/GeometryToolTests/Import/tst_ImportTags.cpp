#include "ImportTest.h"
#include "TwoCubes.h"

#include <array>

using namespace TwoCubes;
using Counts = std::vector<int>;
Q_DECLARE_METATYPE(Counts)

namespace
{

QByteArray number(int value)
{
    return QByteArray::number(value);
}

/// A node per line, with its number.
QByteArray plainNodes()
{
    return eachCorner([](int i, int x, int y, int z) {
        return number(i) + ' ' + number(x) + ' ' + number(y) + ' ' + number(z) + '\n';
    });
}

QByteArray msh2(const QByteArray& left, const QByteArray& right)
{
    return "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n12\n" + plainNodes() +
           "$EndNodes\n$Elements\n2\n1 5 " + left + cornersOf(0) + "\n2 5 " + right + cornersOf(1) +
           "\n$EndElements\n";
}

QByteArray msh1(const QByteArray& left, const QByteArray& right)
{
    return "$NOD\n12\n" + plainNodes() + "$ENDNOD\n$ELM\n2\n1 5 " + left + " 8" + cornersOf(0) +
           "\n2 5 " + right + " 8" + cornersOf(1) + "\n$ENDELM\n";
}

QByteArray raw(int value)
{
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof value);
}

QByteArray raw(double value)
{
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof value);
}

QByteArray binaryMsh2(std::array<int, 2> left, std::array<int, 2> right)
{
    QByteArray bytes = "$MeshFormat\n2.2 1 8\n" + raw(1) + "\n$EndMeshFormat\n$Nodes\n12\n" +
                       eachCorner([](int i, int x, int y, int z) {
                           return raw(i) + raw(double(x)) + raw(double(y)) + raw(double(z));
                       }) +
                       "\n$EndNodes\n$Elements\n2\n" + raw(5) + raw(2) + raw(2);
    for (std::size_t k = 0; k < 2; ++k) {
        const auto& tags = k == 0 ? left : right;
        bytes += raw(static_cast<int>(k) + 1) + raw(tags[0]) + raw(tags[1]);
        for (const int node : corners[k]) {
            bytes += raw(node);
        }
    }
    return bytes + "\n$EndElements\n";
}

QByteArray nastran(const QByteArray& left, const QByteArray& right)
{
    QByteArray text = "CEND\nBEGIN BULK\n" + eachCorner([](int i, int x, int y, int z) {
                          return "GRID," + number(i) + ",," + number(x) + ".," + number(y) + ".," +
                                 number(z) + ".\n";
                      });
    for (std::size_t k = 0; k < 2; ++k) {
        QByteArray nodes = cornersOf(k, ',');
        nodes.insert(nodes.lastIndexOf(',', nodes.lastIndexOf(',') - 1), ",+\n+");
        text += "CHEXA," + number(static_cast<int>(k) + 1) + ',' + (k == 0 ? left : right) + nodes +
                '\n';
    }
    return text + "ENDDATA\n";
}

QByteArray medit(int left, int right)
{
    return meditHead() + meditVertices() + meditHexahedra(left, right) + "End\n";
}

QByteArray universal(int left, int right)
{
    const auto wide = [](int value) { return number(value).rightJustified(10); };
    const auto real = [](int value) {
        return QByteArray::number(value, 'E', 16).rightJustified(25);
    };
    QByteArray text = "    -1\n  2411\n" + eachCorner([&](int i, int x, int y, int z) {
                          return wide(i) + wide(1) + wide(1) + wide(11) + '\n' + real(x) + real(y) +
                                 real(z) + '\n';
                      }) +
                      "    -1\n    -1\n  2412\n";
    for (std::size_t k = 0; k < 2; ++k) {
        const int property = k == 0 ? left : right;
        text += wide(static_cast<int>(k) + 1) + wide(115) + wide(property) + wide(property) +
                wide(7) + wide(8) + '\n';
        for (const int node : corners[k]) {
            text += wide(node);
        }
        text += '\n';
    }
    return text + "    -1\n";
}

} // namespace

/// Tags, references and properties of 0 and below mean that none is given.
class TestImportTags : public ImportTest
{
    Q_OBJECT

private slots:
    void rebuildsWhereNoneIsGiven_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Counts>("regions");
        const auto row = [](const char* name, const char* suffix, const QByteArray& content,
                            const Counts& regions) {
            QTest::newRow(name) << QString::fromLatin1(suffix) << content << regions;
        };
        row("msh 2, none", "msh", msh2("2 0 0", "2 0 0"), {1});
        row("msh 2, no tags", "msh", msh2("0", "0"), {1});
        row("msh 2, one tag", "msh", msh2("1 0", "1 0"), {1});
        row("msh 2, negative", "msh", msh2("2 0 -1", "2 0 -1"), {1});
        row("msh 2, both negative", "msh", msh2("2 -1 -1", "2 -1 -2"), {1});
        row("msh 2, some", "msh", msh2("2 0 5", "2 0 0"), {5, 6});
        row("msh 2, negative and some", "msh", msh2("2 0 -1", "2 0 3"), {3, 4});
        row("msh 2, groups alone", "msh", msh2("2 4 0", "2 7 0"), {1, 2});
        row("msh 2, one group alone", "msh", msh2("1 4", "1 0"), {1, 2});
        row("msh 2, partitions behind", "msh", msh2("4 0 0 1 1", "4 0 0 1 1"), {1});
        row("msh 2, all", "msh", msh2("2 0 8", "2 0 2"), {2, 8});
        row("msh 2 binary, none", "msh", binaryMsh2({0, 0}, {0, 0}), {1});
        row("msh 2 binary, negative", "msh", binaryMsh2({0, -1}, {0, 6}), {6, 7});
        row("msh 2 binary, groups alone", "msh", binaryMsh2({4, 0}, {7, 0}), {1, 2});
        row("msh 1, none", "msh", msh1("0 0", "0 0"), {1});
        row("msh 1, negative", "msh", msh1("0 -1", "0 -1"), {1});
        row("msh 1, groups alone", "msh", msh1("2 0", "1 0"), {1, 2});
        row("Nastran, none", "bdf", nastran("0", "0"), {1});
        row("Nastran, blank", "bdf", nastran("", ""), {1});
        row("Nastran, some", "bdf", nastran("5", "0"), {5, 6});
        row("Medit, none", "mesh", medit(0, 0), {1});
        row("Medit, negative", "mesh", medit(-7, -7), {1});
        row("Medit, none and negative", "mesh", medit(0, -7), {1});
        row("Medit, some and none", "mesh", medit(5, 0), {5, 6});
        row("Medit, none and some", "mesh", medit(-1, 3), {3, 4});
        row("Medit, some", "mesh", medit(7, 2), {2, 7});
        row("universal, none", "unv", universal(0, 0), {1});
        row("universal, some", "unv", universal(5, 0), {5, 6});
    }

    void rebuildsWhereNoneIsGiven()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, content);
        QFETCH(Counts, regions);
        const ToolRun run = importContent("in." + suffix, content);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        ImportedCase imported(path("case"));
        Counts found;
        for (auto* region : imported.entities(3)) {
            found.push_back(region->id());
        }
        QCOMPARE(found, regions);
        QCOMPARE(imported.meshCounts()[3], 2);
        QCOMPARE(imported.modelCounts(),
                 regions.size() == 1 ? (Counts{0, 0, 1, 1}) : (Counts{0, 1, 3, 2}));
        QCOMPARE(imported.faults(), QString());
    }
};

QTEST_APPLESS_MAIN(TestImportTags)
#include "tst_ImportTags.moc"
