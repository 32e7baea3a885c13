#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "Places.h"
#include "PngImage.h"
#include "PreparationCase.h"
#include "Terminal.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Ovra::Geo;

namespace
{

/// Of the colours of the regions and of findings; which shade, the light decides.
bool isBlue(const PngImage::Colour& colour)
{
    return colour[2] > colour[0] + 40 && colour[2] > colour[1] + 20;
}

bool isOrange(const PngImage::Colour& colour)
{
    return colour[0] > colour[1] + 30 && colour[1] > colour[2] + 20;
}

bool isRed(const PngImage::Colour& colour)
{
    return colour[0] > colour[1] + 90 && colour[0] > colour[2] + 80;
}

/// Of axes and what is written at them.
bool isGrey(const PngImage::Colour& colour)
{
    const auto [low, high] = std::minmax_element(colour.begin(), colour.end());
    return *high < 200 && *high - *low < 16;
}

/// The column with the longest grey line in the left half.
int uprightAxis(const PngImage& image)
{
    int best = 0;
    int most = 0;
    for (int x = 0; x < image.width() / 2; ++x) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            count += isGrey(image.at(x, y)) ? 1 : 0;
        }
        best = count > most ? x : best;
        most = std::max(most, count);
    }
    return best;
}

/// How many texts stand one above the other to the left of the marks at an axis, below the titles.
int textsBeside(const PngImage& image, int axis)
{
    constexpr int titles = 50;
    constexpr int gap = 4; // of lines, more than there is within a text
    int texts = 0;
    int last = 0;
    for (int y = titles; y < image.height(); ++y) {
        for (int x = axis - 28; x < axis - 10; ++x) {
            if (isGrey(image.at(x, y))) {
                texts += y - last > gap ? 1 : 0;
                last = y;
            }
        }
    }
    return texts;
}

bool isWhite(const PngImage::Colour& colour)
{
    return colour == PngImage::Colour{255, 255, 255};
}

} // namespace

