#pragma once

#include "LooseBodies.h"

#include <optional>
#include <set>
#include <utility>

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief Looks for bodies that touch or overlap without being joined: by the geometry kernel where
/// it knows the bodies in Gmsh's current model, and by their mesh elsewhere.
class LooseBodySearch
{
public:
    /// \param mesh not owned
    /// \param tolerance the only one, if the user gives one
    /// \param isMeshedHere whether the input left meshing to the import
    LooseBodySearch(const ImportedMesh& mesh, std::optional<double> tolerance, bool isMeshedHere);

    /// \brief Searches; what Gmsh throws passes through. Gmsh's model is to be thrown away then, as
    /// joining is tried on it.
    LooseBodies search() const;

private:
    void searchGeometry(LooseBodies& found) const;
    void searchMesh(LooseBodies& found) const;
    std::set<std::pair<int, int>> nearFaces() const;
    void dropExplained(LooseBodies& found) const;
    std::pair<int, int> bodiesOf(const BodyContact& contact) const;
    int bodyOf(int face) const;
    static double tried(const LooseBodies& found);

    const ImportedMesh& mesh_;
    std::optional<double> tolerance_;
    bool isMeshedHere_;
    int dimension_; ///< of the bodies
};

} // namespace Ovra::GeoTool
