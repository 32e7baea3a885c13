#pragma once

#include <QString>

namespace Ovra::GeoTool
{

class GmshSession;
class Progress;
struct ImportOptions;

/// \brief What is done to the bodies of Gmsh's current model ahead of meshing, where the user asks
/// for it: they are put into a box of air, and joined.
class BodyArrangement
{
public:
    BodyArrangement(GmshSession& session, Progress& progress);

    /// \brief Does what \p options ask for; throws ToolError where that cannot be done.
    /// \param hasMesh whether the input brings a mesh of its own
    void arrange(const ImportOptions& options, bool hasMesh);

private:
    void requireBodies(const ImportOptions& options, bool hasMesh) const;

    GmshSession& session_;
    Progress& progress_;
};

} // namespace Ovra::GeoTool
