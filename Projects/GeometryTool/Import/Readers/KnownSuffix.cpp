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
    // A script names other files from where it stands.
    if (InputFileCheck::isScript(path)) {
        return;
    }
    const QString suffix = InputFileCheck::suffix(path);
    second_.emplace(QFileInfo(path).absoluteFilePath(), QStringLiteral("input"), suffix);
    if (!second_->isValid()) {
        throw ToolError(
            ExitCode::OutputFailed,
            QStringLiteral("%1: cannot give it a name in %2 that ends in .%3; rename it")
                .arg(path, QDir::tempPath(), suffix));
    }
}

std::string KnownSuffix::encodedPath() const
{
    return second_ ? second_->encodedPath() : QFile::encodeName(path_).toStdString();
}

} // namespace Ovra::GeoTool
