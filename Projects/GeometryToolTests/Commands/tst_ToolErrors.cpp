#include "Places.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

namespace
{

/// The commands that read a case; "@" stands for the output of those that have one.
const QList<QStringList> readingCommands = {{"info"},
                                            {"info", "--json"},
                                            {"verify"},
                                            {"convert", "-o", "@"},
                                            {"text", "-o", "@"},
                                            {"solver-input", "-o", "@"}};

QStringList commandsOfHelp()
{
    const QString help = QString::fromUtf8(runTool({"--help"}).output)
                             .section("Subcommands:", 1)
                             .section("Example:", 0, 0);
    const QRegularExpression line("^  ([a-z-]+) ", QRegularExpression::MultilineOption);
    QStringList commands;
    for (const QRegularExpressionMatch& match : line.globalMatch(help)) {
        commands += match.captured(1);
    }
    return commands;
}

} // namespace

class TestToolErrors : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        directory_ = std::make_unique<QTemporaryDir>();
        QVERIFY(directory_->isValid());
        TinyCase tiny;
        QVERIFY(tiny.save(path("tiny")));
        model_ = contentOf(path("tiny.geo_model"));
        mesh_ = contentOf(path("tiny.geo_mesh"));
    }

    void tellsOfWrongCommandLines_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("word");
        QTest::newRow("nothing") << QStringList() << "subcommand";
        QTest::newRow("unknown subcommand")
            << QStringList{"inform", "x", "-o", "y"}
            << "error: there is no command \"inform\"; there are import, info, verify, convert, "
               "text, "
               "prepare, solver-input, export, report, diff, picture; see ovrageo --help\n";
        QTest::newRow("empty subcommand") << QStringList{""} << "error: there is no command \"\"; ";
        QTest::newRow("unknown option") << QStringList{"--fast"} << "--fast";
        QTest::newRow("unknown option of info") << QStringList{"info", "x", "--xml"} << "--xml";
        QTest::newRow("no name") << QStringList{"info"} << "NAME";
        QTest::newRow("two names") << QStringList{"info", "x", "y", "z"}
                                   << "error: not expected: y z; see ovrageo info --help\n";
        const auto ofParts = [](const char* parts, const char* error) {
            QTest::addRow("parts %s", parts)
                << QStringList{"export", "x", "-o", "x.vtu", "--parts", parts} << error;
        };
        ofParts("abc", "error: --parts takes a number, not \"abc\"; see ovrageo export --help\n");
        ofParts("2.5", "error: --parts takes a whole number, not \"2.5\"; see ovrageo export --");
        ofParts("1e99", "error: --parts takes no number as large as 1e99; see ovrageo export --");
        QTest::newRow("no output") << QStringList{"convert", "x"} << "--output";
        QTest::newRow("no value") << QStringList{"convert", "x", "-o"} << "--output";
        QTest::newRow("unknown format")
            << QStringList{"convert", "x", "-o", "y", "--mesh-format", "2015"} << "2015";
        QTest::newRow("format by number")
            << QStringList{"convert", "x", "-o", "y", "--mesh-format", "1"} << "--mesh-format";
        QTest::newRow("no sections")
            << QStringList{"solver-input", "x", "-o", "y", "--sections", ""} << "section";
        QTest::newRow("scale is no number")
            << QStringList{"solver-input", "x", "-o", "y", "--scale", "mm"} << "--scale";
        for (const char* size : {"0", "-1", "nan", "inf"}) {
            QTest::addRow("mesh size %s", size)
                << QStringList{"import", "x", "-o", "y", "--mesh-size", size}
                << "error: --mesh-size must be a positive number\n";
        }
        for (const char* command : {"import", "convert", "prepare"}) {
            const QStringList words = QStringList{command, "x", "-o"};
            const QStringList rest = words[0] == "prepare" ? QStringList{"--all"} : QStringList();
            for (const char* output : {"", "missing/", "..", "missing/.geo_mesh"}) {
                QTest::addRow("%s to '%s'", command, output)
                    << words + QStringList{output} + rest << "names no";
            }
            for (const char* output : {"/dev/stdout", "/dev/null", "/dev/fd/1", "/dev/new", "-"}) {
                QTest::addRow("%s to %s", command, output)
                    << words + QStringList{output} + rest << "a case is two files";
            }
        }
        for (const char* output : {"", "missing/", "."}) {
            QTest::addRow("solver-input to '%s'", output)
                << QStringList{"solver-input", "x", "-o", output} << "names no";
        }
        QTest::newRow("text to ''") << QStringList{"text", "x", "-o", ""} << "names no";
    }

    void tellsOfWrongCommandLines()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, word);
        const ToolRun run = runTool(arguments);
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains(word.toUtf8()), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
    }

    void helpHasAnExampleForEachSubcommand_data()
    {
        QTest::addColumn<QString>("command");
        const QStringList commands = commandsOfHelp();
        QVERIFY(commands.contains("import") && commands.contains("diff"));
        for (const QString& command : commands) {
            QTest::newRow(qPrintable(command)) << command;
        }
    }

    void helpHasAnExampleForEachSubcommand()
    {
        QFETCH(QString, command);
        const ToolRun run = runTool({command, "--help"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.output.contains("Example"));
        QVERIFY(run.output.contains(("  ovrageo " + command + ' ').toUtf8()));
        QCOMPARE(run.errors, QByteArray());
    }

    void helpTellsTheExitCodes()
    {
        const QByteArray help = runTool({"--help"}).output;
        QVERIFY(help.contains("Exit codes: 0 done, 1 internal error, 2 usage, 3 input missing"));
        QVERIFY(help.contains("Those of diff: 0 equal, 1 different, 2 trouble."));
    }

    void tellsTheVersion()
    {
        const ToolRun run = runTool({"--version"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(QRegularExpression("^ovrageo \\d+\\.\\d+\\.\\d+\n$").match(run.output).hasMatch());
    }

    void tellsOfMissingFiles_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::newRow("model") << "tiny.geo_model";
        QTest::newRow("mesh") << "tiny.geo_mesh";
    }

    void tellsOfMissingFiles()
    {
        QFETCH(QString, missing);
        QVERIFY(QFile::remove(path(missing)));
        expectFailureOfAll(3, "cannot read " + path(missing) + ": no such file");
    }

    void tellsOfDirectoriesInPlaceOfFiles()
    {
        QVERIFY(QFile::remove(path("tiny.geo_mesh")));
        QVERIFY(QDir(directory_->path()).mkdir("tiny.geo_mesh"));
        expectFailureOfAll(3, "cannot read " + path("tiny.geo_mesh") + ": it is no regular file");
    }

    void tellsWhereAFileIsTruncated()
    {
        for (qsizetype size = 0; size < model_.size(); size += 23) {
            expectTruncation("tiny.geo_model", model_, size);
        }
        QVERIFY(writeContent(path("tiny.geo_model"), model_));
        for (qsizetype size = 0; size < mesh_.size(); size += 131) {
            expectTruncation("tiny.geo_mesh", mesh_, size);
        }
        expectTruncation("tiny.geo_model", model_, model_.size() - 1);
        QVERIFY(writeContent(path("tiny.geo_model"), model_));
        expectTruncation("tiny.geo_mesh", mesh_, mesh_.size() - 1);
    }

    void tellsWhatWasReadBeforeTheTruncation()
    {
        // The region section ends with -1 and 0 region attributes; without its last byte all
        // entities have been read.
        QVERIFY(writeContent(path("tiny.geo_mesh"), mesh_.chopped(1)));
        const ToolRun run = runTool({"info", path("tiny")});
        QCOMPARE(run.errors, QStringLiteral("ovrageo: error: %1 is truncated: it ends at byte %2, "
                                            "after 4 mesh vertices, 1 mesh face, 1 mesh region\n")
                                 .arg(path("tiny.geo_mesh"))
                                 .arg(mesh_.size() - 1)
                                 .toUtf8());
    }

    void tellsOfFilesOfAnotherKind_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("number");
        QTest::newRow("text") << QByteArray("solid teapot, facet normal") << "1936682089";
        QTest::newRow("zeros") << QByteArray(64, '\0') << "0";
        QTest::newRow("format of the future")
            << QByteArray("\0\0\0\4", 4) + QByteArray(64, '\0') << "4";
        QTest::newRow("version 15") << QByteArray("\0\0\0\17", 4) + QByteArray(64, '\0') << "15";
        QTest::newRow("negative") << QByteArray(64, '\xff') << "-1";
    }

    void tellsOfFilesOfAnotherKind()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, number);
        QVERIFY(writeContent(path("tiny.geo_mesh"), content));
        expectFailureOfAll(
            4, path("tiny.geo_mesh") + " is no mesh file: at byte 0 stands " + number +
                   ", where a format number from 1 to 3 or a version from 10 to 14 is expected");
        QVERIFY(writeContent(path("tiny.geo_model"), content));
        expectFailureOfAll(
            4, path("tiny.geo_model") + " is no model file: at byte 0 stands " + number +
                   ", where a format number from 1 to 1 or a version from 10 to 14 is expected");
    }

    void survivesOverwrittenBytes()
    {
        for (qsizetype i = 16; i < mesh_.size(); i += 97) {
            QByteArray damaged = mesh_;
            damaged[i] = static_cast<char>(~damaged[i]);
            QVERIFY(writeContent(path("tiny.geo_mesh"), damaged));
            const ToolRun run = runTool({"info", path("tiny"), "--quiet"});
            QVERIFY2(run.exitCode == 0 || run.exitCode == 4,
                     QByteArray::number(qlonglong(i)).constData());
            QVERIFY2(run.exitCode == 0 ? run.errors.isEmpty() : isOneErrorLine(run.errors),
                     run.errors.constData());
            QCOMPARE(run.output.isEmpty(), run.exitCode != 0);
        }
    }

    void tellsOfModelAndMeshThatDoNotBelongTogether()
    {
        TinyCase tiny;
        tiny.bottom->setParent(nullptr);
        tiny.region->removeAdjacency(tiny.face);
        tiny.model()->remove(tiny.face);
        QVERIFY(tiny.save(path("other")));
        QVERIFY(runTool({"convert", path("tiny"), "-o", path("tiny"), "--mesh-format", "2013"})
                    .exitCode == 0);
        QVERIFY(writeContent(path("tiny.geo_model"), contentOf(path("other.geo_model"))));
        const ToolRun run = runTool({"info", path("tiny")});
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains("tiny.geo_mesh is damaged at or just before byte"),
                 run.errors.constData());
        QVERIFY2(run.errors.contains("after 4 mesh vertices"), run.errors.constData());
    }

    void trailingBytesAreAWarning_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "tiny";
        QTest::newRow("as a place in a text") << "50%1 tiny";
    }

    void trailingBytesAreAWarning()
    {
        QFETCH(QString, name);
        QVERIFY(writeContent(path(name + ".geo_model"), model_ + "xyz"));
        QVERIFY(writeContent(path(name + ".geo_mesh"), contentOf(path("tiny.geo_mesh"))));
        const ToolRun run = runTool({"info", path(name)});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, "ovrageo: warning: " + path(name + ".geo_model").toUtf8() +
                                 " goes on for 3 bytes behind the end of the model, at byte " +
                                 QByteArray::number(model_.size()) + '\n');
        QVERIFY(run.output.startsWith("Case"));
        QVERIFY(writeContent(path("tiny.geo_model"), model_ + "xyz"));
        QCOMPARE(runTool({"info", path("tiny"), "--quiet"}).errors, QByteArray());
        QCOMPARE(runTool({"--quiet", "info", path("tiny")}).errors, QByteArray());
    }

    void aMeshOfNothingWithMoreBehindItIsDamaged()
    {
        QVERIFY(writeContent(path("tiny.geo_mesh"), model_));
        const ToolRun run = runTool({"info", path("tiny")});
        const QRegularExpression line(
            "^ovrageo: error: " + QRegularExpression::escape(path("tiny.geo_mesh")) +
            " holds no mesh entities but (\\d+) more bytes; is it a mesh "
            "file\\?\n$");
        const QRegularExpressionMatch match = line.match(run.errors);
        QVERIFY2(match.hasMatch(), run.errors.constData());
        expectFailureOfAll(4, path("tiny.geo_mesh") + " holds no mesh entities but " +
                                  match.captured(1) + " more bytes; is it a mesh file?");
        Ovra::Geo::Database nothing;
        QByteArray empty;
        QDataStream stream(&empty, QIODevice::WriteOnly);
        nothing.mesh()->write(stream);
        QVERIFY(writeContent(path("tiny.geo_mesh"), empty));
        QCOMPARE(runTool({"info", path("tiny")}).exitCode, 0);
        QVERIFY(writeContent(path("tiny.geo_mesh"), empty + "xyz"));
        expectFailureOfAll(4, path("tiny.geo_mesh") + " holds no mesh entities but 3 more bytes; "
                                                      "is it a mesh file?");
    }

    void noOutputReplacesAnInput_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("input");
        const auto row = [](const char* name, const QStringList& arguments, const char* input) {
            QTest::newRow(name) << arguments << input;
        };
        row("mesh", {"solver-input", "tiny", "-o", "tiny.geo_mesh"}, "tiny.geo_mesh");
        row("model", {"solver-input", "tiny", "-o", "tiny.geo_model"}, "tiny.geo_model");
        row("by ./", {"solver-input", "tiny", "-o", "./tiny.geo_mesh"}, "tiny.geo_mesh");
        row("by ..", {"solver-input", "tiny", "-o", "dumps/../tiny.geo_mesh"}, "tiny.geo_mesh");
        row("by .. from nowhere", {"solver-input", "tiny", "-o", "missing/../tiny.geo_mesh"},
            "tiny.geo_mesh");
        row("by the full path", {"solver-input", "tiny", "-o", "@/tiny.geo_mesh"}, "tiny.geo_mesh");
        row("symbolic link", {"solver-input", "tiny", "-o", "symbolic"}, "tiny.geo_mesh");
        row("hard link", {"solver-input", "tiny", "-o", "hard"}, "tiny.geo_mesh");
        row("input by a link", {"solver-input", "linked", "-o", "tiny.geo_mesh"},
            "linked.geo_mesh");
        row("script", {"import", "script.geo_model", "-o", "script"}, "script.geo_model");
        row("script, suffix", {"import", "script.geo_model", "-o", "./script.geo_mesh"},
            "script.geo_model");
        row("attributes", {"import", "box.geo", "--attributes", "a.geo_mesh", "-o", "a"},
            "a.geo_mesh");
        row("half the case, convert", {"convert", "tiny", "-o", "half"}, "tiny.geo_model");
        row("half the case, prepare", {"prepare", "tiny", "-o", "half", "--all"}, "tiny.geo_model");
        row("crossed", {"convert", "tiny", "-o", "crossed"}, "tiny.geo_mesh");
        row("text", {"text", "tiny", "-o", "dumps"}, "tiny.geo_model");
    }

    void noOutputReplacesAnInput()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, input);
        arguments.replaceInStrings("@", directory_->path());
        makeLinks();
        const QStringList before = filesIn(directory_->path());
        QList<QByteArray> contents;
        for (const QString& file : before) {
            contents += contentOf(path(file));
        }
        const ToolRun run = runInside(arguments);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.endsWith("is the input " + input.toUtf8() + "; give another name\n"),
                 run.errors.constData());
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(filesIn(directory_->path()), before);
        for (qsizetype i = 0; i < before.size(); ++i) {
            QCOMPARE(contentOf(path(before[i])), contents[i]);
        }
    }

    void aCaseMayReplaceItself_data()
    {
        QTest::addColumn<QStringList>("arguments");
        for (const char* output : {"tiny", "tiny.geo_mesh", "./tiny", "dumps/../tiny", "linked"}) {
            QTest::addRow("convert to %s", output) << QStringList{"convert", "tiny", "-o", output};
            QTest::addRow("prepare to %s", output)
                << QStringList{"prepare", "tiny", "-o", output, "--renumber"};
        }
    }

    void aCaseMayReplaceItself()
    {
        QFETCH(QStringList, arguments);
        makeLinks();
        const ToolRun run = runInside(arguments);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QVERIFY(QFileInfo(path("linked.geo_mesh")).isSymLink());
        QCOMPARE(runInside({"info", "tiny"}).exitCode, 0);
    }

    /// In the same words, and before anything is read.
    void tellsOfAMissingDirectory_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("output");
        QTest::newRow("import") << QStringList{"import", "no.geo"} << "out";
        QTest::newRow("convert") << QStringList{"convert", "no"} << "out";
        QTest::newRow("prepare") << QStringList{"prepare", "no", "--all"} << "out";
        QTest::newRow("solver-input") << QStringList{"solver-input", "no"} << "out.txt";
        QTest::newRow("export") << QStringList{"export", "no"} << "out.inp";
        QTest::newRow("export to parts")
            << QStringList{"export", "no", "--parts", "2"} << "out.pvtu";
        QTest::newRow("picture") << QStringList{"picture", "no"} << "out.png";
        QTest::newRow("report") << QStringList{"report", "no"} << "out.html";
    }

    void tellsOfAMissingDirectory()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, output);
        const ToolRun run = runTool(arguments + QStringList{"-o", path("missing/" + output)});
        if (run.errors.contains("; build it with -D")) {
            QSKIP("this build has not got what this needs");
        }
        const QString file = output == "out" ? output + ".geo_model" : output;
        const QString expected = "ovrageo: error: cannot write " + path("missing/" + file) +
                                 ": there is no directory " + path("missing") + "\n";
        QCOMPARE(QString::fromUtf8(run.errors), expected);
        QCOMPARE(run.exitCode, 5);
    }

    void tellsOfOutputsThatCannotBe_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QString>("output");
        const QList<QStringList> commands = {
            {"convert", "-o"}, {"text", "-o"}, {"solver-input", "-o"}};
        for (const QStringList& command : commands) {
            QTest::addRow("%s below a file", qPrintable(command[0]))
                << command << "tiny.geo_model/out";
            if (command[0] != "text") {
                QTest::addRow("%s in no directory", qPrintable(command[0]))
                    << command << "missing/out";
            }
            QTest::addRow("%s in a closed directory", qPrintable(command[0]))
                << command << "closed/out";
        }
        QTest::newRow("file is a directory") << QStringList{"solver-input", "-o"} << "closed";
    }

    void tellsOfOutputsThatCannotBe()
    {
        QFETCH(QStringList, command);
        QFETCH(QString, output);
        QVERIFY(QDir(directory_->path()).mkdir("closed"));
        QVERIFY(QFile::setPermissions(path("closed"), QFile::ReadOwner | QFile::ExeOwner));
        if (output == "closed/out" && geteuid() == 0) {
            QSKIP("no directory is closed to the superuser");
        }
        const QStringList before = filesIn(directory_->path());
        const ToolRun run = runTool(command + QStringList{path(output), path("tiny")});
        QCOMPARE(run.exitCode, 5);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains(path(output).toUtf8()), run.errors.constData());
        QCOMPARE(filesIn(directory_->path()), before);
    }

    void aFullDiskLeavesOldFilesAsTheyWere_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("convert") << QStringList{"convert", "-o", "out"}
                                 << QStringList{"out.geo_model", "out.geo_mesh"};
        QTest::newRow("text") << QStringList{"text", "-o", "dumps"}
                              << QStringList{"dumps/big.geo_model.txt", "dumps/big.geo_mesh.txt"};
        QTest::newRow("solver-input")
            << QStringList{"solver-input", "-o", "out.txt"} << QStringList{"out.txt"};
    }

    void aFullDiskLeavesOldFilesAsTheyWere()
    {
        QFETCH(QStringList, command);
        QFETCH(QStringList, files);
        TinyCase big;
        for (int i = 0; i < 20000; ++i) {
            big.addVertex(Ovra::Geo::Vector(i, 0.123456789, 0));
        }
        QVERIFY(big.save(path("big")));
        QVERIFY(QDir(directory_->path()).mkdir("dumps"));
        for (const QString& file : files) {
            QVERIFY(writeContent(path(file), "old"));
        }
        const QStringList before = filesIn(directory_->path()) + filesIn(path("dumps"));
        const ToolRun run =
            runTool({command[0], path("big"), command[1], path(command[2])}, {}, [] {
                // Above what a build that counts coverage writes when it ends.
                const rlimit limit = {400000, 400000};
                setrlimit(RLIMIT_FSIZE, &limit);
            });
        QCOMPARE(run.exitCode, 5);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains("File too large"), run.errors.constData());
        for (const QString& file : files) {
            QCOMPARE(contentOf(path(file)), QByteArray("old"));
        }
        QCOMPARE(filesIn(directory_->path()) + filesIn(path("dumps")), before);
    }

    void aFullDeviceIsAnError()
    {
        const ToolRun run = runTool({"solver-input", path("tiny"), "-o", "/dev/full"});
        QCOMPARE(run.exitCode, 5);
        QCOMPARE(run.errors, QByteArray("ovrageo: error: cannot write /dev/full: No space left on "
                                        "device\n"));
    }

    void fullStandardOutputIsAnError()
    {
        QProcess process;
        process.setStandardOutputFile("/dev/full");
        process.start(Places::tool(), {"info", path("tiny")});
        QVERIFY(process.waitForFinished(-1));
        QCOMPARE(process.exitCode(), 5);
        QCOMPARE(process.readAllStandardError(),
                 QByteArray("ovrageo: error: cannot write standard output: No space left on "
                            "device\n"));
    }

