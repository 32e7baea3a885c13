#pragma once

#include "EntityName.h"
#include "FindingKind.h"

#include <QString>

#include <functional>
#include <optional>

namespace Ovra::GeoTool
{

/// \brief Where the checks of a case report to.
///
/// CaseFindings gathers what it is told; SolverInputCheck ends at the first error.
class FindingSink
{
public:
    /// \brief Makes the text only when it is going to be shown: a broken mesh may have a million
    /// findings.
    using Text = std::function<QString()>;

    virtual ~FindingSink() = default;

    /// \brief Takes a finding in.
    /// \param entity which entity is wrong
    /// \param place its centroid; none where its vertices cannot be trusted
    /// \param text what is wrong, what was expected and why, to follow the entity's name: "names
    /// mesh vertex 3 twice; ..."
    virtual void add(FindingKind kind, const EntityName& entity,
                     const std::optional<Geo::Vector>& place, const Text& text) = 0;

    /// \brief The same with the place read from a sound entity.
    void add(FindingKind kind, const Geo::ModelEntity& entity, const Text& text);
    void add(FindingKind kind, const Geo::MeshEntity& entity, const Text& text);

protected:
    FindingSink() = default;
    FindingSink(const FindingSink&) = default;
    FindingSink& operator=(const FindingSink&) = default;
};

} // namespace Ovra::GeoTool
