#include "VerifyReport.h"

#include "Counted.h"
#include "Database.h"
#include "EntityNames.h"
#include "Mesh.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Twins.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QHash<std::pair<int, int>, QStringList> twinNotes(const Model& model)
{
    QHash<std::pair<int, int>, QStringList> notes;
    for (const Twin& twin : twinsOf(model)) {
        notes[{twin.copy->dimension(), twin.copy->id()}] +=
            QStringLiteral("%1 is the %2 of %3")
                .arg(nameOf(*twin.copy), twin.relation, nameOf(*twin.original));
        notes[{twin.original->dimension(), twin.original->id()}] +=
            QStringLiteral("its %1 is %2").arg(twin.relation, nameOf(*twin.copy));
    }
    return notes;
}

QJsonValue placeJson(const std::optional<Vector>& place)
{
    if (!place) {
        return QJsonValue::Null;
    }
    return QJsonArray{place->x(), place->y(), place->z()};
}

template <typename Container>
QJsonArray countsJson(const Container& container)
{
    QJsonArray counts;
    for (int dimension = 0; dimension < 4; ++dimension) {
        counts.append(container.count(dimension));
    }
    return counts;
}

} // namespace

VerifyReport::VerifyReport(const QString& name, const Database& database,
                           const CaseFindings& findings)
    : name_(name)
    , database_(database)
    , findings_(findings)
    , twinNotes_(twinNotes(*database.model()))
{
}

QString VerifyReport::summary() const
{
    return QStringLiteral("%1 is %2: %3, %4")
        .arg(name_, findings_.isSound() ? QStringLiteral("sound") : QStringLiteral("unsound"),
             counted(findings_.errorCount(), QStringLiteral("error")),
             counted(findings_.warningCount(), QStringLiteral("warning")));
}

QString VerifyReport::lineOf(const Finding& finding) const
{
    const bool ofModel = finding.entity.owner == EntityName::Owner::Model;
    const QStringList notes =
        ofModel ? twinNotes_.value({finding.entity.dimension, finding.entity.id}) : QStringList();
    return (QStringList{finding.line()} + notes).join(QStringLiteral("; "));
}

QString VerifyReport::groupText(FindingKind kind, const CaseFindings::Group& group) const
{
    const QString head =
        QStringLiteral("%1 %2: ").arg(severityName(findingSeverity(kind)), findingName(kind));
    QString text;
    for (const Finding& finding : group.first) {
        text += head + lineOf(finding) + QLatin1Char('\n');
    }
    const qint64 rest = group.count - static_cast<qint64>(group.first.size());
    if (rest > 0) {
        text += head +
                (group.first.empty() ? counted(rest, QStringLiteral("finding"))
                                     : QStringLiteral("and %1 more").arg(rest)) +
                QLatin1Char('\n');
    }
    return text;
}

QByteArray VerifyReport::text() const
{
    QString text;
    for (const Severity severity : {Severity::Error, Severity::Warning}) {
        for (const auto& [kind, group] : findings_.groups()) {
            if (findingSeverity(kind) == severity) {
                text += groupText(kind, group);
            }
        }
    }
    return (text + summary() + QLatin1Char('\n')).toUtf8();
}

QJsonObject VerifyReport::findingJson(const Finding& finding) const
{
    const bool whole = finding.entity.dimension == EntityName::Whole;
    return {{"owner", finding.entity.owner == EntityName::Owner::Model ? "model" : "mesh"},
            {"dimension", whole ? QJsonValue::Null : QJsonValue(finding.entity.dimension)},
            {"id", whole ? QJsonValue::Null : QJsonValue(finding.entity.id)},
            {"place", placeJson(finding.place)},
            {"text", lineOf(finding)}};
}

QJsonObject VerifyReport::groupJson(FindingKind kind, const CaseFindings::Group& group) const
{
    QJsonArray first;
    for (const Finding& finding : group.first) {
        first.append(findingJson(finding));
    }
    return {{"kind", findingName(kind)},
            {"severity", severityName(findingSeverity(kind))},
            {"count", group.count},
            {"first", first}};
}

QByteArray VerifyReport::json() const
{
    QJsonArray groups;
    for (const auto& [kind, group] : findings_.groups()) {
        groups.append(groupJson(kind, group));
    }
    const QJsonObject object{
        {"case", name_},
        {"sound", findings_.isSound()},
        {"errors", findings_.errorCount()},
        {"warnings", findings_.warningCount()},
        {"checked", QJsonObject{{"modelEntities", countsJson(*database_.model())},
                                {"meshEntities", countsJson(*database_.mesh())}}},
        {"findings", groups}};
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace Ovra::GeoTool
