#include "DeclaredElements.h"

#include "InputFileCheck.h"
#include "SectionMarks.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QList>

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

/// \brief Steps behind the line that consists of \p mark.
bool findMark(QFile& file, const QByteArray& mark)
{
    SectionMarks marks(file);
    for (QByteArray line = marks.next(); !line.isEmpty(); line = marks.next()) {
        if (line == mark) {
            marks.goBehind();
            return true;
        }
    }
    return false;
}

Count inGmshMesh(QFile& file)
{
    if (!findMark(file, "$MeshFormat")) {
        return std::nullopt;
    }
    const QList<QByteArray> format = fieldsOf(file);
    const bool blocks = format.value(0).toDouble() >= 4;
    const bool binary = format.value(1) == "1";
    if (!findMark(file, "$Elements")) {
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
                                                            {QStringLiteral("msh2"), inGmshMesh},
                                                            {QStringLiteral("vtk"), inVtk}};
    const auto counter = counters.value(InputFileCheck::suffix(path), nullptr);
    QFile file(path);
    if (counter == nullptr || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return counter(file);
}

} // namespace Ovra::GeoTool
