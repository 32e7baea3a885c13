#include "ScaleCheck.h"

#include "AttributeType.h"
#include "CaseView.h"
#include "Database.h"
#include "EntityName.h"
#include "IntAttribute.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"
#include "StoredTransform.h"
#include "ToolError.h"

#include <QVariant>

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr double closeness = 1e-9;

/// \brief A rotation leaves the origin where it is just if its axis goes through it.
bool missesOrigin(const PeriodicTransform& rotation)
{
    return rotation.map(Vector()).length() > closeness * rotation.origin.length();
}

} // namespace

ScaleCheck::ScaleCheck(const Database& database)
    : database_(database)
{
}

bool ScaleCheck::isPeriodic() const
{
    const CaseView view(database_);
    const auto& faces = view.modelEntities(view.faceDimension());
    return std::any_of(faces.begin(), faces.end(), [](const ModelEntity* face) {
        return intOf(face->attributes(), AttributeType::PeriodicPairId) != 0;
    });
}

void ScaleCheck::require(double scale, Progress& progress) const
{
    if (scale == 1.0 || !isPeriodic()) {
        return;
    }
    Model& model = *database_.model();
    const PeriodicTransform transform = storedTransform(model);
    const double factor =
        model.attributes().value(AttributeType::VisualScaleFactor, 1.0).toDouble();
    const bool isTranslation = transform.translation.length() > 0;
    if (!isTranslation && missesOrigin(transform)) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("the case is not fit for --scale: its periodic faces turn "
                                       "about an axis through %1, which misses the origin and is "
                                       "not scaled; import the case with --scale %2 instead")
                            .arg(placeText(transform.origin))
                            .arg(scale));
    }
    if (isTranslation && std::abs(factor - scale) > closeness * scale) {
        progress.warning(QStringLiteral("the periodic translation is multiplied by the "
                                        "visual_scale_factor %1, coordinates by %2; import the "
                                        "case with --scale %2 instead, or set that attribute")
                             .arg(factor)
                             .arg(scale));
    }
}

} // namespace Ovra::GeoTool
