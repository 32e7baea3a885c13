#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

/// \brief What holds for exports of every format.
class ToolExportTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(directory_.isValid());
        QVERIFY(TinyCase().save(name()));
    }

    void refusesWhatItCannotWrite_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("begin");

        QTest::newRow("unknown suffix")
            << QStringList{"-o", "x.foo"}
            << QByteArray("no format has the suffix .foo; known are .vtu");
        QTest::newRow("unknown format")
            << QStringList{"-o", "x.vtu", "--format", "bar"}
            << QByteArray("no format has the suffix .bar; known are .vtu");
        QTest::newRow("no suffix")
            << QStringList{"-o", "x"}
            << QByteArray("the output x has no suffix to tell its format; give it one or name the "
                          "format with --format; known are .vtu");
        QTest::newRow("zones of what has none")
            << QStringList{"-o", "x.vtu", "--one-zone"}
            << QByteArray("--one-zone is for .cgns files, and a .vtu file has no zones\n");
        QTest::newRow("binary to standard output")
            << QStringList{"-o", "-", "--format", "vtu"}
            << QByteArray("cannot write to -: a .vtu file is binary; name a file to write\n");
        const auto noFolder = [](const QByteArray& output, const QByteArray& suffix) {
            return "the output " + output +
                   " leaves no name for its folder, which is that of the output without the "
                   "suffix; give it one such as wing." +
                   suffix + '\n';
        };
        QTest::newRow("blocks of a name without a suffix")
            << QStringList{"-o", "out", "--format", "vtm"} << noFolder("out", "vtm");
        QTest::newRow("parts of a name without a suffix")
            << QStringList{"-o", "out", "--format", "pvtu"} << noFolder("out", "pvtu");
        for (const QByteArray& output : {QByteArray(".vtm"), QByteArray("..vtm"),
                                         QByteArray("...vtm"), QByteArray("/tmp/.vtm")}) {
            QTest::newRow(output.constData())
                << QStringList{"-o", output} << noFolder(output, "vtm");
        }
        QTest::newRow("binary to a device")
            << QStringList{"-o", "/dev/null", "--format", "vtu"}
            << QByteArray(
                   "cannot write to /dev/null: a .vtu file is binary; name a file to write\n");
    }

    void refusesWhatItCannotWrite()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, begin);
        const ToolRun run = runTool(QStringList{"export", name()} + arguments);
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.startsWith("ovrageo: error: " + begin), run.errors.constData());
        QVERIFY(isOneErrorLine(run.errors));
    }

    /// Told before the case is read: this one is damaged.
    void writesNoFolderOverAFile()
    {
        const QString path = directory_.filePath("taken.vtm");
        QVERIFY(writeContent(directory_.filePath("taken"), "a file"));
        QVERIFY(writeContent(name() + ".geo_mesh", "damaged"));
        const ToolRun run = runTool({"export", name(), "-o", path});
        QCOMPARE(run.errors, "ovrageo: error: cannot write " +
                                 directory_.filePath("taken").toUtf8() + ": it is no directory\n");
        QCOMPARE(run.exitCode, 5);
        QCOMPARE(contentOf(directory_.filePath("taken")), QByteArray("a file"));
    }

    void replacesNoInput()
    {
        const QByteArray before = contentOf(name() + ".geo_mesh");
        const ToolRun run =
            runTool({"export", name(), "-o", name() + ".geo_mesh", "--format", "vtu"});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(contentOf(name() + ".geo_mesh"), before);
    }

    void takesTheFormatFromTheSuffixInAnyCase()
    {
        QVERIFY(writes({"-o", directory_.filePath("a.vtu")}));
        QVERIFY(writes({"-o", directory_.filePath("B.VTU")}));
        QVERIFY(writes({"-o", directory_.filePath("c"), "--format", "vtu"}));
        QVERIFY(writes({"-o", directory_.filePath("d"), "--format", ".vtu"}));
        const QByteArray expected = contentOf(directory_.filePath("a.vtu"));
        QVERIFY(expected.startsWith("<VTKFile type=\"UnstructuredGrid\""));
        QCOMPARE(contentOf(directory_.filePath("B.VTU")), expected);
        QCOMPARE(contentOf(directory_.filePath("c")), expected);
    }

    void leavesNothingWhereTheDiskIsFull()
    {
        const QString path = directory_.filePath("full.vtu");
        const ToolRun run = runTool({"export", name(), "-o", path}, QString(), [] {
            const rlimit limit = {1024, 1024};
            setrlimit(RLIMIT_FSIZE, &limit);
        });
        QCOMPARE(run.errors,
                 "ovrageo: error: cannot write " + path.toUtf8() + ": File too large\n");
        QCOMPARE(run.exitCode, 5);
        QVERIFY(!QFile::exists(path));
    }

private:
    QString name() const { return directory_.filePath("tiny"); }

    bool writes(const QStringList& arguments) const
    {
        const ToolRun run = runTool(QStringList{"export", name()} + arguments);
        return run.exitCode == 0 && run.output.isEmpty() && run.errors.isEmpty();
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(ToolExportTest)
#include "tst_ToolExport.moc"
