#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

namespace
{

const QByteArray modelText = R"(*** Format ***
1
*** Version ***
15.1.2
*** Bounding Box ***
[(0, 0, 0), (1, 1, 1)]
*** Refinement Regions ***
0 count
*** Attributes ***
--- Begin Attributes ---
--- End Attributes ---
*** Entities 0 ***
0 count
*** Entities 1 ***
0 count
*** Entities 2 ***
1 count
*** Model Entity ***
2 dim
3 id
 tag
inlet name
[(0, 0, 0), (0, 0, 0)] box
0 area
(0.5, 0.5, 0) centroid
(0, 0, -1) normal
0 isPlanar
*** Entities 3 ***
1 count
*** Model Entity ***
3 dim
2 id
 tag
box name
--- Begin Attributes ---
material_id int 7
material_type QString fluid
--- End Attributes ---
[(0, 0, 0), (0, 0, 0)] box
0 volume
(0.25, 0.25, 0.25) centroid
*** Adjacencies ***
--- Adjacencies for 3 ---
... 0 ...
0 count
... 1 ...
0 count
... 3 ...
1 count
2 id
--- Adjacencies for 2 ---
... 0 ...
0 count
... 1 ...
0 count
... 2 ...
1 count
3 id
)";

const QByteArray meshText = R"(*** Format ***
1
*** Version ***
15.1.3
*** Attributes ***
--- Begin Attributes ---
--- End Attributes ---
*** Entities 0 ***
4 count
1 3 2
(0, 0, 0)
2 3 2
(1, 0, 0)
3 3 2
(0, 1, 0)
4 3 2
(0, 0, 1)
*** Entities 1 ***
0 count
*** Entities 2 ***
1 count
1 2 3
3 1 3 2@
*** Entities 3 ***
1 count
1 3 2
4 1 2 3 4@
)";

/// Lines that end in a blank are written with a sign that an editor does not trim.
QByteArray withBlanks(QByteArray text)
{
    return text.replace('@', ' ');
}

} // namespace

class TestToolText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        TinyCase tiny;
        const Ovra::Geo::Box none = {Ovra::Geo::Vector(0, 0, 0), Ovra::Geo::Vector(0, 0, 0)};
        tiny.face->setBoundingBox(none);
        tiny.region->setBoundingBox(none);
        QVERIFY(tiny.save(path("tiny")));
    }

    void dumpsBothFiles()
    {
        const ToolRun run = runTool({"text", path("tiny"), "-o", path("new/dumps")});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(filesIn(path("new/dumps")),
                 QStringList({"tiny.geo_mesh.txt", "tiny.geo_model.txt"}));
        QCOMPARE(contentOf(path("new/dumps/tiny.geo_model.txt")), modelText);
        QCOMPARE(contentOf(path("new/dumps/tiny.geo_mesh.txt")), withBlanks(meshText));
    }

    void replacesOldDumps()
    {
        QVERIFY(QDir(directory_.path()).mkpath("again"));
        QVERIFY(writeContent(path("again/tiny.geo_model.txt"), "old"));
        QCOMPARE(runTool({"text", path("tiny.geo_mesh"), "-o", path("again")}).exitCode, 0);
        QCOMPARE(contentOf(path("again/tiny.geo_model.txt")), modelText);
    }

    // The model first, as a case is read.
    void dumpsBothToStandardOutput()
    {
        const QStringList before = filesIn(QDir::currentPath());
        for (const QStringList& quiet : {QStringList(), QStringList("-q")}) {
            const ToolRun run = runTool(QStringList{"text", path("tiny"), "-o", "-"} + quiet);
            QCOMPARE(run.errors, QByteArray());
            QCOMPARE(run.exitCode, 0);
            QCOMPARE(run.output, modelText + withBlanks(meshText));
        }
        QCOMPARE(filesIn(QDir::currentPath()), before);
    }

    void saysThatNobodyReads()
    {
        const ToolRun run =
            runTool({"text", path("tiny"), "-o", "-"}, QString(), closeReaderOfOutput);
        QCOMPARE(run.errors,
                 QByteArray("ovrageo: error: cannot write standard output: Broken pipe\n"));
        QCOMPARE(run.exitCode, 5);
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolText)
#include "tst_ToolText.moc"
