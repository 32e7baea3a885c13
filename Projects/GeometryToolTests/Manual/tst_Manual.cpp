#include "CommandDescription.h"
#include "CommandLine.h"
#include "ManualPage.h"
#include "Places.h"
#include "Programs.h"
#include "Progress.h"
#include "ShellCompletion.h"
#include "ToolRun.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <CLI/CLI.hpp>

using namespace Ovra::GeoTool;

namespace
{

struct Run
{
    int exitCode = -1;
    QString output;
    QString errors;
};

Run run(const QString& program, const QStringList& arguments, const QString& folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    Run result;
    if (process.waitForFinished(-1)) {
        result.exitCode = process.exitCode();
    }
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.errors = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// All that stands in a text where the expression has its first group.
QStringList captures(const QString& text, const QString& expression)
{
    QStringList found;
    const QRegularExpression pattern(expression, QRegularExpression::MultilineOption);
    for (const QRegularExpressionMatch& match : pattern.globalMatch(text)) {
        found.append(match.captured(1));
    }
    return found;
}

/// "line: offer|offer" of what complete-in-zsh prints, offers in alphabetical order.
QStringList offersOf(const QStringList& lines, const QString& printed)
{
    QStringList all;
    QStringList rest = printed.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        QStringList offers;
        while (!rest.isEmpty() && !rest.first().isEmpty()) {
            offers.append(rest.takeFirst());
        }
        rest = rest.mid(1);
        all.append(line + QLatin1String(": ") + sorted(offers).join(QLatin1Char('|')));
    }
    return all;
}

QString helpOf(const QStringList& command)
{
    return QString::fromUtf8(runTool(command + QStringList{QStringLiteral("--help")}).output);
}

/// "-o,--output NAME" and "--json", as the help has them at the beginning of lines.
QStringList optionsOf(const QString& help)
{
    QStringList options;
    for (const QString& names : captures(help, QStringLiteral("^  (-[-a-z0-9,]+)"))) {
        options += names.split(QLatin1Char(','));
    }
    return options;
}

} // namespace

