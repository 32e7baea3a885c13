#include "Preparation.h"

#include "CaseFindings.h"
#include "CaseVerifier.h"
#include "Database.h"
#include "EntityNames.h"
#include "ExtrudedInterpolation.h"
#include "FluidSolidSplit.h"
#include "Mesh.h"
#include "MeshRenumbering.h"
#include "Model.h"
#include "MovingReplication.h"
#include "PeriodicInterpolation.h"
#include "PeripheralDoubling.h"
#include "PreparationStep.h"
#include "Progress.h"
#include "Solver.h"
#include "ToolError.h"
#include "UnreferencedRemoval.h"
#include "VertexTies.h"
#include "WedgeDecomposition.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using MakeStep = std::function<std::unique_ptr<PreparationStep>(Database&, Progress&)>;

struct Operation
{
    const char* name;
    const char* description;
    bool addsEntities;
    bool changesMesh; ///< ids or vertices that the ties of periodic and extruded faces name
    MakeStep make;
};

template <typename Step>
std::unique_ptr<PreparationStep> make(Database& database, Progress&)
{
    return std::make_unique<Step>(database);
}

/// In the order in which they run.
const std::vector<Operation>& operations()
{
    static const std::vector<Operation> table = {
        {"decompose-wedges", "Cut wedges into tetrahedra", true, true, make<WedgeDecomposition>},
        {"replicate-moving", "Give each moving region a replica that moves", true, true,
         make<MovingReplication>},
        {"split-fluid-solid", "Double the faces between fluid and solid", true, true,
         make<FluidSolidSplit>},
        {"peripheral", "Double the faces between rotating devices and fluid", true, true,
         make<PeripheralDoubling>},
        {"remove-unreferenced", "Remove mesh entities that nothing uses", false, true,
         make<UnreferencedRemoval>},
        {"renumber", "Close the gaps in the ids of the mesh", false, true, make<MeshRenumbering>},
        {"periodic", "Tie the vertices of periodic faces to their partners", false, false,
         [](Database& database, Progress& progress) {
             return std::make_unique<PeriodicInterpolation>(database, progress);
         }},
        {"extruded", "Tie the vertices of extruded faces to their partners", false, false,
         [](Database& database, Progress& progress) {
             return std::make_unique<ExtrudedInterpolation>(database, progress);
         }}};
    return table;
}

/// Far more than memory holds above it is left for the ids of what operations add.
constexpr int highestId = 1000000000;

template <typename Container>
void requireRoomIn(const Container& container, const QString& owner, const QString& remedy)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        int highest = 0;
        for (auto walk = container.iterator(dimension); walk.hasNext();) {
            walk.next();
            highest = std::max(highest, walk.key());
        }
        if (highest > highestId) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("%1 has an id above %2, which leaves too few for new "
                                           "entities%3")
                                .arg(nameOf(owner, dimension, highest))
                                .arg(highestId)
                                .arg(remedy));
        }
    }
}

/// What makes operations follow null or dead pointers, or take numbers for what they are not.
/// Surplus vertices and mesh faces are not among it: operations come to remove them.
constexpr auto refusedKinds = {
    FindingKind::DeadPointer,    FindingKind::LostChild,      FindingKind::BadPoint,
    FindingKind::VertexCount,    FindingKind::RepeatedVertex, FindingKind::NoParent,
    FindingKind::WrongDimension, FindingKind::OneWayLink,     FindingKind::TooManyElements,
    FindingKind::AttributeType,  FindingKind::MissingEntity};

QString lineOf(const CaseFindings& findings, FindingKind kind)
{
    return findings.groups().at(kind).first.front().line();
}

} // namespace

QStringList Preparation::operationNames()
{
    QStringList names;
    for (const Operation& operation : operations()) {
        names += QLatin1String(operation.name);
    }
    return names;
}

QString Preparation::description(const QString& name)
{
    const auto found =
        std::find_if(operations().begin(), operations().end(), [&name](const Operation& operation) {
            return name == QLatin1String(operation.name);
        });
    return found == operations().end() ? QString() : QLatin1String(found->description);
}

Preparation::Preparation(Database& database, Progress& progress)
    : database_(database)
    , progress_(progress)
    , extrusionTolerance_(Solver(&database).extrusionTolerance())
{
}

