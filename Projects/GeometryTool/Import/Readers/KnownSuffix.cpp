#include "KnownSuffix.h"

#include "InputFileCheck.h"
#include "ToolError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Ovra::GeoTool
{

KnownSuffix::KnownSuffix(const QString& path)
    : path_(path)
{
    const QString suffix = InputFileCheck::suffix(path);
    // A script names other files from where it stands.
    if (InputFileCheck::isScript(path) || QFileInfo(path).suffix() == suffix) {
        return;
    }
    directory_.emplace();
    path_ = directory_->filePath(QStringLiteral("input.") + suffix);
    if (!directory_->isValid() || !QFile::link(QFileInfo(path).absoluteFilePath(), path_)) {
        throw ToolError(
            ExitCode::OutputFailed,
            QStringLiteral("%1: cannot give it a name in %2 that ends in .%3; rename it")
                .arg(path, QDir::tempPath(), suffix));
    }
}

std::string KnownSuffix::encodedPath() const
{
    return QFile::encodeName(path_).toStdString();
}

} // namespace Ovra::GeoTool
