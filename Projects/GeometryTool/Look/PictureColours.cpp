#include "PictureColours.h"

#include "AttributeText.h"
#include "CaseView.h"
#include "EntityTitle.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Colour = PictureData::Colour;

// Apart from one another, and neither the red nor the amber of findings.
constexpr std::array<Colour, 12> palette = {{{0.36, 0.60, 0.86},
                                             {0.91, 0.60, 0.32},
                                             {0.40, 0.70, 0.47},
                                             {0.80, 0.47, 0.56},
                                             {0.60, 0.52, 0.80},
                                             {0.73, 0.64, 0.35},
                                             {0.33, 0.69, 0.68},
                                             {0.86, 0.55, 0.74},
                                             {0.55, 0.63, 0.70},
                                             {0.64, 0.72, 0.30},
                                             {0.45, 0.51, 0.86},
                                             {0.75, 0.52, 0.40}}};
constexpr Colour neutral = {0.72, 0.74, 0.77};

QString materialText(const ModelEntity& body)
{
    const QVariant type = body.attributes().value(AttributeType::MaterialType, {});
    const QVariant id = body.attributes().value(AttributeType::MaterialId, {});
    QStringList parts;
    for (const QVariant& part : {type, id}) {
        if (part.isValid()) {
            parts += attributeText(part);
        }
    }
    return parts.join(QLatin1Char(' '));
}

QString attributeOf(const ModelEntity* entity, const AttributeType& type)
{
    return entity && entity->attributes().contains(type)
               ? attributeText(entity->attributes().value(type, {}))
               : QString();
}

QString fittingWord(const CaseView& view)
{
    const bool hasRegions = view.modelEntities(view.elementDimension()).size() > 1;
    return hasRegions ? QStringLiteral("region") : QStringLiteral("face");
}

bool isWord(const QString& by)
{
    return by == QLatin1String("region") || by == QLatin1String("face") ||
           by == QLatin1String("material");
}

} // namespace

PictureColours::PictureColours(const CaseView& view, const QString& by)
    : by_(by.isEmpty() ? fittingWord(view) : by)
    , bodyDimension_(view.elementDimension())
{
    if (!isWord(by_)) {
        attribute_ = AttributeType::fromString(by_);
        if (!attribute_.isValid()) {
            throw ToolError(
                ExitCode::Usage,
                QStringLiteral("--color-by must be region, face, material or the tag of "
                               "an attribute, not \"%1\"")
                    .arg(by_));
        }
    }
    addValues(view.modelEntities(bodyDimension_));
    addValues(view.modelEntities(view.faceDimension()));
    if (attribute_.isValid() && values_.isEmpty()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("no region or face has the attribute %1").arg(by_));
    }
    used_.resize(static_cast<std::size_t>(values_.size()), false);
}

void PictureColours::addValues(const std::vector<ModelEntity*>& entities)
{
    for (const ModelEntity* entity : entities) {
        const bool isBody = entity->dimension() == bodyDimension_;
        const QString value = valueOf(isBody ? nullptr : entity, isBody ? entity : nullptr);
        if (!value.isEmpty() && !positions_.contains(value)) {
            positions_.insert(value, static_cast<int>(values_.size()));
            values_.append(value);
        }
    }
}

QString PictureColours::valueOf(const ModelEntity* face, const ModelEntity* body) const
{
    if (attribute_.isValid()) {
        const QString ofFace = attributeOf(face, attribute_);
        return ofFace.isEmpty() ? attributeOf(body, attribute_) : ofFace;
    }
    if (by_ == QLatin1String("face")) {
        return face ? entityTitle(*face) : QString();
    }
    if (!body) {
        return QString();
    }
    return by_ == QLatin1String("material") ? materialText(*body) : entityTitle(*body);
}

PictureData::Colour PictureColours::of(const ModelEntity* face, const ModelEntity* body)
{
    const int position = positions_.value(valueOf(face, body), -1);
    if (position < 0) {
        isNeutralUsed_ = true;
        return neutral;
    }
    used_[static_cast<std::size_t>(position)] = true;
    return palette.at(static_cast<std::size_t>(position) % palette.size());
}

bool PictureColours::hasValue(const ModelEntity* face, const ModelEntity* body) const
{
    return positions_.contains(valueOf(face, body));
}

bool PictureColours::isMarked(const ModelEntity* face) const
{
    return attribute_.isValid() && !attributeOf(face, attribute_).isEmpty();
}

QString PictureColours::neutralText() const
{
    return attribute_.isValid() ? QStringLiteral("(none)") : QStringLiteral("(no %1)").arg(by_);
}

std::optional<PictureData::LegendEntry> PictureColours::neutralEntry() const
{
    return isNeutralUsed_ ? std::optional(PictureData::LegendEntry{
                                neutral, neutralText().toStdString(), false})
                          : std::nullopt;
}

std::vector<PictureData::LegendEntry> PictureColours::legend() const
{
    std::vector<PictureData::LegendEntry> entries;
    for (std::size_t i = 0; i < used_.size(); ++i) {
        if (used_[i]) {
            entries.push_back({palette.at(i % palette.size()),
                               values_[static_cast<qsizetype>(i)].toStdString(), false});
        }
    }
    return entries;
}

} // namespace Ovra::GeoTool
