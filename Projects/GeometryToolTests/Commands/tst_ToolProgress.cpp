#include "Places.h"
#include "Progress.h"
#include "Terminal.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Ovra::GeoTool;

namespace
{

/// Standard error of this process on a terminal, as long as the object lives.
class StandardErrorOn
{
public:
    explicit StandardErrorOn(const Terminal& terminal)
        : before_(dup(STDERR_FILENO))
    {
        const int slave = open(terminal.name().toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
        dup2(slave, STDERR_FILENO);
        close(slave);
    }

    ~StandardErrorOn()
    {
        dup2(before_, STDERR_FILENO);
        close(before_);
    }

    StandardErrorOn(const StandardErrorOn&) = delete;
    StandardErrorOn& operator=(const StandardErrorOn&) = delete;

private:
    int before_;
};

} // namespace

class TestToolProgress : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        TinyCase tiny;
        QVERIFY(tiny.save(path("tiny")));
    }

    void init()
    {
        if (!Terminal::obstacle().isEmpty()) {
            QSKIP(Terminal::obstacle().constData());
        }
    }

    void showsPhasesOnATerminalAndErasesThem_data() { addCommands(); }

    void showsPhasesOnATerminalAndErasesThem()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, phases);
        const QByteArray text = printed(arguments);
        if (text.contains("was built without")) {
            QSKIP("this build has not got what this needs");
        }
        for (const QString& phase : phases) {
            QVERIFY2(text.contains("\r\033[K" + phase.toUtf8() + "\r"), text.constData());
        }
        QVERIFY(text.endsWith("\r\033[K"));
        QVERIFY(!text.contains('\n'));
    }

    void isSilentWhenTold_data() { addCommands(); }

    void isSilentWhenTold()
    {
        QFETCH(QStringList, arguments);
        const QByteArray text = printed(arguments + QStringList("--quiet"));
        if (text.contains("was built without")) {
            QSKIP("this build has not got what this needs");
        }
        QCOMPARE(text, QByteArray());
    }

    void isSilentWhenPiped()
    {
        const ToolRun run = runTool({"solver-input", path("tiny"), "-o", path("out")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, QByteArray());
    }

    void countsTheSecondsOfAPhaseThatSaysNothing()
    {
        const Terminal terminal;
        const StandardErrorOn on(terminal);
        Progress progress;
        progress.phase(QStringLiteral("standing still"));
        QByteArray text;
        QTRY_VERIFY_WITH_TIMEOUT((text += terminal.text()).contains(": 2 s"), 60'000);
        QVERIFY(text.startsWith("\r\033[Kstanding still\r\033[Kstanding still: 1 s"));
        QTest::qWait(200); // the line changes ten times a second at most
        progress.update(1, 2, QStringLiteral("things"));
        progress.finish();
        QTest::qWait(1500);
        QVERIFY(terminal.text().endsWith("\r\033[Kstanding still: 1 of 2 things, 50%\r\033[K"));
    }

    void goesOnCountingAfterAWarning()
    {
        const Terminal terminal;
        const StandardErrorOn on(terminal);
        Progress progress;
        progress.phase(QStringLiteral("standing still"));
        progress.warning(QStringLiteral("look out"));
        QByteArray text;
        QTRY_VERIFY_WITH_TIMEOUT((text += terminal.text()).contains(": 1 s"), 60'000);
        QVERIFY(text.contains("\r\033[Kovrageo: warning: look out\r\n\r\033[Kstanding still: 1 s"));
    }

    void countsWhileStandardErrorIsElsewhere()
    {
        const Terminal terminal;
        const Terminal elsewhere;
        const StandardErrorOn on(terminal);
        Progress progress;
        const StandardErrorOn other(elsewhere);
        progress.phase(QStringLiteral("standing still"));
        QByteArray text;
        QTRY_VERIFY_WITH_TIMEOUT((text += terminal.text()).contains(": 1 s"), 60'000);
        QCOMPARE(elsewhere.text(), QByteArray());
    }

    void givesWayToAResultOnStandardOutput()
    {
        const Terminal terminal;
        const StandardErrorOn on(terminal);
        Progress progress;
        progress.phase(QStringLiteral("reading"));
        progress.giveWay();
        QCOMPARE(terminal.text(), QByteArray("\r\033[Kreading\r\033[K"));
        progress.phase(QStringLiteral("writing"));
        progress.update(1, 2);
        QTest::qWait(1500);
        QCOMPARE(terminal.text(), QByteArray());
        progress.warning(QStringLiteral("look out"));
        QCOMPARE(terminal.text(), QByteArray("ovrageo: warning: look out\r\n"));
    }

    void leavesItsLineToACopyOfTheProcess()
    {
        const Terminal terminal;
        const StandardErrorOn on(terminal);
        Progress progress;
        progress.phase(QStringLiteral("preparing"));
        progress.leaveLineToCopy();
        const pid_t copy = fork();
        if (copy == 0) {
            progress.phase(QStringLiteral("copying"));
            sleep(2);
            _exit(0);
        }
        waitpid(copy, nullptr, 0);
        progress.finish();
        const QByteArray text = terminal.text();
        QVERIFY2(text.startsWith("\r\033[Kpreparing\r\033[Kcopying\r\033[Kcopying: 1 s"),
                 text.constData());
        QVERIFY(text.endsWith("\r\033[K"));
    }

    void erasesTheLineOfAnImportThatFails()
    {
        QFile input(path("broken.stl"));
        QVERIFY(input.open(QIODevice::WriteOnly) && input.write("solid broken") > 0);
        input.close();
        const QByteArray text = printed({"import", path("broken.stl"), "-o", path("broken")});
        if (text.contains("was built without Gmsh")) {
            QSKIP("this build has no Gmsh");
        }
        QVERIFY(text.contains("\r\033[Kimporting "));
        QVERIFY2(text.contains("\r\033[Kovrageo: error: "), text.constData());
    }

    void theErrorLineStandsAlone()
    {
        const QByteArray text = printed({"info", path("none")});
        QVERIFY2(text.endsWith("ovrageo: error: cannot read " + path("none.geo_model").toUtf8() +
                               ": no such file\r\n"),
                 text.constData());
    }

private:
    void addCommands() const
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("phases");
        const QString tiny = path("tiny");
        const QString model = QStringLiteral("reading tiny.geo_model");
        const QString mesh = QStringLiteral("reading tiny.geo_mesh");
        QTest::newRow("solver-input") << QStringList{"solver-input", tiny, "-o", path("out")}
                                      << QStringList{model, mesh, "writing section 1 of 9, nodes",
                                                     "writing section 9 of 9, rotating"};
        QTest::newRow("export") << QStringList{"export", tiny, "-o", path("o.vtu")}
                                << QStringList{model, mesh, "writing " + path("o.vtu")};
        QTest::newRow("picture") << QStringList{"picture", tiny, "-o", path("o.png")}
                                 << QStringList{model, mesh, "drawing"};
        QTest::newRow("report") << QStringList{"report", tiny, "-o", path("o.html")}
                                << QStringList{model, mesh, "counting", "gathering the surfaces"};
        QTest::newRow("diff") << QStringList{"diff", tiny, tiny}
                              << QStringList{model, mesh, "matching the entities",
                                             "comparing the mesh vertices",
                                             "comparing the mesh regions"};
    }

    QString path(const QString& name) const { return directory_.filePath(name); }

    static QByteArray printed(const QStringList& arguments)
    {
        const Terminal terminal;
        QProcess process;
        process.setStandardErrorFile(terminal.name());
        process.start(Places::tool(), arguments);
        return process.waitForFinished(-1) ? terminal.text() : QByteArray("did not end");
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestToolProgress)
#include "tst_ToolProgress.moc"
