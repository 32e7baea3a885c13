#pragma once

#include "CaseFiles.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <array>
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
    /// has it, the `dimensions` that the page lists of both cases, the `entities` of these of the earlier case with their `dimension`, `id`, `name` and
    /// `elements`, the numbers of mesh entities by dimension whose id only one of the cases has,
    /// `meshAdded` and `meshRemoved`, and what is different of the model, `differences`, as
    /// `diff --json` has it, at most 100 of each kind and part.
    QJsonObject changesTo(const Geo::Database& later) const;

private:
    CaseDatabase database_; ///< without its mesh
    QJsonObject info_;
    QJsonArray entities_;
    std::array<std::vector<int>, 4> meshIds_;
};

} // namespace Ovra::GeoTool
