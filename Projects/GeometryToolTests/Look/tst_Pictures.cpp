#include "Places.h"
#include "PngImage.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

/// The pictures of the documentation are those that this tool draws.
class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (runTool({"picture", "nothing", "-o", "nothing.png"})
                .errors.contains("has no ovrageo")) {
            QSKIP("this build has no VTK");
        }
        QProcess script;
        script.start(Places::documentation() + QStringLiteral("/../Scripts/pictures"),
                     {Places::tool(), directory_.path()});
        QVERIFY(script.waitForFinished(-1));
        QVERIFY2(script.exitCode() == 0, script.readAllStandardError().constData());
    }

    void areAllKept() { QCOMPARE(filesIn(directory_.path()), filesIn(kept())); }

    void lookLikeThoseKept_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name : filesIn(kept())) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    void lookLikeThoseKept()
    {
        QFETCH(QString, name);
        const PngImage made(contentOf(directory_.filePath(name)));
        const PngImage old(contentOf(kept() + QLatin1Char('/') + name));
        QVERIFY(made.isValid());
        const double difference = PngImage::difference(made, old, 20);
        QVERIFY2(difference < 1.5, qPrintable(QString::number(difference)));
    }

    void doNotLookLikeOneAnother()
    {
        const QStringList names = filesIn(kept());
        for (qsizetype i = 1; i < names.size(); ++i) {
            const PngImage one(contentOf(kept() + QLatin1Char('/') + names[i - 1]));
            const PngImage other(contentOf(kept() + QLatin1Char('/') + names[i]));
            QVERIFY(PngImage::difference(one, other, 20) > 3.0);
        }
    }

private:
    static QString kept() { return Places::documentation() + QStringLiteral("/pictures"); }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestPictures)
#include "tst_Pictures.moc"
