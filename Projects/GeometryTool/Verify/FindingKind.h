#pragma once

#include <QString>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief What can be wrong with a case, in the order in which CaseVerifier reports it.
///
/// Documentation/Verify.md tells each kind's rule.
enum class FindingKind
{
    DeadPointer,
    LostChild,
    BadPoint,
    VertexCount,
    RepeatedVertex,
    DegenerateElement,
    InvertedElement,
    TwistedElement,
    DuplicateElement,
    NoParent,
    WrongDimension,
    UnusedVertex,
    EdgeWithoutFace,
    NoElements,
    OneWayLink,
    RepeatedLink,
    TooManyRegions,
    TooManyElements,
    FaceWithoutElement,
    NoSide,
    OverlappingElements,
    MixedOrientation,
    MissingNeighbour,
    ForeignElement,
    UncoveredSide,
    UnknownAttribute,
    AttributeType,
    AttributeValue,
    UnknownMaterial,
    MissingEntity,
    UnansweredLink,
    PeriodicPair,
    ExtrudedPair,
    MissingLink,
    StrayLink,
    BadWeights,
    Replica,
    RotorSide
};

/// \brief Whether a case with such a finding is unsound, or only deserves a look.
enum class Severity
{
    Error,
    Warning
};

/// \brief Name of a kind in texts and JSON, such as "repeated-vertex"; scripts rely on it.
QString findingName(FindingKind kind);

Severity findingSeverity(FindingKind kind);

/// \brief "error" or "warning".
QString severityName(Severity severity);

/// \brief All kinds in their order.
const std::vector<FindingKind>& allFindingKinds();

} // namespace Ovra::GeoTool
