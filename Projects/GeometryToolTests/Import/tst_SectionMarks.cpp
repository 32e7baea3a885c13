#include "SectionMarks.h"

#include <QTemporaryFile>
#include <QTest>

using Ovra::GeoTool::SectionMarks;

using Lines = QList<QByteArray>;

namespace
{

bool fill(QTemporaryFile& file, const QByteArray& content)
{
    return file.open() && file.write(content) == content.size() && file.seek(0);
}

Lines marksOf(QFile& file)
{
    Lines lines;
    SectionMarks marks(file);
    for (QByteArray line = marks.next(); !line.isEmpty(); line = marks.next()) {
        lines.append(line);
    }
    return lines;
}

} // namespace

class TestSectionMarks : public QObject
{
    Q_OBJECT

private slots:
    void areLinesThatBeginWithADollarSign_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Lines>("expected");
        QTest::newRow("nothing") << QByteArray() << Lines();
        QTest::newRow("a section")
            << QByteArray("$Nodes\n1\n1 0 0 0\n$EndNodes\n") << Lines{"$Nodes", "$EndNodes"};
        QTest::newRow("the last line is not ended")
            << QByteArray("$A\n$EndA") << Lines{"$A", "$EndA"};
        QTest::newRow("lines end as elsewhere")
            << QByteArray("$A\r\n1\r\n$EndA\r\n") << Lines{"$A", "$EndA"};
        QTest::newRow("space around")
            << QByteArray("  $A \n1\n\t $EndA\t\n") << Lines{"$A", "$EndA"};
        QTest::newRow("a dollar sign alone") << QByteArray("$\n$ $\n") << Lines{"$", "$ $"};
        QTest::newRow("dollar signs within lines")
            << QByteArray("$A\n1 $EndA\n$$\nx$\n$EndA\n") << Lines{"$A", "$$", "$EndA"};
        QTest::newRow("binary data")
            << QByteArray("$A\n\0$\1$$\n\0$EndA\n\n$EndA\n", 23) << Lines{"$A", "$EndA"};
        QTest::newRow("a long line counts as far as its 200th byte")
            << QByteArray("$" + QByteArray(300, 'a') + "\n$B\n")
            << Lines{"$" + QByteArray(199, 'a'), "$B"};
    }

    void areLinesThatBeginWithADollarSign()
    {
        QFETCH(QByteArray, content);
        QTemporaryFile file;
        QVERIFY(fill(file, content));
        QTEST(marksOf(file), "expected");
    }

    /// Whatever the size of the blocks in which the file is read, up to a mebibyte.
    void areFoundWhereverTheyStand()
    {
        for (int length = 1; length <= 64; ++length) {
            QByteArray content;
            Lines expected;
            while (content.size() < (1 << 20)) {
                expected.append(" $Mark" + QByteArray::number(expected.size()));
                content += expected.last() + '\n' + QByteArray(length * 61, '\0') + '\n';
                expected.last() = expected.last().trimmed();
            }
            QTemporaryFile file;
            QVERIFY(fill(file, content));
            QVERIFY2(marksOf(file) == expected, QByteArray::number(length).constData());
        }
    }

    void leaveTheFileBehindThem()
    {
        const QByteArray filling(1 << 19, '\n');
        QTemporaryFile file;
        QVERIFY(fill(file, "$A\n1" + filling + "$B\n2\n$C\n"));
        SectionMarks marks(file);
        QCOMPARE(marks.next(), QByteArray("$A"));
        marks.goBehind();
        QCOMPARE(file.read(1), QByteArray("1"));
        SectionMarks further(file);
        QCOMPARE(further.next(), QByteArray("$B"));
        further.goBehind();
        QCOMPARE(file.readAll(), QByteArray("2\n$C\n"));
    }
};

QTEST_APPLESS_MAIN(TestSectionMarks)
#include "tst_SectionMarks.moc"