private:
    QString path(const QString& name) const { return directory_->filePath(name); }

    /// Links that lead to the files of the case, and inputs of an import.
    void makeLinks()
    {
        QVERIFY(QDir(directory_->path()).mkdir("dumps"));
        QVERIFY(QFile::link("tiny.geo_mesh", path("symbolic")));
        QVERIFY(link(qPrintable(path("tiny.geo_mesh")), qPrintable(path("hard"))) == 0);
        QVERIFY(QFile::link("tiny.geo_model", path("linked.geo_model")));
        QVERIFY(QFile::link("tiny.geo_mesh", path("linked.geo_mesh")));
        QVERIFY(QFile::link("tiny.geo_model", path("half.geo_model")));
        QVERIFY(QFile::link("tiny.geo_mesh", path("crossed.geo_model")));
        QVERIFY(QFile::link("tiny.geo_model", path("crossed.geo_mesh")));
        QVERIFY(QFile::link("../tiny.geo_model", path("dumps/tiny.geo_model.txt")));
        const QByteArray script = "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n";
        QVERIFY(writeContent(path("box.geo"), script));
        QVERIFY(writeContent(path("script.geo_model"), script));
        QVERIFY(writeContent(path("a.geo_mesh"), "{}"));
    }

    ToolRun runInside(const QStringList& arguments)
    {
        const QString before = QDir::currentPath();
        QDir::setCurrent(directory_->path());
        const ToolRun run = runTool(arguments);
        QDir::setCurrent(before);
        return run;
    }

    /// Every command that reads fails alike, with that one line, and leaves no file and old files
    /// alone.
    void expectFailureOfAll(int exitCode, const QString& text)
    {
        for (const QStringList& command : readingCommands) {
            QVERIFY(writeContent(path("out"), "old"));
            const QStringList before = filesIn(directory_->path());
            QStringList arguments = command;
            arguments.replaceInStrings("@", path("out"));
            const ToolRun run = runTool(arguments << path("tiny"));
            QCOMPARE(run.errors, ("ovrageo: error: " + text + '\n').toUtf8());
            QCOMPARE(run.exitCode, exitCode);
            QCOMPARE(run.output, QByteArray());
            QCOMPARE(contentOf(path("out")), QByteArray("old"));
            QCOMPARE(filesIn(directory_->path()), before);
        }
    }

    void expectTruncation(const QString& file, const QByteArray& content, qsizetype size)
    {
        QVERIFY(writeContent(path(file), content.left(size)));
        const ToolRun run = runTool({"info", path("tiny")});
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        const QString start =
            QStringLiteral("ovrageo: error: %1 is truncated: it ends at byte %2, ")
                .arg(path(file))
                .arg(size);
        QVERIFY2(run.errors.startsWith(start.toUtf8()), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
    }

    std::unique_ptr<QTemporaryDir> directory_;
    QByteArray model_;
    QByteArray mesh_;
};

QTEST_GUILESS_MAIN(TestToolErrors)
#include "tst_ToolErrors.moc"
