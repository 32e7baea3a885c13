#include "AttributeText.h"

#include "EntityName.h"
#include "Matrix.h"

#include <QStringList>
#include <QVariant>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr qsizetype mostMembers = 20;
constexpr qsizetype mostCharacters = 200;

QString matrixText(const Matrix& matrix)
{
    QStringList rows;
    for (int row = 0; row < 3; ++row) {
        rows += placeText(Vector(matrix(row, 0), matrix(row, 1), matrix(row, 2)));
    }
    return rows.join(QStringLiteral(", "));
}

QString typeText(const QVariant& value)
{
    const char* const name = value.typeName();
    return name ? QStringLiteral("(%1)").arg(QLatin1String(name)) : QStringLiteral("(nothing)");
}

QString memberText(const QVariant& value)
{
    if (value.typeId() == qMetaTypeId<Vector>()) {
        return placeText(value.value<Vector>());
    }
    if (value.typeId() == qMetaTypeId<Matrix>()) {
        return matrixText(value.value<Matrix>());
    }
    if (!value.canConvert<QString>()) {
        return typeText(value);
    }
    const QString text = value.toString();
    return text.size() > mostCharacters ? text.left(mostCharacters) + QChar(0x2026) : text;
}

} // namespace

QString attributeText(const QVariant& value)
{
    if (value.typeId() != QMetaType::QVariantList) {
        return memberText(value);
    }
    const QVariantList list = value.toList();
    QStringList members;
    for (const QVariant& each : list.first(qMin(list.size(), mostMembers))) {
        members += memberText(each);
    }
    if (list.size() > mostMembers) {
        members += QStringLiteral("... %1 in all").arg(list.size());
    }
    return members.join(QStringLiteral(", "));
}

} // namespace Ovra::GeoTool
