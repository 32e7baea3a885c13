#include "StartUpProbe.h"

using namespace Ovra::Geo;

namespace
{

// Static objects of the plain kinds too: each reads the library while it is being initialised.
const StartUpProbe probe;
const AttributeType aliased = AttributeType::fromString("coincidentFaceId");
const AttributeType constant = AttributeType::VisualScaleFactor;
const QList<QString> tags = AttributeType::tags();
const QString tag = AttributeType::InBL.toString();
const QMetaType vectorType = QMetaType::fromName("geo::Vector");
const QVariant vector = Vector(1, 2, 3);

} // namespace

QStringList faultsSeenElsewhere()
{
    QStringList faults = probe.faults();
    const bool plainObjectsAreGood =
        aliased == AttributeType::ExtrudedFace && constant == AttributeType::VisualScaleFactor &&
        tags == AttributeType::tags() && tag == "in_bl" &&
        vectorType == QMetaType::fromType<Vector>() && vector.value<Vector>() == Vector(1, 2, 3);
    return plainObjectsAreGood ? faults : faults << "a plain static object";
}
