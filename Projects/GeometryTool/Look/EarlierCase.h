#pragma once

#include "CaseFiles.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <array>
#include <map>
#include <vector>

namespace Ovra::GeoTool
{

class Progress;

/// \brief What is kept of the case that another one was made from, to tell what has changed: all of its
/// model, and of its mesh the ids.
class EarlierCase
{
public:
    /// \brief Reads the case \p name; throws what CaseFiles::load() throws.
    EarlierCase(const QString& name, Progress& progress);

    /// \brief What the report's page needs to tell the changes to \p later: `info`, as `info --json`
    /// has it, the `dimensions` that the page lists of both cases, the entities of these that are new,
    /// gone or have other elements, `changed`, with their `dimension`, `id`, `name` and numbers of
    /// elements `before` and `after` (null where they are not there), the numbers of mesh entities by
    /// dimension whose id only one of the cases has, `meshAdded` and `meshRemoved`, and what is
    /// different of the model, `differences`, as `diff --json` has it, at most 100 of each kind and part.
    QJsonObject changesTo(const Geo::Database& later) const;

private:
    QJsonArray changedEntities(const Geo::Model& later, const std::vector<int>& dimensions) const;

    CaseDatabase database_; ///< without its mesh
    QJsonObject info_;
    std::array<std::map<int, int>, 4> elements_; ///< of model entities, by dimension and id
    std::array<std::vector<int>, 4> meshIds_;
};

} // namespace Ovra::GeoTool
