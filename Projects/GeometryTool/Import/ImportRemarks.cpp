#include "ImportRemarks.h"

#include "AttributeCheck.h"
#include "CoincidentFaces.h"
#include "Counted.h"
#include "EntityName.h"
#include "IdOrder.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"

#include <QSet>
#include <QVariant>

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QString idAndName(const ModelEntity& entity)
{
    const QString id = QString::number(entity.id());
    return entity.name().isEmpty() ? id : QStringLiteral("%1 (%2)").arg(id, entity.name());
}

QString both(const ModelEntity& a, const ModelEntity& b)
{
    return QStringLiteral("%1 and %2").arg(idAndName(a), idAndName(b));
}

/// \brief "faces", "regions".
QString pluralOf(int dimension)
{
    static const std::array<const char*, 4> names = {"vertices", "edges", "faces", "regions"};
    return QLatin1String(names[static_cast<std::size_t>(dimension)]);
}

QString materialOf(const ModelEntity& entity)
{
    return entity.attributes().value(AttributeType::MaterialType, QVariant()).toString();
}

} // namespace

ImportRemarks::ImportRemarks(const Model& model, Progress& progress)
    : model_(model)
    , progress_(progress)
{
}

void ImportRemarks::warnOfLooseBodies(const QString& input) const
{
    const std::vector<CoincidentFaces::Pair> pairs = CoincidentFaces::in(model_);
    if (pairs.empty()) {
        return;
    }
    const ModelEntity& first = *pairs.front().first;
    const ModelEntity& second = *pairs.front().second;
    const int bodies = first.dimension() + 1;
    const QString what =
        QStringLiteral("of %1 of different %2 ").arg(pluralOf(first.dimension()), pluralOf(bodies));
    progress_.warning(
        QStringLiteral("%1: %2, for instance %3 %4 of %5 %6: the %5 will not be coupled; join "
                       "them with Coherence (BooleanFragments), see Import.md")
            .arg(input,
                 counted(static_cast<qint64>(pairs.size()),
                         QStringLiteral("pair ") + what + "coincides but is not joined",
                         QStringLiteral("pairs ") + what + "coincide but are not joined"),
                 pluralOf(first.dimension()), both(first, second), pluralOf(bodies),
                 both(*first.adjacencyAt(bodies, 0), *second.adjacencyAt(bodies, 0))));
}

void ImportRemarks::warnOfMaterials(const QString& attributes) const
{
    const int bodies = model_.faceDimension() + 1;
    QSet<QString> told;
    bool isAnyGiven = false;
    for (int d = bodies; d >= 0; --d) {
        for (const ModelEntity* entity : inIdOrder(model_.iterator(d))) {
            if (!entity->attributes().contains(AttributeType::MaterialType)) {
                continue;
            }
            isAnyGiven = isAnyGiven || d == bodies;
            const QString fault = AttributeCheck::materialFault(materialOf(*entity));
            if (!fault.isEmpty() && !told.contains(materialOf(*entity))) {
                progress_.warning(
                    QStringLiteral("%1: %2 %3").arg(attributes, EntityName(*entity).text(), fault));
            }
            told.insert(materialOf(*entity));
        }
    }
    if (!isAnyGiven) {
        progress_.warning(QStringLiteral("%1: gives a material_type to none of the %2, so that "
                                         "nothing can be prepared or solved")
                              .arg(attributes, pluralOf(bodies)));
    }
}

} // namespace Ovra::GeoTool
