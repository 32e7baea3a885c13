#include "AbaqusLexer.h"

#include "ToolError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cctype>

namespace Ovra::GeoTool
{

namespace
{

/// \brief The fields between commas that stand outside of quotation marks.
QList<QByteArray> split(const QByteArray& line)
{
    QList<QByteArray> fields{QByteArray()};
    bool quoted = false;
    for (const char c : line) {
        quoted = quoted != (c == '"');
        if (c == ',' && !quoted) {
            fields.append(QByteArray());
        } else {
            fields.last().append(c);
        }
    }
    for (QByteArray& field : fields) {
        field = field.trimmed();
    }
    while (!fields.isEmpty() && fields.last().isEmpty()) {
        fields.removeLast();
    }
    return fields;
}

bool isPassedOver(const QByteArray& line)
{
    return line.isEmpty() || line.startsWith("**");
}

bool hasDataInAFile(const AbaqusKeyword& keyword)
{
    static const QList<QByteArray> names{"NODE", "ELEMENT", "NSET", "ELSET"};
    return names.contains(keyword.name) && keyword.has("INPUT");
}

QString unquoted(const QByteArray& text)
{
    return QString::fromUtf8(QByteArray(text).replace('"', ""));
}

} // namespace

AbaqusLexer::AbaqusLexer(const QString& path)
{
    open(path, path);
}

/// \param called what to call it in words
void AbaqusLexer::open(const QString& path, const QString& called)
{
    const QFileInfo info(path);
    auto file = std::make_unique<QFile>(path);
    if (!info.isFile() || !file->open(QIODevice::ReadOnly)) {
        const QString reason = !info.exists()
                                   ? QStringLiteral("no such file in %1").arg(info.absolutePath())
                               : info.isFile() ? file->errorString()
                                               : QStringLiteral("is not a plain file");
        throw ToolError(ExitCode::InputMissing, QStringLiteral("%1: %2").arg(called, reason));
    }
    sources_.push_back({std::move(file), {static_cast<int>(paths_.size()), 0}});
    paths_.append(path);
}

/// \brief Goes on with a file that the present one names.
void AbaqusLexer::openBeside(const QByteArray& written)
{
    const QString name = unquoted(written);
    if (name.isEmpty()) {
        fail(QStringLiteral("INPUT names no file"));
    }
    const QString& from = paths_.at(line_.file);
    const QString path = QDir::isAbsolutePath(name)
                             ? name
                             : from.left(from.lastIndexOf(QLatin1Char('/')) + 1) + name;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const bool isOpen =
        std::any_of(sources_.begin(), sources_.end(), [&canonical](const Source& source) {
            return QFileInfo(*source.file).canonicalFilePath() == canonical;
        });
    if (isOpen && !canonical.isEmpty()) {
        fail(QStringLiteral("%1 would be read within itself").arg(name));
    }
    constexpr int most = 1000; // files that each include the next twice never come to an end
    if (paths_.size() > most) {
        fail(QStringLiteral("more than %1 files are included").arg(most));
    }
    open(path, where() + QStringLiteral(": ") + name);
}

AbaqusLexer::Item AbaqusLexer::next()
{
    QByteArray line;
    while (takeLine(line)) {
        if (!line.startsWith('*')) {
            fields_ = split(line);
            return Item::Data;
        }
        if (takeKeyword(line)) {
            return Item::Keyword;
        }
    }
    return Item::End;
}

bool AbaqusLexer::takeLine(QByteArray& line)
{
    while (!sources_.empty()) {
        Source& source = sources_.back();
        if (source.file->atEnd()) {
            sources_.pop_back();
            continue;
        }
        line = readLine(source);
        if (!isPassedOver(line)) {
            return true;
        }
    }
    return false;
}

QByteArray AbaqusLexer::readLine(Source& source)
{
    const QByteArray line = source.file->readLine();
    ++source.line.number;
    line_ = source.line;
    if (!line.endsWith('\n')) {
        fail(QStringLiteral("the last line is not ended; the file is cut off"));
    }
    return line.trimmed();
}

/// \brief Whether a keyword line has more of its parameters in the next one.
bool AbaqusLexer::goesOn(const QByteArray& line)
{
    const QByteArray next = sources_.back().file->peek(200).trimmed();
    const bool isParameter = !next.isEmpty() && std::isalpha(static_cast<unsigned char>(next[0]));
    return line.endsWith(',') && isParameter;
}

/// \return whether it is a keyword for the reader; false for *INCLUDE
bool AbaqusLexer::takeKeyword(QByteArray line)
{
    while (goesOn(line)) {
        line += readLine(sources_.back());
    }
    QList<QByteArray> fields = split(line.mid(1));
    AbaqusKeyword keyword;
    keyword.name = fields.isEmpty() ? QByteArray() : fields.takeFirst().simplified().toUpper();
    for (const QByteArray& field : std::as_const(fields)) {
        const qsizetype equals = field.indexOf('=');
        const QByteArray name = equals < 0 ? field : field.left(equals);
        keyword.parameters.insert(name.trimmed().toUpper(),
                                  equals < 0 ? QByteArray() : field.mid(equals + 1).trimmed());
    }
    if (keyword.name == "INCLUDE") {
        openBeside(keyword.value("INPUT"));
        return false; // data lines in it go on with the keyword before
    }
    keyword_ = keyword;
    if (hasDataInAFile(keyword_)) {
        openBeside(keyword_.value("INPUT"));
    }
    return true;
}

QString AbaqusLexer::where(const AbaqusLine& line) const
{
    return QStringLiteral("%1: line %2").arg(paths_.at(line.file), QString::number(line.number));
}

void AbaqusLexer::fail(const QString& what) const
{
    throw ToolError(ExitCode::InputDamaged, QStringLiteral("%1: %2").arg(where(), what));
}

} // namespace Ovra::GeoTool
