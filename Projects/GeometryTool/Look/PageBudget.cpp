#include "PageBudget.h"

#include <QJsonDocument>

namespace Ovra::GeoTool
{

QJsonObject PageBudget::limited(const QJsonObject& object) const
{
    QJsonObject result;
    for (auto each = object.begin(); each != object.end(); ++each) {
        const QJsonValue value = limited(each.value());
        result.insert(each.key(), value);
        const qsizetype left = each.value().toArray().size() - value.toArray().size();
        if (left > 0) {
            result.insert(each.key() + QStringLiteral("More"), left);
        }
    }
    return result;
}

QJsonArray PageBudget::fitting(const QJsonArray& rows, qsizetype room) const
{
    QJsonArray result;
    qsizetype taken = 0;
    for (const auto& row : rows) {
        const QJsonValue value = limited(QJsonValue(row));
        taken += scriptText(value).size() + 1; // and a comma
        if (taken > room) {
            break;
        }
        result.append(value);
    }
    return result;
}

/// A tag that ends the script in which the text stands begins with a bracket, which JSON can do
/// without.
QByteArray PageBudget::scriptText(const QJsonValue& value)
{
    const QByteArray text = value.isObject()
                                ? QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact)
                                : QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QByteArray(text).replace("<", "\\u003c");
}

QJsonValue PageBudget::limited(const QJsonValue& value) const
{
    if (value.isArray()) {
        return fitting(value.toArray(), list);
    }
    if (value.isString() && value.toString().size() > text) {
        return value.toString().left(text) + QChar(0x2026);
    }
    return value.isObject() ? QJsonValue(limited(value.toObject())) : value;
}

} // namespace Ovra::GeoTool
