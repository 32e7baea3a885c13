#include "CopyDescription.h"

#include "EntityNames.h"
#include "IdOrder.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

void copySize(const ModelEdge& from, ModelEdge& to)
{
    to.setLength(from.length());
    to.setNormal(from.normal());
    to.setPlanar(from.isPlanar());
}

void copySize(const ModelFace& from, ModelFace& to)
{
    to.setArea(from.area());
    to.setNormal(from.normal());
    to.setPlanar(from.isPlanar());
}

void copySize(const ModelRegion& from, ModelRegion& to)
{
    to.setVolume(from.volume());
}

/// \brief What a nameless entity is called by: "face_12".
QString standIn(const ModelEntity& entity)
{
    return QStringLiteral("%1_%2").arg(kindName(entity.dimension())).arg(entity.id());
}

template <typename Entity>
bool copyMeasures(const ModelEntity& from, ModelEntity& to)
{
    const auto* const original = dynamic_cast<const Entity*>(&from);
    auto* const copy = dynamic_cast<Entity*>(&to);
    if (!original || !copy) {
        return false;
    }
    copy->setBoundingBox(original->boundingBox());
    copy->setCentroid(original->centroid());
    copySize(*original, *copy);
    return true;
}

} // namespace

CopyDescription::CopyDescription(const Model& model, int dimension)
{
    for (const ModelEntity* entity : inIdOrder(model.iterator(dimension))) {
        ++uses_[entity->name()];
    }
}

void CopyDescription::describe(const ModelEntity& original, ModelEntity& copy,
                               const QString& suffix)
{
    copyMeasures<ModelEdge>(original, copy) || copyMeasures<ModelFace>(original, copy) ||
        copyMeasures<ModelRegion>(original, copy);
    copy.setName(nameFor(original, suffix));
}

QString CopyDescription::nameFor(const ModelEntity& original, const QString& suffix)
{
    const bool isNamed = !original.name().isEmpty();
    const QString stem = isNamed ? original.name() : standIn(original);
    const QString wanted = stem + QLatin1Char(':') + suffix;
    if (isNamed && uses_.value(stem) > 1) {
        if (!shared_.contains(wanted)) {
            shared_.insert(wanted, freeName(wanted));
        }
        return shared_.value(wanted);
    }
    const QString name = freeName(wanted);
    ++uses_[name];
    return name;
}

QString CopyDescription::freeName(const QString& wanted) const
{
    QString name = wanted;
    for (int number = 2; uses_.contains(name); ++number) {
        name = QStringLiteral("%1:%2").arg(wanted).arg(number);
    }
    return name;
}

} // namespace Ovra::GeoTool
