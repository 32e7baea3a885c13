#include "Counted.h"
#include "Places.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using Ovra::GeoTool::counted;

class TestCounted : public QObject
{
    Q_OBJECT

private slots:
    void putsTheNounIntoTheRightNumber_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QString>("singular");
        QTest::addColumn<QString>("plural");
        QTest::addColumn<QString>("text");
        const auto row = [](qint64 count, const char* singular, const char* plural,
                            const char* text) {
            QTest::newRow(text) << count << singular << plural << text;
        };
        row(0, "element", "", "0 elements");
        row(1, "element", "", "1 element");
        row(2, "element", "", "2 elements");
        row(1, "mesh vertex", "", "1 mesh vertex");
        row(21, "mesh vertex", "", "21 mesh vertices");
        row(1, "child", "children", "1 child");
        row(0, "child", "children", "0 children");
        row(1, "node is left out", "nodes are left out", "1 node is left out");
        row(11, "node is left out", "nodes are left out", "11 nodes are left out");
        row(5000000000, "byte", "", "5000000000 bytes");
        row(-1, "%1 of %2", "", "-1 %1 of %2s");
    }

    void putsTheNounIntoTheRightNumber()
    {
        QFETCH(qint64, count);
        QFETCH(QString, singular);
        QFETCH(QString, plural);
        QFETCH(QString, text);
        QCOMPARE(counted(count, singular, plural), text);
    }

    /// A number in front of a plural reads "1 elements" some day: all such messages use counted().
    void isUsedByAllMessages()
    {
        static const QRegularExpression literal(QStringLiteral("\"(?:[^\"\\\\]|\\\\.)*\""));
        static const QRegularExpression bare(QStringLiteral(
            "(?<!of )(?<!no )%\\d (?!has |without )(?:[a-z]+ "
            ")?(?:elements|nodes|vertices|edges|faces|regions|bytes|"
            "values|pairs|children|weights|entities|triangles|tetrahedra|wedges|"
            "findings|errors|warnings|lines|points|volumes|solids|shells)\\b(?! out)"));
        int files = 0;
        QDirIterator walk(Places::toolSources(), {"*.cpp", "*.h"}, QDir::Files,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            QFile file(walk.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            ++files;
            const QString text = QString::fromUtf8(file.readAll());
            auto literals = literal.globalMatch(text);
            while (literals.hasNext()) {
                const QString message = literals.next().captured();
                QVERIFY2(!bare.match(message).hasMatch(),
                         qPrintable(file.fileName() + QStringLiteral(": ") + message));
            }
        }
        QVERIFY(files > 100);
    }
};

QTEST_APPLESS_MAIN(TestCounted)
#include "tst_Counted.moc"
