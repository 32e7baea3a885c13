#pragma once

#include "CaseComparison.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

namespace Ovra::GeoTool
{

class CaseFiles;

/// \brief What CaseComparison has found, in words and as JSON; Documentation/Diff.md describes
/// both.
class DiffReport
{
public:
    /// \param a, b, options, differences not owned; must outlive this object
    DiffReport(const CaseFiles& a, const CaseFiles& b, const CaseComparison::Options& options,
               const CaseDifferences& differences);

    /// \brief One line for each difference kept and for the rest of its kind, then a table of their
    ///        numbers; nothing of cases without a difference.
    QByteArray text() const;

    QByteArray json() const;

    /// \brief The array `differences` of the JSON.
    static QJsonArray differencesJson(const CaseDifferences& differences);

private:
    QString tableText() const;
    QJsonObject caseJson(const CaseFiles& files) const;

    const CaseFiles& a_;
    const CaseFiles& b_;
    const CaseComparison::Options& options_;
    const CaseDifferences& differences_;
};

} // namespace Ovra::GeoTool
