#pragma once

#include "CaseFindings.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QStringList>

#include <utility>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

/// \brief What CaseVerifier has found, in words and as JSON; Documentation/Verify.md describes
/// both.
class VerifyReport
{
public:
    /// \param name of the case
    /// \param database, findings not owned; must outlive this object
    VerifyReport(const QString& name, const Geo::Database& database, const CaseFindings& findings);

    /// \brief "wing is unsound: 12 errors, 1 warning".
    QString summary() const;

    /// \brief One line for each finding kept and for the rest of its kind, errors before warnings,
    /// then the summary. Of a model entity that has a twin the line says so.
    QByteArray text() const;

    QByteArray json() const;

private:
    QString lineOf(const Finding& finding) const;
    QString groupText(FindingKind kind, const CaseFindings::Group& group) const;
    QJsonObject findingJson(const Finding& finding) const;
    QJsonObject groupJson(FindingKind kind, const CaseFindings::Group& group) const;

    QString name_;
    const Geo::Database& database_;
    const CaseFindings& findings_;
    QHash<std::pair<int, int>, QStringList> twinNotes_; ///< by dimension and id
};

} // namespace Ovra::GeoTool
