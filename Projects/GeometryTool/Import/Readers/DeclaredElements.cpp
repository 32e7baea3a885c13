#include "DeclaredElements.h"

#include "InputFileCheck.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QList>
#include <QSet>

#include <cstring>

namespace Ovra::GeoTool
{

namespace
{

using Count = std::optional<qint64>;

Count numberAt(const QList<QByteArray>& fields, qsizetype index)
{
    bool ok = false;
    const qint64 number = fields.value(index).toLongLong(&ok);
    return ok ? Count(number) : std::nullopt;
}

QList<QByteArray> fieldsOf(QFile& file)
{
    return file.readLine().simplified().split(' ');
}

/// \brief Steps behind the line that consists of \p word.
bool findLine(QFile& file, const QByteArray& word)
{
    while (!file.atEnd()) {
        if (file.readLine().trimmed() == word) {
            return true;
        }
    }
    return false;
}

Count inGmshMesh(QFile& file)
{
    if (!findLine(file, "$MeshFormat")) {
        return std::nullopt;
    }
    const QList<QByteArray> format = fieldsOf(file);
    const bool blocks = format.value(0).toDouble() >= 4;
    const bool binary = format.value(1) == "1";
    if (!findLine(file, "$Elements")) {
        return 0;
    }
    if (!blocks || !binary) {
        return numberAt(fieldsOf(file), blocks ? 1 : 0);
    }
    const QByteArray header = file.read(16);
    quint64 count = 0;
    if (header.size() == 16) {
        std::memcpy(&count, header.constData() + 8, sizeof count);
    }
    return static_cast<qint64>(count);
}

Count inUniversal(QFile& file)
{
    static const QSet<QByteArray> beams{"11", "21", "22", "23", "24"};
    qint64 count = 0;
    while (findLine(file, "2412")) {
        for (QList<QByteArray> record = fieldsOf(file); record.size() == 6;
             record = fieldsOf(file)) {
            ++count;
            if (beams.contains(record.at(1))) {
                file.readLine();
            }
            for (qint64 nodes = record.at(5).toLongLong(); nodes > 0 && !file.atEnd(); nodes -= 8) {
                file.readLine();
            }
        }
    }
    return count;
}

Count inNastran(QFile& file)
{
    qint64 count = 0;
    while (!file.atEnd()) {
        const QByteArray card = file.readLine().left(8).toUpper().split(',').first().trimmed();
        const bool other = card.startsWith("CORD") || card.startsWith("CONM") ||
                           card.startsWith("CMASS") || card == "CEND";
        const bool element =
            card.size() > 3 && card.at(0) == 'C' && !card.contains(' ') && !card.contains('=');
        count += element && !other ? 1 : 0;
    }
    return count;
}

Count inVtk(QFile& file)
{
    while (!file.atEnd()) {
        const QList<QByteArray> fields = fieldsOf(file);
        if (fields.first() == "CELL_TYPES") {
            return numberAt(fields, 1);
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<qint64> DeclaredElements::in(const QString& path)
{
    static const QHash<QString, Count (*)(QFile&)> counters{{QStringLiteral("msh"), inGmshMesh},
                                                            {QStringLiteral("unv"), inUniversal},
                                                            {QStringLiteral("bdf"), inNastran},
                                                            {QStringLiteral("nas"), inNastran},
                                                            {QStringLiteral("vtk"), inVtk}};
    const auto counter = counters.value(InputFileCheck::suffix(path), nullptr);
    QFile file(path);
    if (counter == nullptr || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return counter(file);
}

} // namespace Ovra::GeoTool
