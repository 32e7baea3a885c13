#pragma once

#include "FindingSink.h"

#include <map>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief One thing that is wrong, and where.
struct Finding
{
    FindingKind kind;
    EntityName entity;
    std::optional<Geo::Vector> place; ///< the entity's centroid
    QString text;                     ///< behind the entity's name

    /// \brief "mesh region 5 at (0.25, 0.25, 0.25) names mesh vertex 3 twice; ..."
    QString line() const;
};

/// \brief All that CaseVerifier has found: how often each kind, and the first of each.
class CaseFindings : public FindingSink
{
public:
    struct Group
    {
        qint64 count = 0;
        std::vector<Finding> first; ///< at most as many as the limit, in order of their discovery
    };

    static constexpr int DefaultLimit = 10;

    /// \param limit how many findings of a kind are kept; of the rest only the number
    explicit CaseFindings(int limit = DefaultLimit)
        : limit_(limit)
    {
    }

    using FindingSink::add;
    void add(FindingKind kind, const EntityName& entity, const std::optional<Geo::Vector>& place,
             const Text& text) override;

    /// \brief True if there is no error; warnings do not count.
    bool isSound() const { return errorCount() == 0; }
    qint64 errorCount() const;
    qint64 warningCount() const;
    qint64 count(FindingKind kind) const;

    /// \brief The kinds that were found, in the order of FindingKind.
    const std::map<FindingKind, Group>& groups() const { return groups_; }

    /// \brief The first error in the order of the kinds as a line for a message; empty if sound.
    QString firstError() const;

private:
    qint64 count(Severity severity) const;

    int limit_;
    std::map<FindingKind, Group> groups_;
};

} // namespace Ovra::GeoTool
