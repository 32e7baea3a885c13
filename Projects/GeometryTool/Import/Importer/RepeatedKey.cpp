#include "RepeatedKey.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <cctype>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Offset behind the string that begins with a quotation mark at \p begin.
qsizetype endOfString(const QByteArray& json, qsizetype begin)
{
    qsizetype end = begin + 1;
    while (end < json.size() && json.at(end) != '"') {
        end += json.at(end) == '\\' ? 2 : 1;
    }
    return end + 1;
}

bool isKey(const QByteArray& json, qsizetype end)
{
    while (end < json.size() && std::isspace(static_cast<unsigned char>(json.at(end))) != 0) {
        ++end;
    }
    return end < json.size() && json.at(end) == ':';
}

/// \brief The text of a quoted string; one text can be written in several ways.
QString textOf(const QByteArray& quoted)
{
    return QJsonDocument::fromJson('[' + quoted + ']').array().first().toString();
}

} // namespace

std::optional<RepeatedKey> RepeatedKey::in(const QByteArray& json)
{
    std::vector<QSet<QString>> open;
    for (qsizetype i = 0; i < json.size(); ++i) {
        const char c = json.at(i);
        if (c == '{') {
            open.emplace_back();
        }
        if (c == '}') {
            open.pop_back();
        }
        if (c != '"') {
            continue;
        }
        const qsizetype end = endOfString(json, i);
        if (isKey(json, end)) {
            const QString key = textOf(json.mid(i, end - i));
            if (open.back().contains(key)) {
                return RepeatedKey{key, i};
            }
            open.back().insert(key);
        }
        i = end - 1;
    }
    return std::nullopt;
}

} // namespace Ovra::GeoTool
