#pragma once

#include "ImportOptions.h"
#include "LooseBodies.h"

#include <QString>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class AttributesFile;
class GmshSession;
class Progress;
struct ImportedMesh;

/// \brief Imports a file that Gmsh opens: from the file to a database with model, mesh and
/// attributes.
class GmshImporter
{
public:
    GmshImporter(const ImportOptions& options, Progress& progress);

    /// \brief Fills \p database, which must be empty; \p attributes may be null. Throws ToolError.
    void import(Geo::Database& database, const AttributesFile* attributes);

private:
    void completeTopology(ImportedMesh& mesh) const;
    void warnOfSurfacesInSpace(GmshSession& session) const;
    void scale(ImportedMesh& mesh) const;

    LooseBodies looseBodies(GmshSession& session, const ImportedMesh& mesh,
                            bool isMeshedHere) const;

    ImportOptions options_;
    Progress& progress_;
};

} // namespace Ovra::GeoTool
