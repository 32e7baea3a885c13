#pragma once

#include <QList>
#include <QString>

#include <utility>

namespace Ovra::Geo
{
class MeshEntity;
class Model;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Makes a region a shell: a thin sheet with an original face on one side and a new face,
/// the original's twin, on the other.
///
/// The meshes of the two faces must be copies of one another, shifted, so that each mesh vertex has
/// a partner across the sheet. Vertices that lie on both faces have none. None of the entities is
/// owned.
class ShellLinks
{
public:
    ShellLinks(Geo::ModelEntity* region, Geo::ModelEntity* originalFace, Geo::ModelEntity* newFace);

    /// \brief Finds the partner of each mesh vertex: the one nearest to it on the other face after
    /// shifting one mesh by the distance of the means of both.
    /// \return whether each vertex has a partner of its own; if not, mismatch() says why
    bool pair();

    /// \brief Why pair() failed, in words.
    QString mismatch() const { return mismatch_; }

    /// \brief Sets `is_shell` and `original_shell_face` on the region, `new_shell_face` on the
    /// original face, and `shell_vertex` on both vertices of each pair.
    void apply() const;

    /// \brief Sets `is_shell` on all faces from which the solver input must not look across a shell,
    ///        once every shell of \p model has been applied.
    ///
    /// It looks from each mesh face with linked vertices and fewer than two elements. Right are the
    /// two faces of a sheet that lies between two regions with a mesh, since such a face passes to
    /// the region beyond when it is doubled; anything else, such as the narrow sides of a sheet or a
    /// wall that it meets, would find its own element again, or a wrong one.
    static void closeOtherFaces(const Geo::Model& model);

private:
    using Vertices = QList<Geo::MeshEntity*>;

    bool pairNearest(const Vertices& originals, const Vertices& twins);

    Geo::ModelEntity* region_;
    Geo::ModelEntity* originalFace_;
    Geo::ModelEntity* newFace_;
    QList<std::pair<Geo::MeshEntity*, Geo::MeshEntity*>> pairs_;
    QString mismatch_;
};

} // namespace Ovra::GeoTool
