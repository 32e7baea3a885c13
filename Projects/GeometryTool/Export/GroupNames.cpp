#include "GroupNames.h"

#include "AttributeType.h"
#include "CaseView.h"
#include "IntAttribute.h"
#include "ModelEntity.h"
#include "ReturningEntities.h"

#include <QRegularExpression>

#include <map>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// \brief As much of a text as fits into a number of bytes of UTF-8.
QString firstBytes(QString text, int count)
{
    while (text.toUtf8().size() > count) {
        text.chop(text.at(text.size() - 1).isLowSurrogate() ? 2 : 1);
    }
    return text;
}

/// \brief "fluid_1"; empty for a region without a material.
QString materialOf(const ModelEntity& region)
{
    const QString type =
        region.attributes().value(AttributeType::MaterialType, QString()).toString();
    return type.isEmpty() ? QString()
                          : QStringLiteral("%1_%2").arg(type).arg(
                                intOf(region.attributes(), AttributeType::MaterialId));
}

} // namespace

GroupNames::GroupNames(const CaseView& view, const GmshFormat& format)
    : format_(format)
{
    for (int dimension = format.lowestDimension; dimension <= 3; ++dimension) {
        addNames(view, dimension);
    }
    if (format.hasMaterialGroups) {
        addMaterials(view);
    }
}

void GroupNames::addNames(const CaseView& view, int dimension)
{
    std::map<QString, std::size_t> positions;
    for (const ModelEntity* entity : view.modelEntities(dimension)) {
        if (!format_.hasEmptyRegions && !ReturningEntities::hasMesh(*entity)) {
            continue; // there are formats in which a group has elements
        }
        const QString name = entity->name();
        if (name.isEmpty() && !format_.groupsAll) {
            continue;
        }
        const auto found = name.isEmpty() ? positions.end() : positions.find(name);
        if (found != positions.end()) {
            groups_[found->second].entities.push_back(entity->id());
            continue;
        }
        positions.emplace(name, groups_.size());
        groups_.push_back({dimension, entity->id(), QString(), {entity->id()}});
        if (!name.isEmpty()) {
            groups_.back().name = uniqueName(dimension, name);
            written_.emplace(Key(dimension, name), groups_.back().name);
        }
    }
}

/// A region without a name gets none by its material, which an import would take for its name.
void GroupNames::addMaterials(const CaseView& view)
{
    const std::vector<ModelEntity*>& regions = view.modelEntities(view.elementDimension());
    std::map<QString, std::vector<int>> byMaterial;
    for (const ModelEntity* region : regions) {
        const QString material = materialOf(*region);
        if (!material.isEmpty() && written_.contains(Key(region->dimension(), region->name()))) {
            byMaterial[material].push_back(region->id());
        }
    }
    int number = regions.empty() ? 0 : regions.back()->id();
    for (const auto& [material, ids] : byMaterial) {
        const int dimension = view.elementDimension();
        groups_.push_back({dimension, ++number, uniqueName(dimension, material), ids});
    }
}

QString GroupNames::of(const ModelEntity& entity) const
{
    const auto found = written_.find(Key(entity.dimension(), entity.name()));
    return found == written_.end() ? QString() : found->second;
}

QString GroupNames::uniqueName(int dimension, const QString& name)
{
    const QString first = allowedName(name);
    QString unique = first;
    for (int count = 2; !take(dimension, unique); ++count) {
        const QString end = QStringLiteral("_%1").arg(count);
        unique = firstBytes(first, format_.nameRule.longest - static_cast<int>(end.size())) + end;
    }
    return unique;
}

QString GroupNames::allowedName(const QString& name) const
{
    QString allowed = name;
    for (QChar& letter : allowed) {
        if (format_.nameRule.forbidden.contains(letter) ||
            letter.category() == QChar::Other_Control) {
            letter = QLatin1Char('_');
        }
    }
    // Blanks at the ends or in a row are not told from one another.
    const QString simplified = firstBytes(allowed.simplified(), format_.nameRule.longest);
    return simplified.isEmpty() ? QStringLiteral("_") : simplified.trimmed();
}

/// \brief Whether no group has had the name.
bool GroupNames::take(int dimension, const QString& name)
{
    const GmshFormat::NameRule& rule = format_.nameRule;
    static const auto option = QRegularExpression::CaseInsensitiveOption;
    const QRegularExpression reserved(QRegularExpression::anchoredPattern(rule.reserved), option);
    if (!rule.reserved.isEmpty() && reserved.match(name).hasMatch()) {
        return false;
    }
    const QString scope = rule.isShared ? QString() : QString::number(dimension);
    const QString key = scope + QLatin1Char(':') + (rule.isCaseless ? name.toLower() : name);
    const bool isNew = !taken_.contains(key);
    taken_.insert(key);
    return isNew;
}

} // namespace Ovra::GeoTool
