#include "FindingKind.h"

namespace Ovra::GeoTool
{

namespace
{

struct Row
{
    FindingKind kind;
    const char* name;
    Severity severity;
};

const std::vector<Row>& table()
{
    constexpr auto error = Severity::Error;
    constexpr auto warning = Severity::Warning;
    static const std::vector<Row> rows = {
        {FindingKind::DeadPointer, "dead-pointer", error},
        {FindingKind::LostChild, "lost-child", error},
        {FindingKind::BadPoint, "bad-point", error},
        {FindingKind::VertexCount, "vertex-count", error},
        {FindingKind::RepeatedVertex, "repeated-vertex", error},
        {FindingKind::DegenerateElement, "degenerate-element", error},
        {FindingKind::InvertedElement, "inverted-element", error},
        {FindingKind::TwistedElement, "twisted-element", warning},
        {FindingKind::DuplicateElement, "duplicate-element", error},
        {FindingKind::NoParent, "no-parent", error},
        {FindingKind::WrongDimension, "wrong-dimension", error},
        {FindingKind::UnusedVertex, "unused-vertex", error},
        {FindingKind::EdgeWithoutFace, "edge-without-face", warning},
        {FindingKind::NoElements, "no-elements", warning},
        {FindingKind::OneWayLink, "one-way-link", error},
        {FindingKind::RepeatedLink, "repeated-link", warning},
        {FindingKind::TooManyRegions, "too-many-regions", warning},
        {FindingKind::TooManyElements, "too-many-elements", error},
        {FindingKind::FaceWithoutElement, "face-without-element", error},
        {FindingKind::NoSide, "no-side", error},
        {FindingKind::OverlappingElements, "overlapping-elements", error},
        {FindingKind::MixedOrientation, "mixed-orientation", warning},
        {FindingKind::MissingNeighbour, "missing-neighbour", warning},
        {FindingKind::ForeignElement, "foreign-element", warning},
        {FindingKind::UncoveredSide, "uncovered-side", warning},
        {FindingKind::UnknownAttribute, "unknown-attribute", warning},
        {FindingKind::AttributeType, "attribute-type", error},
        {FindingKind::AttributeValue, "attribute-value", error},
        {FindingKind::UnknownMaterial, "unknown-material", warning},
        {FindingKind::MissingEntity, "missing-entity", error},
        {FindingKind::UnansweredLink, "unanswered-link", error},
        {FindingKind::PeriodicPair, "periodic-pair", error},
        {FindingKind::ExtrudedPair, "extruded-pair", error},
        {FindingKind::MissingLink, "missing-link", error},
        {FindingKind::StrayLink, "stray-link", error},
        {FindingKind::BadWeights, "bad-weights", error},
        {FindingKind::Replica, "replica", error},
        {FindingKind::RotorSide, "rotor-side", error},
    };
    return rows;
}

const Row& rowOf(FindingKind kind)
{
    return table().at(static_cast<std::size_t>(kind));
}

} // namespace

QString findingName(FindingKind kind)
{
    return QLatin1String(rowOf(kind).name);
}

Severity findingSeverity(FindingKind kind)
{
    return rowOf(kind).severity;
}

QString severityName(Severity severity)
{
    return severity == Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

const std::vector<FindingKind>& allFindingKinds()
{
    static const std::vector<FindingKind> kinds = [] {
        std::vector<FindingKind> all;
        for (const Row& row : table()) {
            all.push_back(row.kind);
        }
        return all;
    }();
    return kinds;
}

} // namespace Ovra::GeoTool
