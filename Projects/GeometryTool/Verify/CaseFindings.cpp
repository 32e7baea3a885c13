#include "CaseFindings.h"

namespace Ovra::GeoTool
{

QString Finding::line() const
{
    if (!place) {
        return QStringLiteral("%1 %2").arg(entity.text(), text);
    }
    return QStringLiteral("%1 at %2 %3").arg(entity.text(), placeText(*place), text);
}

void CaseFindings::add(FindingKind kind, const EntityName& entity,
                       const std::optional<Geo::Vector>& place, const Text& text)
{
    Group& group = groups_[kind];
    if (++group.count <= limit_) {
        group.first.push_back({kind, entity, place, text()});
    }
}

qint64 CaseFindings::errorCount() const
{
    return count(Severity::Error);
}

qint64 CaseFindings::warningCount() const
{
    return count(Severity::Warning);
}

qint64 CaseFindings::count(FindingKind kind) const
{
    const auto group = groups_.find(kind);
    return group == groups_.end() ? 0 : group->second.count;
}

qint64 CaseFindings::count(Severity severity) const
{
    qint64 sum = 0;
    for (const auto& [kind, group] : groups_) {
        sum += findingSeverity(kind) == severity ? group.count : 0;
    }
    return sum;
}

QString CaseFindings::firstError() const
{
    for (const auto& [kind, group] : groups_) {
        if (findingSeverity(kind) == Severity::Error) {
            return group.first.empty() ? findingName(kind) : group.first.front().line();
        }
    }
    return QString();
}

} // namespace Ovra::GeoTool
