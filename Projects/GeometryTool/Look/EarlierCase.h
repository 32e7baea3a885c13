#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <array>
#include <vector>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief What is kept of the case that another one was made from, to tell what has changed.
class EarlierCase
{
public:
    /// \brief Reads the case \p name; throws what CaseFiles::load() throws.
    EarlierCase(const QString& name, Progress& progress);

    /// \brief What the report's page needs to tell the changes to \p later: `info`, as `info --json`
    /// has it, the `entities` of the earlier case with their `dimension`, `id`, `name` and
    /// `elements`, and the numbers of mesh entities by dimension whose id only one of the cases has,
    /// `meshAdded` and `meshRemoved`.
    QJsonObject changesTo(const Geo::Database& later) const;

private:
    QJsonObject info_;
    QJsonArray entities_;
    std::array<std::vector<int>, 4> meshIds_;
};

} // namespace Ovra::GeoTool