// The manual page and the completions tell what the help of the tool tells.
class TestManual : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setUpCommandLine(app_, progress_);
        page_ = manualPage(app_);
        bash_ = bashCompletion(app_);
        zsh_ = zshCompletion(app_);
        QVERIFY(write(QStringLiteral("ovrageo.1"), page_));
        QVERIFY(write(QStringLiteral("ovrageo.bash"), bash_));
        QVERIFY(write(QStringLiteral("_ovrageo"), zsh_));
        for (const char* name : {"wing.geo_model", "wing.geo_mesh", "two words.geo_model",
                                 "part.step", "part.stl", "set.json", "notes.txt"}) {
            QVERIFY(write(QStringLiteral("work/") + QLatin1String(name), QString()));
        }
        QVERIFY(QDir(folder_.path()).mkpath(QStringLiteral("work/dumps")));
        commands_ = captures(helpOf({})
                                 .section(QStringLiteral("Subcommands:"), 1)
                                 .section(QStringLiteral("\n\n"), 0, 0),
                             QStringLiteral("^  ([a-z-]+) "));
        QVERIFY(commands_.size() >= 11);
    }

    void everyCommand_data()
    {
        QTest::addColumn<QString>("command");
        for (const QString& command : std::as_const(commands_)) {
            QTest::newRow(qPrintable(command)) << command;
        }
    }

    void everyCommand()
    {
        QFETCH(QString, command);
        const QStringList options = optionsOf(helpOf({command}));
        QVERIFY(options.contains(QStringLiteral("--help")));

        QCOMPARE(sorted(complete({command, QStringLiteral("-")})),
                 sorted(options + QStringList{QStringLiteral("-q"), QStringLiteral("--quiet")}));
        const QString manual =
            page_.section(QStringLiteral("\n.SS ") + QString(command).replace('-', "\\-"), 1)
                .section(QRegularExpression(QStringLiteral("\n\\.S[SH] ")), 0, 0);
        const QString arguments =
            zsh_.section(QStringLiteral("\n            (%1)\n").arg(command), 1)
                .section(QStringLiteral(";;"), 0, 0);
        for (const QString& option : options) {
            QVERIFY2(arguments.contains(option), qPrintable(option));
            const bool isHelp = option == QLatin1String("-h") || option == QLatin1String("--help");
            const QString inManual = QStringLiteral("\\fB") + QString(option).replace('-', "\\-") +
                                     QStringLiteral("\\fR");
            QVERIFY2(isHelp || manual.contains(inManual), qPrintable(option));
        }
    }

    void commonOptionsStandOnce()
    {
        for (const QString& option : optionsOf(helpOf({}))) {
            QVERIFY2(page_.section(QStringLiteral(".SH COMMANDS"), 0, 0)
                         .contains(QString(option).replace('-', "\\-")),
                     qPrintable(option));
            QVERIFY2(complete({QStringLiteral("-")}).contains(option), qPrintable(option));
            QVERIFY2(zsh_.section(QStringLiteral("case $state"), 0, 0).contains(option),
                     qPrintable(option));
        }
    }

    void everyPlaceholderIsKnown()
    {
        for (const CommandDescription& command : CommandDescription::ofSubcommands(app_)) {
            for (const DescribedOption& option : command.options) {
                QVERIFY2(option.placeholder.isEmpty() || Completion::isKnown(option.placeholder),
                         qPrintable(command.name + QLatin1Char(' ') + option.placeholder));
            }
        }
        QVERIFY(!Completion::isKnown(QStringLiteral("UNHEARD")));
    }

    void bashCompletes_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* words, const char* expected) {
            QTest::newRow(words) << QString::fromUtf8(words).split(QLatin1Char(' '))
                                 << QString::fromUtf8(expected).split(QLatin1Char('|'),
                                                                      Qt::SkipEmptyParts);
        };
        row("im", "import");
        row("-q ver", "verify");
        row("verify ", "wing|two words|dumps");
        row("verify wi", "wing");
        row("verify wing.", "wing.geo_model");
        row("info ", "wing|two words|part.step|dumps");
        row("import ", "part.step|part.stl|dumps");
        row("import part.step --attributes ", "set.json|dumps");
        row("import part.step --attributes =", "set.json|dumps");
        row("import part.step --attributes = se", "set.json");
        row("import part.step --dimension ", "2|3");
        row("import part.step --mesh-size ", "");
        row("import part.step --mesh", "--mesh-size");
        row("convert wing --mesh-format 2014", "2014|2014a");
        row("export wing --format v", "vtu|vtp|vtm|vtk");
        row("export wing -o par", "part.stl");
        row("text wing --output ", "dumps");
        row("solver-input wing -o no", "notes.txt");
        row("solver-input wing --sections ex", "extrusion");
        row("picture wing --color-by reg", "region");
        row("report wing --before wi", "wing");
        row("unheard ", "");
    }

    void bashCompletes()
    {
        QFETCH(QStringList, words);
        QFETCH(QStringList, expected);
        QCOMPARE(sorted(complete(words)), sorted(expected));
    }

    void zshParses()
    {
        if (Programs::isMissing("zsh")) {
            QSKIP("there is no zsh");
        }
        const Run parsed =
            run(Programs::find("zsh"), {QStringLiteral("-n"), path(QStringLiteral("_ovrageo"))},
                folder_.path());
        QCOMPARE(parsed.errors, QString());
        QCOMPARE(parsed.exitCode, 0);
    }

    // One shell for all lines, since it takes a second to start.
    void zshCompletes()
    {
        if (Programs::isMissing("zsh")) {
            QSKIP("there is no zsh");
        }
        const std::pair<QString, QString> expected[] = {
            {"ovrageo im", "import"},
            {"ovrageo -q ver", "verify"},
            {"ovrageo verify ", "dumps|two words.geo_model|wing.geo_model"},
            {"ovrageo info p", "part.step"},
            {"ovrageo import ", "dumps|part.step|part.stl"},
            {"ovrageo import part.step --attributes ", "dumps|set.json"},
            {"ovrageo import part.step --attributes=s", "set.json"},
            {"ovrageo import part.step --dimension ", "2|3"},
            {"ovrageo import part.step --mesh-size ", ""},
            {"ovrageo import part.step --mesh", "--mesh-size"},
            {"ovrageo convert wing --mesh-format 2014", "2014|2014a"},
            {"ovrageo export wing --format v", "vtk|vtm|vtp|vtu"},
            {"ovrageo picture wing --color-by reg", "region"},
            {"ovrageo unheard ", ""},
        };
        QStringList arguments{folder_.path()};
        QStringList offered;
        for (const auto& [line, offers] : expected) {
            arguments.append(line);
            offered.append(line + QLatin1String(": ") + offers);
        }
        const Run shell = run(Places::toolSources() +
                                  QLatin1String("/../GeometryToolTests/Manual/complete-in-zsh"),
                              arguments, path(QStringLiteral("work")));
        QCOMPARE(shell.exitCode, 0);
        QCOMPARE(shell.errors, QString());
        QCOMPARE(offersOf(arguments.mid(1), shell.output), offered);
    }

    void manualFormatsWithoutWarnings()
    {
        if (Programs::isMissing("groff")) {
            QSKIP("there is no groff");
        }
        const Run formatted =
            run(Programs::find("groff"),
                {QStringLiteral("-ww"), QStringLiteral("-mandoc"), QStringLiteral("-Tascii"),
                 QStringLiteral("-P-cbou"), path(QStringLiteral("ovrageo.1"))},
                folder_.path());
        QCOMPARE(formatted.errors, QString());
        QCOMPARE(formatted.exitCode, 0);
        QCOMPARE(captures(formatted.output, QStringLiteral("^([A-Z][A-Z ]+)$")),
                 (QStringList{"NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "EXIT STATUS",
                              "EXAMPLES", "SEE ALSO"}));
        QVERIFY(formatted.output.contains(QStringLiteral("       7      A check has findings.\n")));
        QVERIFY(formatted.output.contains(QStringLiteral(
            "       --clip x|y|z=V\n              Cuts the case open at a place on an axis, "
            "such as x=0.05, and\n              leaves out what is nearer.\n")));
        QVERIFY(formatted.output.contains(QStringLiteral(
            "ovrageo picture wing -o sides.png --faces 'inlet,wall_*' --findings\n")));
    }

private:
    QString path(const QString& name) const { return folder_.filePath(name); }

    bool write(const QString& name, const QString& text)
    {
        QDir(folder_.path()).mkpath(QStringLiteral("work"));
        return writeContent(path(name), text.toUtf8());
    }

    /// What bash offers for the last of the words behind "ovrageo".
    QStringList complete(const QStringList& words) const
    {
        const QString script =
            QStringLiteral("source \"$1\"; shift; COMP_WORDS=(ovrageo \"$@\"); COMP_CWORD=$#; "
                           "_ovrageo; printf '%s\\n' \"${COMPREPLY[@]}\"");
        const Run completed =
            run(QStringLiteral("bash"),
                QStringList{QStringLiteral("--norc"), QStringLiteral("-c"), script,
                            QStringLiteral("bash"), path(QStringLiteral("ovrageo.bash"))} +
                    words,
                path(QStringLiteral("work")));
        return completed.errors.isEmpty()
                   ? completed.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)
                   : QStringList{completed.errors};
    }

    QTemporaryDir folder_;
    Progress progress_;
    CLI::App app_;
    QString page_;
    QString bash_;
    QString zsh_;
    QStringList commands_;
};

QTEST_GUILESS_MAIN(TestManual)
#include "tst_Manual.moc"
