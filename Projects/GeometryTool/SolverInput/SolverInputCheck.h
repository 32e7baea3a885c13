#pragma once

#include "CaseView.h"

#include <QStringList>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

/// \brief Looks whether a case holds what the writer of the solver input takes for granted.
///
/// The writer follows ids in attributes without a test and stops the process where a rotor face
/// lacks its partners. The checks are those of CaseVerifier, as far as the sections need them.
class SolverInputCheck
{
public:
    /// \param database not owned; must outlive this object
    explicit SolverInputCheck(const Geo::Database& database);

    /// \brief Checks what the sections of these names need.
    ///
    /// Throws ToolError Unsuitable, which names the first entity of a check, in ascending id, that
    /// would lead the writer astray.
    void require(const QStringList& sections) const;

private:
    void checkElements() const;
    void checkSurfaceConnectivity() const;
    void checkPeriodic() const;
    void requireTies() const;
    void checkExtrusion() const;
    void checkMoving() const;
    void checkRotating() const;
    void checkShapes(const Geo::ModelEntity& face) const;

    CaseView view_;
};

} // namespace Ovra::GeoTool
