#include "UnitText.h"

#include "LengthUnit.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace Ovra::GeoTool
{

namespace
{

struct Scaled
{
    double factor;
    const char* unit;
};

QString unitOfCase(double scale)
{
    static constexpr std::array<Scaled, 4> known{{{1, LengthUnit::Imported},
                                                  {0.1, "centimetres"},
                                                  {0.001, "metres"},
                                                  {1000, "micrometres"}}};
    for (const Scaled& each : known) {
        if (each.factor == scale) {
            return QLatin1String(each.unit);
        }
    }
    return QStringLiteral("%1 times %2").arg(QLatin1String(LengthUnit::Imported)).arg(scale);
}

} // namespace

QString UnitText::ofCase(const QString& path, double scale)
{
    if (!LengthUnit::isStatedBy(path)) {
        return QString();
    }
    const QString unit = LengthUnit::of(path);
    const QString stated =
        unit.isEmpty() ? QStringLiteral("states no unit of length, so that millimetres are taken")
                       : QStringLiteral("is in ") + unit;
    const QString advice =
        scale == 1 ? QStringLiteral(" (in metres with import --scale 0.001)") : QString();
    return QStringLiteral("%1 %2; as a case it is in %3%4")
        .arg(path, stated, unitOfCase(scale), advice);
}

QByteArray UnitText::json(const QString& path)
{
    const QString unit = LengthUnit::of(path);
    return QJsonDocument(
               QJsonObject{
                   {QStringLiteral("file"), path},
                   {QStringLiteral("unit"), unit.isEmpty() ? QJsonValue() : QJsonValue(unit)},
                   {QStringLiteral("importedUnit"), QLatin1String(LengthUnit::Imported)}})
        .toJson();
}

} // namespace Ovra::GeoTool
