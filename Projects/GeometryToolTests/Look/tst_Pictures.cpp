#include "Places.h"
#include "PngImage.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <vector>

namespace
{

constexpr double mostOfLegends = 10.0;

/// As wide as the tool's column for it is at the sizes of these pictures.
PngImage::Part legendOf(const PngImage& picture)
{
    const int width = std::max(22 * picture.width() / 100, 170);
    return {picture.width() - width, 0, width, picture.height()};
}

/// In squares of a few pixels, of which a letter fills some.
double differenceOfLegends(const PngImage& a, const PngImage& b)
{
    return PngImage::largestDifference(a, b, legendOf(a), 5);
}

bool hasInk(const PngImage& picture, const PngImage::Part& part, int y)
{
    for (int x = part.x; x < part.x + part.width; ++x) {
        const PngImage::Colour colour = picture.at(x, y);
        if (*std::min_element(colour.begin(), colour.end()) < 250) {
            return true;
        }
    }
    return false;
}

/// The lines of a legend from above, each as high as the lines of pixels in which something stands.
std::vector<PngImage::Part> legendLinesOf(const PngImage& picture)
{
    const PngImage::Part legend = legendOf(picture);
    std::vector<PngImage::Part> lines;
    bool isWithin = false;
    for (int y = 0; y < legend.height; ++y) {
        const bool wasWithin = isWithin;
        isWithin = hasInk(picture, legend, y);
        if (isWithin && !wasWithin) {
            lines.push_back({legend.x, y, legend.width, 0});
        }
        if (isWithin) {
            ++lines.back().height;
        }
    }
    return lines;
}

} // namespace

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
        const double ofLegend = differenceOfLegends(made, old);
        QVERIFY2(ofLegend < mostOfLegends, qPrintable(QString::number(ofLegend)));
    }

    void aLegendThatLacksAnEntryIsSeen_data() { lookLikeThoseKept_data(); }

    void aLegendThatLacksAnEntryIsSeen()
    {
        QFETCH(QString, name);
        const PngImage old(contentOf(kept() + QLatin1Char('/') + name));
        const std::vector<PngImage::Part> lines = legendLinesOf(old);
        QVERIFY(lines.size() >= 2); // the title of the legend is the first
        const PngImage::Part last = lines.back();
        const PngImage::Part paper{last.x, last.y + last.height, last.width, last.height};
        QVERIFY(differenceOfLegends(old.withPartAt(paper, last.y), old) > mostOfLegends);
    }

    void aLegendOfOtherTextsIsSeen_data() { lookLikeThoseKept_data(); }

    void aLegendOfOtherTextsIsSeen()
    {
        QFETCH(QString, name);
        const PngImage old(contentOf(kept() + QLatin1Char('/') + name));
        std::vector<PngImage::Part> lines = legendLinesOf(old);
        QVERIFY(lines.size() >= 2); // the title of the legend is the first
        PngImage::Part text = lines[lines.size() - 2];
        text.x += 24; // the colours stay
        text.width -= 24;
        const double difference = differenceOfLegends(old.withPartAt(text, lines.back().y), old);
        QVERIFY2(difference > mostOfLegends, qPrintable(QString::number(difference)));
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
