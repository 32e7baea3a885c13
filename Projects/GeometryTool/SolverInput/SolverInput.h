#pragma once

#include <QString>
#include <QStringList>

class QTextStream;

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief The text file that the flow solver reads: a selection of sections in a fixed order.
///
/// Documentation/SolverInput.md describes the file. The plain and the labelled form have the same
/// section names; a section is in its place whether the case has anything to say in it or not.
class SolverInput
{
public:
    /// \brief The names of all sections, in the order of the file.
    static QStringList sectionNames();

    /// \brief Chooses among \p names, in the order of the file; throws ToolError Usage for unknown
    /// ones.
    void setSections(const QStringList& names);

    /// \brief Multiplies all coordinates in the file; the database keeps its own.
    void setScale(double scale) { scale_ = scale; }

    /// \brief Writes the topics periodic, extrusion, moving and rotating in their labelled form.
    void setLabelled(bool labelled) { labelled_ = labelled; }

    /// \brief Writes the sections at the stream's position, after looking whether \p database is
    /// fit.
    ///
    /// Throws ToolError Unsuitable, before anything is written, if an entity lacks what a chosen
    /// section needs of it; see SolverInputCheck. The caller looks after the stream's status.
    void write(Geo::Database& database, QTextStream& stream, Progress& progress) const;

private:
    QStringList sections_ = sectionNames();
    double scale_ = 1.0;
    bool labelled_ = false;
};

} // namespace Ovra::GeoTool
