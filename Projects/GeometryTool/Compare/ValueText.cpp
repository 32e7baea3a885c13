#include "ValueText.h"

#include "Box.h"
#include "Closeness.h"
#include "Matrix.h"
#include "Vector.h"
#include "Version.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr qsizetype mostCharacters = 64;
constexpr qsizetype charactersBefore = 16; ///< the first that differs
constexpr int mostDepth = 3;
constexpr std::size_t mostIds = 10;

const QString ellipsis = QStringLiteral("...");

QString ofNumber(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString inBrackets(const QStringList& items)
{
    return QStringLiteral("(%1)").arg(items.join(QStringLiteral(", ")));
}

QString ofVector(const Vector& vector)
{
    return inBrackets({ofNumber(vector.x()), ofNumber(vector.y()), ofNumber(vector.z())});
}

QString ofMatrix(const Matrix& matrix)
{
    QStringList rows;
    for (int row = 0; row < 3; ++row) {
        rows += ofVector(Vector(matrix(row, 0), matrix(row, 1), matrix(row, 2)));
    }
    return inBrackets(rows);
}

QString ofBytes(const QVariant& value)
{
    return QString::fromLatin1(bytesOf(value).toHex());
}

QString typeName(const QVariant& value)
{
    return value.isValid() ? QString::fromLatin1(value.typeName()) : QStringLiteral("no value");
}

qsizetype commonLength(const QString& a, const QString& b)
{
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return std::distance(a.begin(), inA);
}

/// The part of a text that begins at \p from, as far as there is room.
QString part(const QString& text, qsizetype from)
{
    const QString shown = text.mid(from, mostCharacters);
    return (from > 0 ? ellipsis : QString()) + shown +
           (from + shown.size() < text.size() ? ellipsis : QString());
}

std::pair<QString, QString> parts(const QString& a, const QString& b)
{
    const bool fits = std::max(a.size(), b.size()) <= mostCharacters;
    const qsizetype from = fits ? 0 : std::max<qsizetype>(0, commonLength(a, b) - charactersBefore);
    return {part(a, from), part(b, from)};
}

} // namespace

std::pair<QString, QString> ValueText::ofBoth(const QVariant& a, const QVariant& b)
{
    const QString inA = whole(a, 0);
    const QString inB = whole(b, 0);
    if (a.metaType() != b.metaType()) {
        const auto [shownA, shownB] = parts(inA, inB);
        return {QStringLiteral("%1 (%2)").arg(shownA, typeName(a)),
                QStringLiteral("%1 (%2)").arg(shownB, typeName(b))};
    }
    return inA == inB ? parts(ofBytes(a), ofBytes(b)) : parts(inA, inB);
}

QString ValueText::ofIds(const std::vector<int>& ids)
{
    QStringList texts;
    for (std::size_t i = 0; i < std::min(ids.size(), mostIds); ++i) {
        texts += QString::number(ids[i]);
    }
    if (ids.size() > mostIds) {
        texts += ellipsis;
    }
    return texts.isEmpty() ? QStringLiteral("none") : texts.join(QStringLiteral(", "));
}

QString ValueText::of(const QVariant& value)
{
    return part(whole(value, 0), 0);
}

QString ValueText::whole(const QVariant& value, int depth)
{
    const QMetaType type = value.metaType();
    if (type == QMetaType::fromType<QString>()) {
        return QStringLiteral("\"%1\"").arg(value.toString());
    }
    if (type == QMetaType::fromType<double>() || type == QMetaType::fromType<float>()) {
        return ofNumber(value.toDouble());
    }
    if (type == QMetaType::fromType<Vector>()) {
        return ofVector(value.value<Vector>());
    }
    if (type == QMetaType::fromType<Matrix>()) {
        return ofMatrix(value.value<Matrix>());
    }
    if (type == QMetaType::fromType<Box>()) {
        return QStringLiteral("%1 to %2")
            .arg(ofVector(value.value<Box>().minimum()), ofVector(value.value<Box>().maximum()));
    }
    if (type == QMetaType::fromType<Version>()) {
        return value.value<Version>().toString();
    }
    return wholeContainer(value, depth);
}

QString ValueText::wholeContainer(const QVariant& value, int depth)
{
    if (value.typeId() != QMetaType::QVariantList) {
        return value.canConvert<QString>() ? value.toString() : ofBytes(value);
    }
    if (depth == mostDepth) {
        return QStringLiteral("(...)");
    }
    QStringList items;
    const QVariantList list = value.toList();
    for (const QVariant& item : list) {
        items += whole(item, depth + 1);
    }
    return inBrackets(items);
}

} // namespace Ovra::GeoTool
