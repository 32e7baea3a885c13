#include "InfoText.h"

#include "CaseSummary.h"
#include "Counted.h"

#include <QStringList>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int labelWidth = 18;

const std::array<const char*, 4> dimensionNames = {"vertices", "edges", "faces", "regions"};
const std::array<const char*, 4> singularNames = {"vertex", "edge", "face", "region"};
const std::array<const char*, 4> measureNames = {"", "Length", "Area", "Volume"};

QString dimensionName(std::size_t dimension)
{
    return QLatin1String(dimensionNames[dimension]);
}

QString line(const QString& label, const QString& text)
{
    return label.leftJustified(labelWidth) + text + QLatin1Char('\n');
}

QString heading(const QString& text)
{
    return QLatin1Char('\n') + text + QLatin1Char('\n');
}

QString number(double value)
{
    return QString::number(value, 'g', 9);
}

QString row(const QStringList& cells)
{
    QString text = QStringLiteral("  ") + cells.first().leftJustified(labelWidth - 2);
    for (const QString& cell : cells.mid(1)) {
        text += cell.rightJustified(12);
    }
    return text + QLatin1Char('\n');
}

QString fileText(const FileFacts& facts, const QString& formatName)
{
    QString text = QStringLiteral("%1, %2, format %3, version %4")
                       .arg(facts.path, counted(facts.size, QStringLiteral("byte")), formatName,
                            facts.version.toString());
    if (facts.oldHeader) {
        text += QStringLiteral(", old header");
    }
    return text;
}

QString boxText(const Box& box)
{
    if (box.isValid()) { // true for exactly the inverted box
        return QStringLiteral("none");
    }
    const Vector low = box.minimum();
    const Vector high = box.maximum();
    return QStringLiteral("(%1, %2, %3) to (%4, %5, %6)")
        .arg(number(low.x()), number(low.y()), number(low.z()), number(high.x()), number(high.y()),
             number(high.z()));
}

QString spaceText(const CaseSummary& summary)
{
    if (summary.is3d) {
        return QStringLiteral("three-dimensional");
    }
    const bool isEmpty = summary.mesh[0].count == 0;
    return (isEmpty            ? QStringLiteral("no mesh")
            : summary.isPlanar ? QStringLiteral("planar")
                               : QStringLiteral("surfaces in space")) +
           QStringLiteral(", the model has no regions");
}

QString headText(const CaseSummary& summary)
{
    return line("Case", summary.name) +
           line("Model file", fileText(summary.modelFile, QStringLiteral("2013"))) +
           line("Mesh file", fileText(summary.meshFile, meshFormatName(summary.meshFile.format))) +
           line("Space", spaceText(summary)) +
           line("Coordinate system", QString::number(summary.coordinateSystem)) +
           line("Refinement", counted(summary.refinementRegionCount, QStringLiteral("region"))) +
           line("Model box", boxText(summary.modelBox)) +
           line("Mesh box", boxText(summary.meshBox));
}

QString countsText(const CaseSummary& summary)
{
    QString text = heading("Entities") +
                   row({"", "model", "id gaps", "mesh", "id gaps", "no parent", "other dim."});
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        text += row({dimensionName(dimension), QString::number(summary.model[dimension].count),
                     QString::number(summary.model[dimension].gaps),
                     QString::number(summary.mesh[dimension].count),
                     QString::number(summary.mesh[dimension].gaps),
                     QString::number(summary.unclassified[dimension]),
                     QString::number(summary.onOtherDimension[dimension])});
    }
    return text;
}

QString kindsText(const CaseSummary& summary)
{
    QString text = heading("Elements");
    for (std::size_t dimension = 1; dimension < 4; ++dimension) {
        for (const auto& [kind, count] : summary.kinds[dimension]) {
            text += row({kind == QLatin1String("unknown")
                             ? kind + QLatin1Char(' ') + dimensionName(dimension)
                             : kind,
                         QString::number(count)});
        }
    }
    return text;
}

QString materialsText(const CaseSummary& summary)
{
    QString text =
        heading("Materials") + row({"type", "id", summary.is3d ? "regions" : "faces", "elements"});
    for (const MaterialSummary& material : summary.materials) {
        text += row({material.type.isEmpty() ? QStringLiteral("(none)") : material.type,
                     material.hasId ? QString::number(material.id) : QStringLiteral("(none)"),
                     QString::number(material.modelEntityCount),
                     QString::number(material.elementCount)});
    }
    return text;
}

QString nameText(const NameSummary& name)
{
    const auto dimension = static_cast<std::size_t>(name.dimension);
    QStringList ids;
    for (std::size_t i = 0; i < std::min(name.ids.size(), shownIdCount); ++i) {
        ids += QString::number(name.ids[i]);
    }
    if (name.ids.size() > shownIdCount) {
        ids += QStringLiteral("...");
    }
    return QStringLiteral("  %1: %2 %3\n")
        .arg(name.name,
             QLatin1String(name.ids.size() == 1 ? singularNames[dimension]
                                                : dimensionNames[dimension]),
             ids.join(QStringLiteral(", ")));
}

