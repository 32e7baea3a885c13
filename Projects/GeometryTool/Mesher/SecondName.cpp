#include "SecondName.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace Ovra::GeoTool
{

namespace
{

QString prefixOf(const QString& role)
{
    return QStringLiteral("ovrageo-%1-").arg(role);
}

} // namespace

SecondName::SecondName(const QString& target, const QString& role, const QString& suffix)
    : directory_(QDir::tempPath() + QLatin1Char('/') + prefixOf(role) + QStringLiteral("XXXXXX"))
    , name_(role + QLatin1Char('.') + suffix)
    , path_(directory_.filePath(name_))
    , valid_(directory_.isValid() && QFile::link(target, path_))
{
}

std::string SecondName::encodedPath() const
{
    return QFile::encodeName(path_).toStdString();
}

std::string SecondName::nameInCurrentDirectory() const
{
    QDir::setCurrent(directory_.path());
    return QFile::encodeName(name_).toStdString();
}

QString SecondName::saidOfRole(const QString& message)
{
    static const QRegularExpression secondName(
        QStringLiteral("'?[^\\s']*/%1\\w{6}/(?:in|out)put\\.\\w+'?")
            .arg(prefixOf(QStringLiteral("(in|out)put"))));
    return QString(message).replace(secondName, QStringLiteral("the \\1put"));
}

} // namespace Ovra::GeoTool