Preparation::~Preparation() = default;

void Preparation::setExtrusionTolerance(double tolerance)
{
    constexpr double leastTolerance = 1e-12;
    extrusionTolerance_ = std::max(tolerance, leastTolerance);
}

QStringList Preparation::run(const QStringList& names)
{
    releaseTies(names);
    progress_.phase(QStringLiteral("checking"));
    const CaseFindings before =
        CaseVerifier(database_).verify(progress_, CaseVerifier::AllTopics, 1);
    requireSound(before);
    requireRoomForIds(names);

    std::vector<std::pair<const Operation*, std::unique_ptr<PreparationStep>>> steps;
    for (const Operation& operation : operations()) {
        if (names.contains(QLatin1String(operation.name))) {
            steps.emplace_back(&operation, operation.make(database_, progress_));
        }
    }
    for (const auto& [operation, step] : steps) {
        step->requireAtStart();
    }

    QStringList report;
    Solver solver(&database_);
    solver.setExtrusionTolerance(extrusionTolerance_);
    for (const auto& [operation, step] : steps) {
        const QString name = QLatin1String(operation->name);
        progress_.phase(name);
        const QString done = step->run(solver);
        if (!done.isEmpty() && operation->changesMesh) {
            requireNoTies(name);
        }
        report += name + QStringLiteral(": ") + (done.isEmpty() ? releaseText(name) : done);
    }
    requireNoWorse(before);
    progress_.finish();
    return report;
}

/// Ties of an earlier run are renewed as a whole: the library would keep periodic ones as they are,
/// whatever has become of what they name.
void Preparation::releaseTies(const QStringList& names)
{
    const QString periodic = QStringLiteral("periodic");
    const QString extruded = QStringLiteral("extruded");
    if (names.contains(periodic)) {
        released_[periodic] = VertexTies::periodic().clear(*database_.mesh());
    }
    if (names.contains(extruded)) {
        released_[extruded] = VertexTies::extruded().clear(*database_.mesh());
    }
}

/// What is told of an operation that found nothing to do itself.
QString Preparation::releaseText(const QString& operation) const
{
    const qint64 count = released_.value(operation);
    return count == 0
               ? QStringLiteral("nothing to do")
               : QStringLiteral("no face is %1 any more, so that vertices tied by an earlier "
                                "run are released, %2 of them")
                     .arg(operation)
                     .arg(count);
}

void Preparation::requireRoomForIds(const QStringList& names) const
{
    const bool adds =
        std::any_of(operations().begin(), operations().end(), [&names](const Operation& operation) {
            return operation.addsEntities && names.contains(QLatin1String(operation.name));
        });
    if (!adds) {
        return;
    }
    requireRoomIn(*database_.model(), QStringLiteral("model"), QString());
    requireRoomIn(*database_.mesh(), QStringLiteral("mesh"),
                  QStringLiteral("; give --renumber first, by itself"));
}

void Preparation::requireSound(const CaseFindings& findings) const
{
    for (const FindingKind kind : refusedKinds) {
        if (findings.count(kind) > 0) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("the case is unsound, see ovrageo verify: %1")
                                .arg(lineOf(findings, kind)));
        }
    }
}

void Preparation::requireNoTies(const QString& operation) const
{
    const auto refuse = [&operation](const char* kind) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("vertices are tied to a partner face already, which %1 "
                                       "makes stale; --%2 must be given too, to tie them anew")
                            .arg(operation, QLatin1String(kind)));
    };
    if (VertexTies::periodic().count(*database_.mesh()) > 0) {
        refuse("periodic");
    }
    if (VertexTies::extruded().count(*database_.mesh()) > 0) {
        refuse("extruded");
    }
}

/// The last guard before the case is written: an error that was not there before is not let out.
void Preparation::requireNoWorse(const CaseFindings& before) const
{
    progress_.phase(QStringLiteral("checking the result"));
    const CaseFindings after =
        CaseVerifier(database_).verify(progress_, CaseVerifier::AllTopics, 1);
    for (const auto& [kind, group] : after.groups()) {
        if (findingSeverity(kind) == Severity::Error && group.count > before.count(kind)) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("the case would come out unsound, so nothing is "
                                           "written: %1")
                                .arg(lineOf(after, kind)));
        }
    }
}

} // namespace Ovra::GeoTool
