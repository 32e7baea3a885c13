#include "OutputFiles.h"
#include "ToolError.h"
#include "ToolRun.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Ovra::GeoTool;

class TestOutputFiles : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
    }

    void nothingAppearsBeforeTheCommit()
    {
        OutputFiles files;
        files.add(path("a")).write("new a");
        files.add(path("b")).write("new b");
        QVERIFY(!QFile::exists(path("a")) && !QFile::exists(path("b")));
        files.commit();
        QCOMPARE(filesIn(directory_->path()), QStringList({"a", "b"}));
        QCOMPARE(contentOf(path("a")), QByteArray("new a"));
        QCOMPARE(contentOf(path("b")), QByteArray("new b"));
    }

    void withoutCommitNothingIsLeft()
    {
        QVERIFY(writeContent(path("a"), "old a"));
        {
            OutputFiles files;
            files.add(path("a")).write("new a");
            files.add(path("b")).write("new b");
        }
        QCOMPARE(filesIn(directory_->path()), QStringList({"a"}));
        QCOMPARE(contentOf(path("a")), QByteArray("old a"));
    }

    void aFailedSecondRenameTakesTheFirstBack_data()
    {
        QTest::addColumn<bool>("oldFile");
        QTest::newRow("old file") << true;
        QTest::newRow("no old file") << false;
    }

    void aFailedSecondRenameTakesTheFirstBack()
    {
        QFETCH(bool, oldFile);
        if (oldFile) {
            QVERIFY(writeContent(path("a"), "old a"));
        }
        {
            OutputFiles files;
            files.add(path("a")).write("new a");
            files.add(path("b")).write("new b");
            QVERIFY(QDir(directory_->path()).mkdir("b")); // no file can be renamed to that
            QVERIFY_THROWS_EXCEPTION(ToolError, files.commit());
        }
        QCOMPARE(filesIn(directory_->path()), oldFile ? QStringList({"a"}) : QStringList());
        QCOMPARE(contentOf(path("a")), oldFile ? QByteArray("old a") : QByteArray());
    }

    void keepsPermissionsAndLinks()
    {
        const QFile::Permissions permissions =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(writeContent(path("real"), "old"));
        QVERIFY(QFile::setPermissions(path("real"), permissions));
        QVERIFY(QFile::link(path("real"), path("link")));
        OutputFiles files;
        files.add(path("link")).write("new");
        files.commit();
        QVERIFY(QFileInfo(path("link")).isSymLink());
        QCOMPARE(contentOf(path("real")), QByteArray("new"));
        QCOMPARE(QFile::permissions(path("real")), permissions);
    }

    void newFilesFollowTheUmask()
    {
        const mode_t before = umask(027);
        OutputFiles files;
        files.add(path("a")).write("new");
        files.commit();
        umask(before);
        struct stat facts = {};
        QCOMPARE(stat(qPrintable(path("a")), &facts), 0);
        QCOMPARE(facts.st_mode & 07777, 0640U);
    }

    void leftoversGoWithTheNextCommit()
    {
        const TemporaryName killed;
        const QStringList users = {"a.old", "a.part", "a.0123456789abcdef01234567.part",
                                   QFileInfo(killed.kept(path("a"))).fileName()};
        const QString another = killed.part(path("b"));
        for (const QString& name : users) {
            QVERIFY(writeContent(path(name), "a user's"));
        }
        for (const QString& left : {killed.part(path("a")), killed.old(path("a")), another}) {
            QVERIFY(writeContent(left, "left over"));
        }
        write("a", "new");
        QStringList expected = users + QStringList{"a", QFileInfo(another).fileName()};
        expected.sort();
        QCOMPARE(filesIn(directory_->path()), expected);
        write("b", "new");
        QVERIFY(!QFile::exists(another));
    }

    void whatAnotherRunWritesStays()
    {
        const QString part = TemporaryName().part(path("a"));
        QVERIFY(writeContent(part, "half"));
        {
            const Descriptor other(open(qPrintable(part), O_RDONLY));
            TemporaryName::hold(other);
            write("a", "new");
            QVERIFY(QFile::exists(part));
        }
        write("a", "newer");
        QCOMPARE(filesIn(directory_->path()), QStringList({"a"}));
    }

    /// Finished files are closed; one of their set is open, and holds them all.
    void whatAnotherRunHasFinishedStays()
    {
        const TemporaryName other;
        const QString closed = other.part(path("a"));
        const QString held = other.part(path("b"));
        const QString ofAnotherSet = TemporaryName().part(path("a"));
        for (const QString& part : {closed, held, ofAnotherSet}) {
            QVERIFY(writeContent(part, "new"));
        }
        {
            const Descriptor file(open(qPrintable(held), O_RDONLY));
            TemporaryName::hold(file);
            write("a", "newer");
            QVERIFY(QFile::exists(closed));
            QVERIFY(!QFile::exists(ofAnotherSet));
        }
        write("a", "newest");
        QVERIFY(!QFile::exists(closed));
    }

    void knowsAnUnfinishedPair_data()
    {
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<bool>("unfinished");
        QTest::newRow("nothing") << QStringList() << false;
        QTest::newRow("before the first rename") << QStringList{"first", "second"} << false;
        QTest::newRow("between the renames") << QStringList{"second"} << true;
        QTest::newRow("first alone") << QStringList{"first"} << false;
    }

    void knowsAnUnfinishedPair()
    {
        QFETCH(QStringList, left);
        QFETCH(bool, unfinished);
        const TemporaryName killed;
        for (const QString& name : left) {
            QVERIFY(writeContent(killed.part(path(name)), "new"));
        }
        const QString expected = unfinished ? killed.part(path("second")) : QString();
        QCOMPARE(OutputFiles::unfinished(path("first"), path("second")), expected);
        const Descriptor alive(open(qPrintable(killed.part(path("second"))), O_RDONLY));
        TemporaryName::hold(alive);
        QCOMPARE(OutputFiles::unfinished(path("first"), path("second")), QString());
    }

    void refusesWhatItCannotWrite_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("directory") << "directory"
                                   << "it is a directory";
        QTest::newRow("no directory") << "missing/a"
                                      << "there is no directory %1/missing";
        QTest::newRow("below a file") << "file/a"
                                      << "there is no directory %1/file";
    }

    void refusesWhatItCannotWrite()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        QVERIFY(QDir(directory_->path()).mkdir("directory"));
        QVERIFY(writeContent(path("file"), "old"));
        if (reason.contains('%')) {
            reason = reason.arg(directory_->path());
        }
        OutputFiles files;
        try {
            files.add(path(name));
            QFAIL("no error");
        } catch (const ToolError& error) {
            QCOMPARE(error.exitCode(), ExitCode::OutputFailed);
            QCOMPARE(error.text(), QStringLiteral("cannot write %1: %2").arg(path(name), reason));
        }
    }

    void aFullDeviceIsFoundAtTheCommit()
    {
        OutputFiles files;
        files.add("/dev/full").write("text");
        QVERIFY_THROWS_EXCEPTION(ToolError, files.commit());
    }

private:
    void write(const QString& name, const QByteArray& content)
    {
        OutputFiles files;
        files.add(path(name)).write(content);
        files.commit();
    }

    QString path(const QString& name) const { return directory_->filePath(name); }

    std::unique_ptr<QTemporaryDir> directory_;
};

QTEST_GUILESS_MAIN(TestOutputFiles)
#include "tst_OutputFiles.moc"
