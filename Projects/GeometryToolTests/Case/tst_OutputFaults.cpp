#include "Places.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <memory>
#include <vector>

namespace
{

/// Variables that the tools started during its life find in their environment.
class Environment
{
public:
    explicit Environment(const QMap<QByteArray, QByteArray>& variables)
        : variables_(variables)
    {
        for (auto i = variables_.cbegin(); i != variables_.cend(); ++i) {
            qputenv(i.key().constData(), i.value());
        }
    }
    ~Environment()
    {
        for (auto i = variables_.cbegin(); i != variables_.cend(); ++i) {
            qunsetenv(i.key().constData());
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    QMap<QByteArray, QByteArray> variables_;
};

} // namespace

/// What is left of a case when the run that replaces it fails or is killed, at every system call
/// that has to do with it.
class TestOutputFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(inputs_.isValid());
        TinyCase first;
        QVERIFY(first.save(inputs_.filePath("first")));
        TinyCase second;
        second.region->setName("another box");
        second.addVertex(Ovra::Geo::Vector(2, 2, 2));
        QVERIFY(second.save(inputs_.filePath("second")));
    }

    void init()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
    }

    void aCallThatFails_data() { addFileSystems(); }

    void aCallThatFails()
    {
        QFETCH(bool, replaces);
        int refused = 0;
        for (int call = 1; goesWrong(call, QByteArray::number(ENOSPC)); ++call) {
            const Pair found = pair("case");
            if (run_.exitCode == 0) { // what failed was not needed, or came afterwards
                QCOMPARE(found, input("second"));
                continue;
            }
            ++refused;
            QCOMPARE(run_.exitCode, 5);
            QVERIFY2(isOneErrorLine(run_.errors), run_.errors.constData());
            QCOMPARE(found, replaces ? input("first") : Pair());
            QCOMPARE(filesIn(directory_->path()).size(), replaces ? 2 : 0);
        }
        QVERIFY2(refused >= 6,
                 QByteArray::number(refused).constData()); // write, sync, link, rename
        QCOMPARE(pair("case"), input("second"));
    }

    void aProcessThatIsKilled_data() { addFileSystems(); }

    void aProcessThatIsKilled()
    {
        QFETCH(bool, replaces);
        int divided = 0;
        int call = 1;
        for (; goesWrong(call, "kill"); ++call) {
            QCOMPARE(run_.exitCode, -1);
            divided += checkKilled(replaces) ? 1 : 0;
            checkLeftoversGo();
        }
        QVERIFY(call > 8);
        QCOMPARE(divided, 1); // between the two renames
    }

    void aProcessThatIsKilledAtAnyTime()
    {
        for (int round = 0; round < 20; ++round) {
            QVERIFY(copy("first"));
            QProcess process;
            process.start(Places::tool(), convert("second"));
            QVERIFY(process.waitForStarted());
            if (!process.waitForFinished(round)) { // the whole takes some 15 ms
                process.kill();
                QVERIFY(process.waitForFinished(-1));
            }
            checkKilled(true);
            checkLeftoversGo();
        }
    }

    /// Each run replaces both files or, for the next run, neither.
    void runsAtOnce()
    {
        for (int round = 0; round < 4; ++round) {
            std::vector<std::unique_ptr<QProcess>> processes;
            for (int i = 0; i < 6; ++i) {
                processes.push_back(std::make_unique<QProcess>());
                processes.back()->start(Places::tool(), convert(i % 2 == 0 ? "first" : "second"));
            }
            for (const auto& process : processes) {
                QVERIFY(process->waitForFinished(-1));
                QCOMPARE(process->readAllStandardError(), QByteArray());
                QCOMPARE(process->exitCode(), 0);
            }
            const Pair found = pair("case");
            QVERIFY(found == input("first") || found == input("second"));
            QCOMPARE(filesIn(directory_->path()), QStringList({"case.geo_mesh", "case.geo_model"}));
        }
    }

