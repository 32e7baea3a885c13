#include "CaseDifferences.h"

#include "EntityNames.h"

#include <QStringList>

#include <array>

namespace Ovra::GeoTool
{

namespace
{

QString subjectName(ComparedPart part, int id)
{
    if (part == ComparedPart::RefinementRegions) {
        return QStringLiteral("refinement region %1").arg(id);
    }
    const bool ofModel = part < ComparedPart::Mesh;
    const auto first = ofModel ? ComparedPart::ModelVertices : ComparedPart::MeshVertices;
    return nameOf(ofModel ? QStringLiteral("model") : QStringLiteral("mesh"),
                  static_cast<int>(part) - static_cast<int>(first), id);
}

} // namespace

QString differenceName(DifferenceKind kind)
{
    static const std::array<const char*, 10> names = {
        "only-in-a", "only-in-b",      "version",    "name",  "place",
        "vertices",  "classification", "attributes", "links", "neighbours"};
    return QLatin1String(names[static_cast<std::size_t>(kind)]);
}

ComparedPart partOf(EntityName::Owner owner, int dimension)
{
    const auto whole = owner == EntityName::Owner::Model ? ComparedPart::Model : ComparedPart::Mesh;
    return static_cast<ComparedPart>(static_cast<int>(whole) + dimension + 1);
}

QString partName(ComparedPart part)
{
    static const std::array<const char*, 11> names = {
        "model", "model vertices", "model edges", "model faces", "model regions", "refinement",
        "mesh",  "mesh vertices",  "mesh edges",  "mesh faces",  "mesh regions"};
    return QLatin1String(names[static_cast<std::size_t>(part)]);
}

QString Subject::text() const
{
    if (!inA && !inB) {
        return QStringLiteral("the ") + partName(part);
    }
    const QString name = subjectName(part, inA ? *inA : *inB);
    return inA && inB && *inA != *inB ? QStringLiteral("%1 (%2 in B)").arg(name).arg(*inB) : name;
}

QString Change::text() const
{
    return QStringLiteral("%1 %2 in A, %3 in B").arg(what, inA, inB);
}

QString Difference::text() const
{
    QStringList parts;
    for (const Change& change : changes) {
        parts += change.text();
    }
    QString text = subject.text();
    if (place) {
        text += QStringLiteral(" at ") + placeText(*place);
    }
    return parts.isEmpty() ? text : text + QStringLiteral(": ") + parts.join(QStringLiteral("; "));
}

qint64 CaseDifferences::count(DifferenceKind kind, ComparedPart part) const
{
    const auto group = groups_.find({kind, part});
    return group == groups_.end() ? 0 : group->second.count;
}

} // namespace Ovra::GeoTool
