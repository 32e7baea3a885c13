#include "DiffReport.h"

#include "CaseFiles.h"
#include "CaseSummary.h"
#include "Counted.h"

#include <QJsonDocument>

#include <set>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int columnGap = 2;

QString groupText(const CaseDifferences::Key& key, const CaseDifferences::Group& group)
{
    const QString head = differenceName(key.first) + QLatin1Char(' ');
    QString text;
    for (const Difference& difference : group.first) {
        text += head + difference.text() + QLatin1Char('\n');
    }
    const qint64 rest = group.count - static_cast<qint64>(group.first.size());
    if (rest > 0 && !group.first.empty()) {
        text += QStringLiteral("%1%2: and %3 more\n").arg(head, partName(key.second)).arg(rest);
    }
    return text;
}

QJsonValue idJson(const std::optional<int>& id)
{
    return id ? QJsonValue(*id) : QJsonValue::Null;
}

QJsonValue placeJson(const std::optional<Vector>& place)
{
    return place ? QJsonValue(QJsonArray{place->x(), place->y(), place->z()}) : QJsonValue::Null;
}

QJsonObject differenceJson(const Difference& difference)
{
    QJsonArray changes;
    for (const Change& change : difference.changes) {
        changes.append(QJsonObject{{"what", change.what}, {"a", change.inA}, {"b", change.inB}});
    }
    return {{"idA", idJson(difference.subject.inA)},
            {"idB", idJson(difference.subject.inB)},
            {"place", placeJson(difference.place)},
            {"changes", changes},
            {"text", difference.text()}};
}

QJsonObject groupJson(const CaseDifferences::Key& key, const CaseDifferences::Group& group)
{
    QJsonArray first;
    for (const Difference& difference : group.first) {
        first.append(differenceJson(difference));
    }
    return {{"kind", differenceName(key.first)},
            {"part", partName(key.second)},
            {"count", group.count},
            {"first", first}};
}

} // namespace

DiffReport::DiffReport(const CaseFiles& a, const CaseFiles& b,
                       const CaseComparison::Options& options, const CaseDifferences& differences)
    : a_(a)
    , b_(b)
    , options_(options)
    , differences_(differences)
{
}

QByteArray DiffReport::text() const
{
    if (differences_.areNone()) {
        return {};
    }
    QString text;
    for (const auto& [key, group] : differences_.groups()) {
        text += groupText(key, group);
    }
    if (!text.isEmpty()) {
        text += QLatin1Char('\n');
    }
    return (text + tableText() +
            QStringLiteral("\n%1 (A) and %2 (B) differ\n").arg(a_.name(), b_.name()))
        .toUtf8();
}

/// Rows and columns that have nothing to tell are left out.
QString DiffReport::tableText() const
{
    std::set<DifferenceKind> kinds;
    std::set<ComparedPart> parts;
    qsizetype width = 0;
    for (const auto& [key, group] : differences_.groups()) {
        kinds.insert(key.first);
        parts.insert(key.second);
        width = std::max(width, partName(key.second).size());
    }
    const auto cell = [](const QString& text, DifferenceKind kind) {
        constexpr qsizetype mostDigits = 8;
        const qsizetype cellWidth = std::max(differenceName(kind).size(), mostDigits);
        return text.rightJustified(cellWidth + columnGap);
    };
    QString text(width, QLatin1Char(' '));
    for (const DifferenceKind kind : kinds) {
        text += cell(differenceName(kind), kind);
    }
    text += QLatin1Char('\n');
    for (const ComparedPart part : parts) {
        text += partName(part).leftJustified(width);
        for (const DifferenceKind kind : kinds) {
            text += cell(QString::number(differences_.count(kind, part)), kind);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

QJsonArray DiffReport::differencesJson(const CaseDifferences& differences)
{
    QJsonArray groups;
    for (const auto& [key, group] : differences.groups()) {
        groups.append(groupJson(key, group));
    }
    return groups;
}

QByteArray DiffReport::json() const
{
    const QJsonObject object{{"a", caseJson(a_)},
                             {"b", caseJson(b_)},
                             {"equal", differences_.areNone()},
                             {"tolerance", options_.tolerance},
                             {"byPlace", options_.byPlace},
                             {"differences", differencesJson(differences_)}};
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QJsonObject DiffReport::caseJson(const CaseFiles& files) const
{
    return {{"case", files.name()},
            {"meshFormat", meshFormatName(files.meshFacts().format)},
            {"modelVersion", files.modelFacts().version.toString()},
            {"meshVersion", files.meshFacts().version.toString()}};
}

} // namespace Ovra::GeoTool
