#include "StoredTransform.h"

#include "AttributeType.h"
#include "Model.h"

#include <QVariant>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

PeriodicTransform storedTransform(Model& model)
{
    const auto vector = [&model](const AttributeType& type) {
        return model.attributes().value(type, {}).value<Vector>();
    };
    PeriodicTransform transform;
    transform.origin = vector(AttributeType::PeriodicOrigin);
    transform.xAxis = vector(AttributeType::PeriodicXAxis);
    transform.yAxis = vector(AttributeType::PeriodicYAxis);
    transform.zAxis = vector(AttributeType::PeriodicZAxis);
    transform.translation = vector(AttributeType::PeriodicTranslation);
    transform.matrix = model.attributes().value(AttributeType::PeriodicMatrix, {}).value<Matrix>();
    return transform;
}

} // namespace Ovra::GeoTool
