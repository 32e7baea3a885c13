#pragma once

#include "PageBudget.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class CaseFiles;
class Progress;

/// \brief The one page that tells a colleague of a case: what `info` and `verify` have to say,
/// tables, histograms, what a preparation has changed, and the surfaces to turn about.
///
/// Documentation/Report.md describes it. The same case gives the same bytes.
class Report
{
public:
    /// \brief Takes in what stands in PageTemplate; throws ToolError where there is none.
    explicit Report(const PageBudget& budget = {});

    /// \param files those that \p database has been loaded from
    /// \param changes of EarlierCase, if there is one
    QByteArray page(const CaseFiles& files, const Geo::Database& database,
                    const std::optional<QJsonObject>& changes, Progress& progress) const;

private:
    QJsonObject tables(const QJsonObject& data, const QJsonArray& bodies,
                       const QJsonArray& boundaries) const;

    PageBudget budget_;
    QByteArray template_;
};

} // namespace Ovra::GeoTool
