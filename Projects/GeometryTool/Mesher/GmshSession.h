#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace Ovra::GeoTool
{

/// \brief Gmsh, started for the life of this object; there is one at a time.
///
/// Gmsh reports in three ways, by values of several types that it throws, by its log, and by what
/// its geometry kernels print. A session turns the first into ToolError, keeps the second for
/// warnings(), and holds back the third. User settings of Gmsh are not read, so that a case does
/// not hang on who imports it.
class GmshSession
{
public:
    GmshSession();
    ~GmshSession();
    GmshSession(const GmshSession&) = delete;
    GmshSession& operator=(const GmshSession&) = delete;

    /// \brief Runs \p action, which calls Gmsh, with standard output and standard error silent.
    ///
    /// Throws ToolError with \p what, a colon and Gmsh's own words when Gmsh fails; \p isInput says
    /// whether it is to be blamed on the input file (InputDamaged) or not (Unsuitable).
    void run(const QString& what, const std::function<void()>& action, bool isInput = true);

    /// \brief Gmsh's warnings since the last call, each once.
    QStringList takeWarnings();

    /// \brief Whether Gmsh was built with \p feature, "Med" for instance.
    static bool hasFeature(const QString& feature);
};

} // namespace Ovra::GeoTool