/// Pictures of small cases: nobody looks at them, so that they are counted by colours.
class TestToolPicture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        GridMesh grid(PreparationCase::plan({"12"}, {{1, "solid"}, {2, "solid"}}));
        grid.database()->model()->entity(2, 1)->setName(QStringLiteral("inlet"));
        QVERIFY(PreparationCase::save(*grid.database(), path("cubes")));
        const ToolRun run = runTool({"picture", path("cubes"), "-o", path("first.png")});
        if (run.errors.contains("which draws pictures; build it with")) {
            QSKIP("this build has no VTK");
        }
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }

    void isAsLargeAsAsked()
    {
        const PngImage image = pictureOf("cubes", {"--size", "640x400"});
        QCOMPARE(image.width(), 640);
        QCOMPARE(image.height(), 400);
    }

    void showsEachRegionInItsColour()
    {
        const PngImage image = pictureOf("cubes");
        QVERIFY(image.count(isBlue) > 4000);
        QVERIFY(image.count(isOrange) > 4000);
        QVERIFY(image.count(isWhite) > 400 * 250 / 2);
    }

    void needsNoDisplay()
    {
        // None of the variables that lead to one is handed on.
        QVERIFY(!qEnvironmentVariableIsSet("WAYLAND_DISPLAY"));
        qunsetenv("DISPLAY");
        QVERIFY(pictureOf("cubes").isValid());
    }

    void everyRunGivesTheSameBytes()
    {
        QVERIFY(draw("cubes", {}));
        const QByteArray first = contentOf(path("picture.png"));
        QVERIFY(draw("cubes", {}));
        QVERIFY(contentOf(path("picture.png")) == first);
    }

    void showsWhatLiesWithinAFluid()
    {
        GridMesh grid(PreparationCase::plan({"111", "121", "111"}, {{1, "fluid"}, {2, "solid"}}));
        QVERIFY(PreparationCase::save(*grid.database(), path("within")));
        QVERIFY(pictureOf("within").count(isOrange) > 500);
    }

    void showsTheFacesThatAreAskedFor()
    {
        QCOMPARE(pictureOf("cubes", {"--faces", "inl*"}).count(isOrange), 0);
        QVERIFY(pictureOf("cubes", {"--faces", "region 2"}).count(isOrange) > 1000);
    }

    void cutsTheCaseOpen()
    {
        const PngImage whole = pictureOf("cubes");
        const PngImage half = pictureOf("cubes", {"--clip", "x=0.5"});
        QVERIFY(whole.count(isOrange) > 4000);
        QCOMPARE(half.count(isOrange), 0);
        QVERIFY(half.count(isBlue) > 4000);
    }

    void cutsOpenWhatIsNoElement()
    {
        ClosedCase odd;
        odd.addVertex(Vector(1, 1, 1));
        odd.addVertex(Vector(0, 1, 1));
        odd.addVertex(Vector(1, 0, 1));
        for (const auto& vertices : {std::initializer_list<int>{1, 2},
                                     {1, 2, 3},
                                     {1, 2, 3, 4, 5, 6, 7},
                                     {1, 2, 3, 4, 5, 6, 7, 1, 2}}) {
            odd.addElement(3, vertices, odd.region);
        }
        QVERIFY(odd.save(path("odd")));
        const auto isGrey = [](const PngImage::Colour& colour) {
            return std::abs(colour[0] - 172) + std::abs(colour[1] - 176) +
                       std::abs(colour[2] - 182) <
                   20;
        };
        const int section = pictureOf("odd", {"--clip", "x=0.25"}).count(isGrey);
        QVERIFY2(section > 1000, qPrintable(QString::number(section)));
    }

    void movesRegionsApart()
    {
        const PngImage apart = pictureOf("cubes", {"--explode", "1"});
        QVERIFY(apart.count(isBlue) > 2000);
        QVERIFY(PngImage::difference(apart, pictureOf("cubes"), 20) > 1.0);
    }

    void marksFindings()
    {
        ClosedCase inverted;
        inverted.vertices[3]->setPoint(Vector(0, 0, -1));
        QVERIFY(inverted.save(path("inverted")));
        QCOMPARE(pictureOf("inverted").count(isRed), 0);
        QVERIFY(pictureOf("inverted", {"--findings"}).count(isRed) > 20);
    }

    void marksHaveTheColourThatTheLegendSays()
    {
        ClosedCase bare; // an edge that is a side of no face is a warning
        bare.addVertex(Vector(0.2, 0.2, 0.5));
        bare.addElement(1, {4, 5}, bare.addEdge());
        QVERIFY(bare.save(path("bare")));
        const PngImage image = pictureOf("bare", {"--findings"});
        const int amber = image.count([](const PngImage::Colour& colour) {
            return std::abs(colour[0] - 237) + std::abs(colour[1] - 166) +
                       std::abs(colour[2] - 13) <
                   60;
        });
        const int yellow = image.count([](const PngImage::Colour& colour) {
            return colour[0] > 200 && colour[1] > 200 && colour[2] < 120;
        });
        QVERIFY2(amber > 120, qPrintable(QString::number(amber))); // the disc of the legend has 78
        QCOMPARE(yellow, 0);
    }

    void writesAllNumbersOfAnAxis()
    {
        PlanarCase planar;
        for (int id = 1; id <= 4; ++id) {
            auto* const vertex = static_cast<MeshVertex*>(planar.database.mesh()->entity(0, id));
            vertex->setPoint(vertex->centroid() * 0.04 + Vector(0.001, 0.001, 0));
        }
        planar.addElement(2, {1, 3, 4}, planar.faces[1]);
        QVERIFY(SavedCase::save(planar.database, path("numbered")));
        const PngImage image = pictureOf("numbered", {"--size", "900x562"});
        QCOMPARE(textsBeside(image, uprightAxis(image)), 4); // 0.01 to 0.04, in the middle of which
                                                             // stands the title
    }

    void drawsWhatIsAHairsBreadthWide()
    {
        QVERIFY(pictureOf("cubes", {"--clip", "y=0.9999999999999999"}).count(isBlue) > 1000);
    }

    void drawsPlanarCases()
    {
        PlanarCase planar;
        planar.addElement(2, {1, 3, 4}, planar.faces[1]);
        QVERIFY(SavedCase::save(planar.database, path("planar")));
        const PngImage image = pictureOf("planar");
        QVERIFY(image.count(isBlue) > 4000);
        QVERIFY(image.count(isOrange) > 4000);
    }

    void refuses_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("size without a height")
            << QStringList{"--size", "640"} << 2
            << QByteArray("--size must be two numbers of pixels from 200 to 8000, such as "
                          "1600x1000, not \"640\"");
        QTest::newRow("size too large")
            << QStringList{"--size", "99999x200"} << 2
            << QByteArray("--size must be two numbers of pixels from 200 to 8000, such as "
                          "1600x1000, not \"99999x200\"");
        QTest::newRow("clip without a place")
            << QStringList{"--clip", "x="} << 2
            << QByteArray("--clip must be an axis and a place on it, such as x=0.05, not \"x=\"");
        QTest::newRow("clip along no axis")
            << QStringList{"--clip", "w=1"} << 2
            << QByteArray("--clip must be an axis and a place on it, such as x=0.05, not \"w=1\"");
        QTest::newRow("clip at no number")
            << QStringList{"--clip", "z=nan"} << 2
            << QByteArray("--clip must be an axis and a place on it, such as x=0.05, not "
                          "\"z=nan\"");
        QTest::newRow("clip outside")
            << QStringList{"--clip", "y=7"} << 6
            << QByteArray("--clip: y = 7 does not cut what is shown, from 0 to 1");
        QTest::newRow("clip at a side")
            << QStringList{"--clip", "y=1"} << 6
            << QByteArray("--clip: y = 1 does not cut what is shown, from 0 to 1");
        QTest::newRow("explode below 0") << QStringList{"--explode", "-1"} << 2
                                         << QByteArray("--explode must be a number from 0 to 100");
        QTest::newRow("unknown faces")
            << QStringList{"--faces", "inlet,outlet"} << 6
            << QByteArray("--faces: no face or region is called \"outlet\"");
        QTest::newRow("unknown attribute")
            << QStringList{"--color-by", "colour"} << 2
            << QByteArray("--color-by must be region, face, material or the tag of an attribute, "
                          "not \"colour\"");
        QTest::newRow("attribute that nothing has")
            << QStringList{"--color-by", "periodic_pair_id"} << 6
            << QByteArray("no region or face has the attribute periodic_pair_id");
    }

    void refuses()
    {
        QFETCH(QStringList, options);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, error);
        QFile::remove(path("refused.png"));
        const ToolRun run =
            runTool(QStringList{"picture", path("cubes"), "-o", path("refused.png")} + options);
        QCOMPARE(run.errors, "ovrageo: error: " + error + '\n');
        QCOMPARE(run.exitCode, exitCode);
        QVERIFY(!QFile::exists(path("refused.png")));
    }

    void refusesOtherSuffixes_data()
    {
        QTest::addColumn<QString>("output");
        for (const char* output : {"x.jpg", "x", "png", "x.png.bak", ".pngs"}) {
            QTest::newRow(output) << output;
        }
    }

    void refusesOtherSuffixes()
    {
        QFETCH(QString, output);
        const ToolRun run = runTool({"picture", path("cubes"), "-o", path(output)});
        QCOMPARE(run.errors, "ovrageo: error: the output " + path(output).toUtf8() +
                                 " must have the suffix .png\n");
        QCOMPARE(run.exitCode, 2);
        QVERIFY(!QFile::exists(path(output)));
    }

    void takesItsSuffixInAnyCase()
    {
        QCOMPARE(runTool({"picture", path("cubes"), "-o", path("X.Png")}).errors, QByteArray());
        QVERIFY(PngImage(contentOf(path("X.Png"))).isValid());
    }

    void writesToStandardOutput()
    {
        QVERIFY(draw("cubes", {}));
        for (const char* output : {"-", "/dev/stdout"}) {
            const ToolRun run =
                runTool({"picture", path("cubes"), "-o", output, "--size", "400x250"});
            QCOMPARE(run.errors, QByteArray());
            QVERIFY(run.output == contentOf(path("picture.png")));
        }
    }

    void writesToNoTerminal()
    {
        if (!Terminal::obstacle().isEmpty()) {
            QSKIP(Terminal::obstacle().constData());
        }
        const Terminal terminal;
        for (const QString& output : {QStringLiteral("-"), terminal.name()}) {
            QProcess process;
            process.setStandardOutputFile(terminal.name());
            process.start(Places::tool(), {"picture", path("cubes"), "-o", output});
            QVERIFY(process.waitForFinished(-1));
            QCOMPARE(process.exitCode(), 2);
            QCOMPARE(process.readAllStandardError(),
                     "ovrageo: error: cannot write to " + output.toUtf8() +
                         ": it is a terminal, and the file is no text; name a file to write\n");
            QCOMPARE(terminal.text(), QByteArray());
        }
    }

    void refusesToReplaceItsInput()
    {
        const QByteArray mesh = contentOf(path("cubes.geo_mesh"));
        QVERIFY(QFile::link("cubes.geo_mesh", path("link.png")));
        const ToolRun run = runTool({"picture", path("cubes"), "-o", path("link.png")});
        QVERIFY2(run.errors.contains(" is the input "), run.errors.constData());
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(contentOf(path("cubes.geo_mesh")), mesh);
    }

    void refusesACaseWithoutFaces()
    {
        Database empty;
        QVERIFY(SavedCase::save(empty, path("empty")));
        const ToolRun run = runTool({"picture", path("empty"), "-o", path("refused.png")});
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.errors, QByteArray("ovrageo: error: the case has no faces to show\n"));
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    bool draw(const QString& name, const QStringList& options) const
    {
        QFile::remove(path("picture.png"));
        const QStringList size =
            options.contains("--size") ? QStringList() : QStringList{"--size", "400x250"};
        const ToolRun run =
            runTool(QStringList{"picture", path(name), "-o", path("picture.png")} + size + options);
        return run.exitCode == 0 && run.errors.isEmpty();
    }

    PngImage pictureOf(const QString& name, const QStringList& options = {}) const
    {
        return PngImage(draw(name, options) ? contentOf(path("picture.png")) : QByteArray());
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolPicture)
#include "tst_ToolPicture.moc"
