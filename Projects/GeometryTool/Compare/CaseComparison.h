#pragma once

#include "CaseDifferences.h"

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief Compares two cases entity by entity.
class CaseComparison
{
public:
    struct Options
    {
        double tolerance = 0.0; ///< see Closeness
        bool byPlace = false;   ///< match entities by place rather than by id
        int limit = CaseDifferences::DefaultLimit;
    };

    /// \brief All that is different; Documentation/Diff.md tells what is compared, and how.
    ///
    /// O(n log n) for n entities.
    /// \param a, b read from files, so that all that they name is there
    static CaseDifferences compare(const Geo::Database& a, const Geo::Database& b,
                                   const Options& options, Progress& progress);

    /// \brief What is different of the models alone, by id: of the entities that both have all but their
    /// neighbours. The meshes need not be there.
    /// \param limit as of CaseDifferences
    static CaseDifferences compareModels(const Geo::Database& a, const Geo::Database& b,
                                         int limit = CaseDifferences::DefaultLimit);
};

} // namespace Ovra::GeoTool
