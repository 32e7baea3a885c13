#include "KnownSuffix.h"

#include "InputFileCheck.h"
#include "ToolError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace Ovra::GeoTool
{

namespace
{

QString directoryPrefix()
{
    return QStringLiteral("ovrageo-input-");
}

} // namespace

KnownSuffix::KnownSuffix(const QString& path)
    : path_(path)
{
    const QString suffix = InputFileCheck::suffix(path);
    // A script names other files from where it stands.
    if (InputFileCheck::isScript(path)) {
        return;
    }
    directory_.emplace(QDir::tempPath() + QLatin1Char('/') + directoryPrefix() +
                       QStringLiteral("XXXXXX"));
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

QString KnownSuffix::saidOfInput(const QString& message)
{
    static const QRegularExpression secondName(
        QStringLiteral("'?[^\\s']*/%1\\w{6}/input\\.\\w+'?").arg(directoryPrefix()));
    return QString(message).replace(secondName, QStringLiteral("the input"));
}

} // namespace Ovra::GeoTool
