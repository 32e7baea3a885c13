#pragma once

#include "AttributeType.h"
#include "PictureData.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Which colour each part of a picture has, and what it stands for.
///
/// A part is a face, or one side of it where the regions are moved apart, or what a plane cuts out of
/// a region.
class PictureColours
{
public:
    /// \param by see PictureOptions::colorBy; throws ToolError Usage if it is neither a word nor the
    /// tag of an attribute, Unsuitable if no region or face has that attribute
    PictureColours(const CaseView& view, const QString& by);

    /// \brief What the parts differ in: "region", or the tag of an attribute.
    QString by() const { return by_; }

    /// \brief The colour of a part, whose meaning goes into the legend with the first part of it.
    /// \param face null for what is cut out of a region
    /// \param body null for a face that bounds nothing
    PictureData::Colour of(const Geo::ModelEntity* face, const Geo::ModelEntity* body);

    /// \brief Whether a part has a colour that stands for something; see of().
    bool hasValue(const Geo::ModelEntity* face, const Geo::ModelEntity* body) const;

    /// \brief Whether a face itself has the attribute that the colours are of.
    bool isMarked(const Geo::ModelEntity* face) const;

    /// \brief What the colours stand for, in the order of the model.
    std::vector<PictureData::LegendEntry> legend() const;

    /// \brief The same of parts that have no value, sides of elements on no region for instance;
    /// nothing where there are none.
    std::optional<PictureData::LegendEntry> neutralEntry() const;

private:
    QString valueOf(const Geo::ModelEntity* face, const Geo::ModelEntity* body) const;
    QString neutralText() const;
    void addValues(const std::vector<Geo::ModelEntity*>& entities);

    QString by_;
    Geo::AttributeType attribute_;
    int bodyDimension_;
    QStringList values_; ///< all that the case has, in the order of its entities
    QHash<QString, int> positions_;
    std::vector<bool> used_;
    bool isNeutralUsed_ = false;
};

} // namespace Ovra::GeoTool
