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
    constexpr auto Error = Severity::Error;
    constexpr auto Warning = Severity::Warning;
    static const std::vector<Row> rows = {
        {FindingKind::DeadPointer, "dead-pointer", Error},
        {FindingKind::LostChild, "lost-child", Error},
        {FindingKind::BadPoint, "bad-point", Error},
        {FindingKind::VertexCount, "vertex-count", Error},
        {FindingKind::RepeatedVertex, "repeated-vertex", Error},
        {FindingKind::DegenerateElement, "degenerate-element", Error},
        {FindingKind::InvertedElement, "inverted-element", Error},
        {FindingKind::TwistedElement, "twisted-element", Warning},
        {FindingKind::DuplicateElement, "duplicate-element", Error},
        {FindingKind::NoParent, "no-parent", Error},
        {FindingKind::WrongDimension, "wrong-dimension", Error},
        {FindingKind::UnusedVertex, "unused-vertex", Error},
        {FindingKind::EdgeWithoutFace, "edge-without-face", Warning},
        {FindingKind::OneWayLink, "one-way-link", Error},
        {FindingKind::RepeatedLink, "repeated-link", Warning},
        {FindingKind::TooManyRegions, "too-many-regions", Warning},
        {FindingKind::TooManyElements, "too-many-elements", Error},
        {FindingKind::FaceWithoutElement, "face-without-element", Error},
        {FindingKind::NoSide, "no-side", Error},
        {FindingKind::OverlappingElements, "overlapping-elements", Error},
        {FindingKind::MixedOrientation, "mixed-orientation", Warning},
        {FindingKind::MissingNeighbour, "missing-neighbour", Warning},
        {FindingKind::ForeignElement, "foreign-element", Warning},
        {FindingKind::UncoveredSide, "uncovered-side", Warning},
        {FindingKind::UnknownAttribute, "unknown-attribute", Warning},
        {FindingKind::AttributeType, "attribute-type", Error},
        {FindingKind::AttributeValue, "attribute-value", Error},
        {FindingKind::UnknownMaterial, "unknown-material", Warning},
        {FindingKind::MissingEntity, "missing-entity", Error},
        {FindingKind::UnansweredLink, "unanswered-link", Error},
        {FindingKind::PeriodicPair, "periodic-pair", Error},
        {FindingKind::ExtrudedPair, "extruded-pair", Error},
        {FindingKind::MissingLink, "missing-link", Error},
        {FindingKind::StrayLink, "stray-link", Error},
        {FindingKind::BadWeights, "bad-weights", Error},
        {FindingKind::Replica, "replica", Error},
        {FindingKind::RotorSide, "rotor-side", Error},
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
        for (const Row& row : table())
            all.push_back(row.kind);
        return all;
    }();
    return kinds;
}

} // namespace Ovra::GeoTool
