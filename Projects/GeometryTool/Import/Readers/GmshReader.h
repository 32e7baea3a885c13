#pragma once

#include <QString>

namespace Ovra::GeoTool
{

class GmshSession;
class Progress;
struct ImportOptions;

/// \brief Loads a file into Gmsh and sees to it that there is a mesh.
class GmshReader
{
public:
    GmshReader(GmshSession& session, Progress& progress);

    /// \brief Loads and, where there is no mesh, meshes; the dimension of the elements, 2 or 3.
    ///
    /// Afterwards Gmsh's current model holds the geometry and the mesh, of whatever order. Of a
    /// surface of polygons (STL and others) the inside of each closed body is filled. Throws ToolError.
    int read(const ImportOptions& options);

    /// \brief Whether it has been told that faces enclose no volume.
    bool isOpennessTold() const { return isOpennessTold_; }

    /// \brief Whether the mesh was made here and not by the input.
    bool isMeshedHere() const { return isMeshedHere_; }

private:
    void requireReader(const QString& path) const;
    void open(const QString& path);
    void requireAllElements(const QString& path) const;
    void requireFiniteNodes(const QString& path) const;
    int targetDimension(const ImportOptions& options) const;
    void generate(const ImportOptions& options, int dimension);
    void fillIfSurface(const ImportOptions& options);
    void makeSolids(const ImportOptions& options);
    void tellOfThreads(const QString& path) const;

    GmshSession& session_;
    Progress& progress_;
    bool isOpennessTold_ = false;
    bool isMeshedHere_ = false;
};

} // namespace Ovra::GeoTool