QString namesText(const CaseSummary& summary)
{
    QString text = summary.names.empty() ? QString() : heading(QStringLiteral("Names"));
    for (const NameSummary& name : summary.names) {
        text += nameText(name);
    }
    return text;
}

QString twinText(const TwinSummary& twin)
{
    const auto entityText = [&twin](int id, const QString& name) {
        const QString entity =
            QStringLiteral("%1 %2")
                .arg(QLatin1String(singularNames[static_cast<std::size_t>(twin.dimension)]))
                .arg(id);
        return name.isEmpty() ? entity : entity + QStringLiteral(" \"%1\"").arg(name);
    };
    return line(QStringLiteral("  ") + twin.relation,
                QStringLiteral("%1 of %2")
                    .arg(entityText(twin.copyId, twin.copyName),
                         entityText(twin.originalId, twin.originalName)));
}

/// Only a case that has been prepared, or has a shell, has any.
QString twinsText(const CaseSummary& summary)
{
    QString text = summary.twins.empty() ? QString() : heading("Twins");
    for (const TwinSummary& twin : summary.twins) {
        text += twinText(twin);
    }
    return text;
}

/// \brief "mesh vertices".
QString entityName(const char* owner, const char* name)
{
    return QLatin1String(owner) + QLatin1Char(' ') + QLatin1String(name);
}

QString attributeText(const QString& tag, const AttributeSummary& attribute)
{
    const auto counts = [](const char* owner, int own, const std::array<int, 4>& entities) {
        QStringList parts;
        if (own > 0) {
            parts += QLatin1String(owner);
        }
        for (std::size_t dimension = 0; dimension < 4; ++dimension) {
            if (entities[dimension] > 0) {
                parts += counted(entities[dimension], entityName(owner, singularNames[dimension]),
                                 entityName(owner, dimensionNames[dimension]));
            }
        }
        return parts;
    };
    const QStringList parts = counts("model", attribute.model, attribute.modelEntities) +
                              counts("mesh", attribute.mesh, attribute.meshEntities);
    return QStringLiteral("  %1 on %2\n")
        .arg(tag.leftJustified(29), parts.join(QStringLiteral(", ")));
}

QString attributesText(const CaseSummary& summary)
{
    QString text = heading("Attributes");
    for (auto each = summary.attributes.begin(); each != summary.attributes.end(); ++each) {
        text += attributeText(each.key(), *each);
    }
    return text;
}

QString extremesText(const QString& label, const Extremes& extremes)
{
    if (extremes.isEmpty()) {
        return QString();
    }
    return line(QStringLiteral("  ") + label, QStringLiteral("%1 (id %2) to %3 (id %4)")
                                                  .arg(number(extremes.smallest))
                                                  .arg(extremes.smallestId)
                                                  .arg(number(extremes.largest))
                                                  .arg(extremes.largestId));
}

QString idListText(const QString& label, const std::vector<int>& ids)
{
    if (ids.empty()) {
        return line(QStringLiteral("  ") + label, QStringLiteral("0"));
    }
    QStringList first;
    for (std::size_t i = 0; i < std::min(ids.size(), shownIdCount); ++i) {
        first += QString::number(ids[i]);
    }
    if (ids.size() > shownIdCount) {
        first += QStringLiteral("...");
    }
    return line(QStringLiteral("  ") + label,
                QStringLiteral("%1 (id %2)").arg(ids.size()).arg(first.join(QStringLiteral(", "))));
}

QString qualityText(int dimension, const MeshQuality& quality)
{
    const auto place = static_cast<std::size_t>(dimension);
    return heading(QStringLiteral("Quality of mesh ") + dimensionName(place)) +
           extremesText(QLatin1String(measureNames[place]), quality.measure()) +
           line(QStringLiteral("  Total"), number(quality.total())) +
           extremesText(QStringLiteral("Aspect"), quality.aspect()) +
           idListText(QStringLiteral("Inverted"), quality.inverted()) +
           idListText(QStringLiteral("Twisted"), quality.twisted()) +
           idListText(QStringLiteral("Degenerate"), quality.degenerate()) +
           idListText(QStringLiteral("Unknown kind"), quality.unknown());
}

} // namespace

QByteArray infoText(const CaseSummary& summary)
{
    QString text = headText(summary) + countsText(summary) + kindsText(summary) +
                   materialsText(summary) + namesText(summary) + twinsText(summary) +
                   attributesText(summary);
    for (const auto& [dimension, quality] : summary.quality) {
        text += qualityText(dimension, quality);
    }
    return text.toUtf8();
}

} // namespace Ovra::GeoTool
