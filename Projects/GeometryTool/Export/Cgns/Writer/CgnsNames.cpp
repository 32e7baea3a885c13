#include "CgnsNames.h"

namespace Ovra::GeoTool
{

namespace
{

constexpr int longest = 32;

/// \brief Without accents, and without what means something in the path of a node.
QByteArray plain(const QString& full)
{
    QByteArray name;
    for (const QChar letter : full.normalized(QString::NormalizationForm_KD)) {
        const bool isPlain = letter >= QLatin1Char(' ') && letter <= QLatin1Char('~');
        if (isPlain && letter != QLatin1Char('/')) {
            name += letter.toLatin1();
        } else if (!letter.isMark()) {
            name += '_';
        }
    }
    name = name.left(longest).trimmed();
    return name.isEmpty() || name == "." || name == ".." ? QByteArray("_") : name;
}

} // namespace

CgnsNames::CgnsNames(const QStringList& reserved)
{
    for (const QString& name : reserved) {
        taken_.insert(name.toLatin1());
    }
}

QByteArray CgnsNames::add(const QString& full)
{
    const QByteArray first = plain(full);
    QByteArray name = first;
    for (int count = 2; taken_.contains(name); ++count) {
        const QByteArray end = '_' + QByteArray::number(count);
        name = first.left(longest - end.size()) + end;
    }
    taken_.insert(name);
    return name;
}

} // namespace Ovra::GeoTool
