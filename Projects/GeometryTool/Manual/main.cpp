#include "CommandLine.h"
#include "ManualPage.h"
#include "Progress.h"
#include "ShellCompletion.h"

#include <QDir>
#include <QSaveFile>

#include <CLI/CLI.hpp>
#include <cstdio>

using namespace Ovra::GeoTool;

namespace
{

bool write(const QString& path, const QString& content)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content.toUtf8()) >= 0 && file.commit()) {
        return true;
    }
    std::fprintf(stderr, "ovrageo-manual: cannot write %s: %s\n", qUtf8Printable(path),
                 qUtf8Printable(file.errorString()));
    return false;
}

} // namespace

// Writes the manual page and the completions of ovrageo into the folder that is the argument.
// NOLINTNEXTLINE(bugprone-exception-escape): out of memory ends it anyhow
int main(int argc, char** argv)
{
    const QDir folder(argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (argc != 2 || !folder.mkpath(QStringLiteral("."))) {
        std::fputs("usage: ovrageo-manual FOLDER\n", stderr);
        return 2;
    }
    Progress progress;
    CLI::App app;
    setUpCommandLine(app, progress);
    const bool written = write(folder.filePath(QStringLiteral("ovrageo.1")), manualPage(app)) &&
                         write(folder.filePath(QStringLiteral("ovrageo")), bashCompletion(app)) &&
                         write(folder.filePath(QStringLiteral("_ovrageo")), zshCompletion(app));
    return written ? 0 : 1;
}