private:
    using Pair = QPair<QByteArray, QByteArray>;

    static void addFileSystems()
    {
        QTest::addColumn<QStringList>("lacks");
        QTest::addColumn<bool>("replaces");
        const QString noUnnamed = QStringLiteral("FAULTY_NO_TMPFILE");
        const QString noLinks = QStringLiteral("FAULTY_NO_LINKS");
        QTest::newRow("old files") << QStringList() << true;
        QTest::newRow("no old files") << QStringList() << false;
        QTest::newRow("old files, no files without names") << QStringList{noUnnamed} << true;
        QTest::newRow("old files, no links") << QStringList{noUnnamed, noLinks} << true;
    }

    QString path(const QString& name) const { return directory_->filePath(name); }

    QStringList convert(const QString& name) const
    {
        return {"convert", inputs_.filePath(name), "-o", path("case")};
    }

    Pair pair(const QString& name) const
    {
        return {contentOf(path(name + ".geo_model")), contentOf(path(name + ".geo_mesh"))};
    }

    Pair input(const QString& name) const
    {
        return {contentOf(inputs_.filePath(name + ".geo_model")),
                contentOf(inputs_.filePath(name + ".geo_mesh"))};
    }

    bool copy(const QString& name) const
    {
        return writeContent(path("case.geo_model"), input(name).first) &&
               writeContent(path("case.geo_mesh"), input(name).second);
    }

    void empty() const
    {
        for (const QString& file : filesIn(directory_->path())) {
            QFile::remove(path(file));
        }
    }

    /// Runs the tool from a fresh start with a fault at a call; false once there is no such call.
    bool goesWrong(int call, const QByteArray& error)
    {
        QFETCH(QStringList, lacks);
        QFETCH(bool, replaces);
        empty();
        if (replaces) {
            copy("first");
        }
        const QString mark = inputs_.filePath("mark");
        QFile::remove(mark);
        QMap<QByteArray, QByteArray> variables = {{"LD_PRELOAD", OVRA_FAULTY_CALLS},
                                                  {"ASAN_OPTIONS", "verify_asan_link_order=0"},
                                                  {"FAULTY_AT", QByteArray::number(call)},
                                                  {"FAULTY_ERRNO", error},
                                                  {"FAULTY_MARK", mark.toLocal8Bit()}};
        for (const QString& variable : lacks) {
            variables.insert(variable.toLatin1(), "1");
        }
        const Environment environment(variables);
        run_ = runTool(convert("second"));
        return QFile::exists(mark);
    }

    /// Each file is whole, the old or the new one; a new model beside an old mesh is told of.
    /// \return whether they were divided
    bool checkKilled(bool replaces)
    {
        const Pair old = replaces ? input("first") : Pair();
        const Pair come = input("second");
        const Pair found = pair("case");
        if (found == old || found == come) {
            return false;
        }
        if (found == Pair(QByteArray(), old.second)) { // without links, a name is free for a moment
            [&] { QCOMPARE(leftover("case.geo_model.*.old"), old.first); }();
            return false;
        }
        [&] {
            QCOMPARE(found, Pair(come.first, old.second));
            QCOMPARE(leftover("case.geo_mesh.*.part"), come.second);
            const ToolRun run = runTool({"info", path("case")});
            QCOMPARE(run.exitCode, 4);
            QVERIFY2(run.errors.contains(" was killed in between; rename "),
                     run.errors.constData());
        }();
        return true;
    }

    QByteArray leftover(const QString& pattern) const
    {
        const QStringList files = QDir(directory_->path()).entryList({pattern});
        return files.size() == 1 ? contentOf(path(files[0])) : QByteArray("not one file");
    }

    void checkLeftoversGo()
    {
        const ToolRun run = runTool(convert("second"));
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(pair("case"), input("second"));
        QCOMPARE(filesIn(directory_->path()), QStringList({"case.geo_mesh", "case.geo_model"}));
    }

    QTemporaryDir inputs_;
    std::unique_ptr<QTemporaryDir> directory_;
    ToolRun run_;
};

QTEST_GUILESS_MAIN(TestOutputFaults)
#include "tst_OutputFaults.moc"
