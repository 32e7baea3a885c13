#include "ModelComparison.h"

#include "AttributeComparison.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "RefinementRegion.h"
#include "ValueChanges.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Owner = EntityName::Owner;

/// Length, area or volume.
double measureOf(const ModelEntity& entity)
{
    switch (entity.dimension()) {
    case 1:
        return static_cast<const ModelEdge&>(entity).length();
    case 2:
        return static_cast<const ModelFace&>(entity).area();
    case 3:
        return static_cast<const ModelRegion&>(entity).volume();
    default:
        return 0.0;
    }
}

void comparePlaces(const ModelEntity& a, const ModelEntity& b, ValueChanges& changes)
{
    if (a.dimension() == 0) {
        changes.compare(QStringLiteral("point"), a.centroid(), b.centroid());
        return;
    }
    static const std::array<const char*, 4> measures = {"", "length", "area", "volume"};
    changes.compare(QStringLiteral("box"), a.boundingBox(), b.boundingBox());
    changes.compare(QLatin1String(measures[static_cast<std::size_t>(a.dimension())]), measureOf(a),
                    measureOf(b));
    changes.compare(QStringLiteral("centroid"), a.centroid(), b.centroid());
    changes.compare(QStringLiteral("normal"), a.normal(), b.normal());
    changes.compare(QStringLiteral("planar"), a.isPlanar(), b.isPlanar());
}

QVariantList pointsOf(const RefinementRegion& region)
{
    QVariantList points;
    for (int i = 0; i < region.pointCount(); ++i) {
        points += region.point(i);
    }
    return points;
}

QVariantList lambdasOf(const RefinementRegion& region)
{
    const QList<double> lambdas = region.lambdas();
    return {lambdas.begin(), lambdas.end()};
}

QVariantList gridOf(const RefinementRegion& region)
{
    int first = 0;
    int second = 0;
    int third = 0;
    region.getBackgroundGridDimensions(first, second, third);
    return {first, second, third};
}

void compareTriples(const RefinementRegion& a, const RefinementRegion& b, ValueChanges& changes)
{
    for (int i = 1; i <= 3; ++i) {
        changes.compare(QStringLiteral("vector %1").arg(i), a.vector(i), b.vector(i));
        changes.compare(QStringLiteral("matrix row %1").arg(i), a.transMat(i), b.transMat(i));
    }
}

void compareFields(const RefinementRegion& a, const RefinementRegion& b, ValueChanges& changes)
{
    changes.compare(QStringLiteral("type"), a.type(), b.type());
    changes.compare(QStringLiteral("filled"), a.isFilled(), b.isFilled());
    changes.compare(QStringLiteral("length"), a.length(), b.length());
    changes.compare(QStringLiteral("radius"), a.radius(), b.radius());
    changes.compare(QStringLiteral("lambda"), a.lambda(), b.lambda());
    changes.compare(QStringLiteral("centroid"), a.centroid(), b.centroid());
    changes.compare(QStringLiteral("points"), pointsOf(a), pointsOf(b));
    changes.compare(QStringLiteral("background grid"), gridOf(a), gridOf(b));
    changes.compare(QStringLiteral("uniform"), a.isUniform(), b.isUniform());
    changes.compare(QStringLiteral("lambdas"), lambdasOf(a), lambdasOf(b));
    changes.compare(QStringLiteral("extent"), a.extent(), b.extent());
    changes.compare(QStringLiteral("minimum"), a.minimum(), b.minimum());
    changes.compare(QStringLiteral("maximum"), a.maximum(), b.maximum());
    compareTriples(a, b, changes);
}

/// \param index from 0
Subject refinementSubject(int index, bool inA, bool inB)
{
    Subject subject{ComparedPart::RefinementRegions, {}, {}};
    if (inA) {
        subject.inA = index + 1;
    }
    if (inB) {
        subject.inB = index + 1;
    }
    return subject;
}

} // namespace

ModelComparison::ModelComparison(const CasePair& pair, CaseDifferences& differences)
    : pair_(pair)
    , differences_(differences)
{
}

void ModelComparison::run() const
{
    compareWhole();
    compareRefinement();
    for (int dimension = 0; dimension < 4; ++dimension) {
        compareEntities(dimension);
    }
}

void ModelComparison::compareWhole() const
{
    const Model& a = pair_.a.view().model();
    const Model& b = pair_.b.view().model();
    ValueChanges versions(pair_.closeness);
    versions.compare(QStringLiteral("version"), a.version(), b.version());
    tell(DifferenceKind::Version, EntityName::Whole, -1, -1, versions);
    ValueChanges places(pair_.closeness);
    places.compare(QStringLiteral("box"), a.boundingBox(), b.boundingBox());
    tell(DifferenceKind::Place, EntityName::Whole, -1, -1, places);
    AttributeComparison(pair_, Owner::Model, EntityName::Whole, differences_)
        .compare(pair_.a.view().model().attributes(), pair_.b.view().model().attributes(), -1, -1);
}

void ModelComparison::compareRefinement() const
{
    const Model& a = pair_.a.view().model();
    const Model& b = pair_.b.view().model();
    const auto tellOf = [this](DifferenceKind kind, const Subject& subject,
                               const std::vector<Change>& changes) {
        differences_.add(kind, subject.part, [&] { return Difference{subject, {}, changes}; });
    };
    const int countInA = a.refinementRegionCount();
    const int countInB = b.refinementRegionCount();
    for (int i = 0; i < std::min(countInA, countInB); ++i) {
        ValueChanges changes(pair_.closeness);
        compareFields(*a.refinementRegion(i), *b.refinementRegion(i), changes);
        if (!changes.areNone()) {
            tellOf(DifferenceKind::Place, refinementSubject(i, true, true), changes.changes());
        }
    }
    for (int i = countInB; i < countInA; ++i) {
        tellOf(DifferenceKind::OnlyInA, refinementSubject(i, true, false), {});
    }
    for (int i = countInA; i < countInB; ++i) {
        tellOf(DifferenceKind::OnlyInB, refinementSubject(i, false, true), {});
    }
}

void ModelComparison::compareEntities(int dimension) const
{
    const EntityMatch& match = pair_.match.of(Owner::Model, dimension);
    const AttributeComparison attributes(pair_, Owner::Model, dimension, differences_);
    for (int i = 0; i < static_cast<int>(match.countInA()); ++i) {
        const int j = match.inB(i);
        if (j < 0) {
            continue;
        }
        ModelEntity& a = pair_.a.modelEntity(dimension, i);
        ModelEntity& b = pair_.b.modelEntity(dimension, j);
        ValueChanges names(pair_.closeness);
        names.compare(QStringLiteral("name"), a.name(), b.name());
        names.compare(QStringLiteral("tag"), a.tag(), b.tag());
        tell(DifferenceKind::Name, dimension, i, j, names);
        ValueChanges places(pair_.closeness);
        comparePlaces(a, b, places);
        tell(DifferenceKind::Place, dimension, i, j, places);
        attributes.compare(a.attributes(), b.attributes(), i, j);
    }
}

void ModelComparison::tell(DifferenceKind kind, int dimension, int inA, int inB,
                           const ValueChanges& changes) const
{
    if (!changes.areNone()) {
        differences_.add(kind, partOf(Owner::Model, dimension), [&] {
            return pair_.difference(Owner::Model, dimension, inA, inB, changes.changes());
        });
    }
}

} // namespace Ovra::GeoTool
