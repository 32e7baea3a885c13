#include "ScriptCheck.h"

#include "FileTail.h"
#include "InputDamage.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cctype>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Whether something follows the first statement of a line, comments apart.
bool hasMoreStatements(const QByteArray& line)
{
    const qsizetype end = line.indexOf(';');
    QByteArray rest = end < 0 ? QByteArray() : line.mid(end + 1);
    for (const char* comment : {"//", "/*"}) {
        rest.truncate(rest.contains(comment) ? rest.indexOf(comment) : rest.size());
    }
    return std::any_of(rest.begin(), rest.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

} // namespace

void ScriptCheck::check(QFile& file)
{
    constexpr qint64 longestLine = 100000;
    const QByteArray last = FileTail::bytes(file, longestLine).split('\n').last();
    if (hasMoreStatements(last)) {
        InputDamage::damaged(
            file.fileName(),
            QStringLiteral("the last line has several statements and no line break at its end, "
                           "so that Gmsh would pass over all but the first; end it, or "
                           "complete the file if it is cut off"));
    }
}

} // namespace Ovra::GeoTool
