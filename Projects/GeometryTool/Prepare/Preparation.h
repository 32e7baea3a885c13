#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class CaseFindings;
class PreparationStep;
class Progress;

/// \brief Brings a case into the shape that the flow solver needs: the operations of the library in
///        the one order in which they do not get into each other's way.
///
/// Documentation/Preparation.md tells the order and why it is so. The case in memory is in no
/// defined state after a refusal: throw it away.
class Preparation
{
public:
    /// \brief Names of the operations in the order in which they run; the options of `prepare`.
    static QStringList operationNames();

    /// \brief What the operation of that name does, for the help.
    static QString description(const QString& name);

    /// \param database a case just loaded; not owned
    Preparation(Geo::Database& database, Progress& progress);
    ~Preparation();
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;

    /// \brief Tolerance of the weights on extruded faces, see Solver::setExtrusionTolerance().
    ///
    /// Less than 1e-12 counts as that: without any tolerance the library has no weights for a vertex
    /// that lies exactly on a side of the partner's mesh faces.
    void setExtrusionTolerance(double tolerance);

    /// \brief Runs the operations of these names, in its own order, and returns a line for each.
    ///
    /// Throws ToolError Unsuitable if the case is unsound, if an operation cannot be carried out on
    /// it, or if it would come out unsound.
    QStringList run(const QStringList& operations);

private:
    void releaseTies(const QStringList& operations);
    QString releaseText(const QString& operation) const;
    void requireRoomForIds(const QStringList& operations) const;
    void requireSound(const CaseFindings& findings) const;
    void requireNoWorse(const CaseFindings& before) const;
    void requireNoTies(const QString& operation) const;

    Geo::Database& database_;
    Progress& progress_;
    double extrusionTolerance_;
    QMap<QString, qint64> released_; ///< by operation, vertices that were tied by an earlier run
};

} // namespace Ovra::GeoTool
