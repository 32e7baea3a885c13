#pragma once

#include "Box.h"

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Gmsh's current model as its OpenCASCADE kernel knows it: facts about the bodies, which are
/// the entities of the highest dimension.
class CadModel
{
public:
    /// \brief Whether the kernel knows all bodies, and there are any.
    static bool isOfKernel();

    /// \brief Whether there are curves, surfaces or volumes of any geometry, beside those of a mesh
    /// alone.
    static bool hasShapes();

    /// \brief Whether there are such, and no curves, surfaces or volumes of a mesh alone.
    static bool hasShapesOnly();

    /// \brief 3, or 2 for a model without volumes.
    static int bodyDimension();

    /// \brief Numbers of all entities of a dimension, ascending.
    static std::vector<int> entities(int dimension);

    /// \brief Length, area or volume of an entity.
    static double measure(int dimension, int tag);

    /// \brief Box of an entity, which the kernel bounds loosely where it is curved.
    static Geo::Box box(int dimension, int tag);

    /// \brief Box of all bodies.
    static Geo::Box box();

    /// \brief Gaps and overlaps up to this length count as contact: 1e-5 of the diagonal of the box
    /// of all bodies, or a tenth of the shortest edge if that is less.
    ///
    /// Edges below 1e-7 of the diagonal are taken for scars of the export and not looked at.
    static double contactTolerance();

    /// \brief "region 2 (chip)", "face 7"; the name is that of the first physical group, or else the
    /// entity's own.
    static QString described(int dimension, int tag);

    /// \brief The entity's own name, as the input gives it.
    static QString label(int dimension, int tag);

    /// \brief The names of its physical groups, by ascending number, and the last component of its
    /// own.
    static QStringList namesOf(int dimension, int tag);

    using Entities = std::vector<std::pair<int, int>>; ///< dimensions and numbers

    struct Fragments
    {
        Entities pieces;               ///< that are new
        std::vector<Entities> origins; ///< the pieces of each object, then of each tool
    };

    /// \brief Cuts entities along one another; what is not cut is its own piece. Nothing is removed,
    /// and the model does not show the pieces until it is synchronized.
    static Fragments fragment(const Entities& objects, const Entities& tools, double tolerance);

    /// \brief Length, area or volume that an entity has in common with each of others of its
    /// dimension, 0 where the kernel fails; the model stays as it is.
    static std::vector<double> commonSizes(int dimension, int tag, const std::vector<int>& others,
                                           double tolerance);

    /// \brief Removes entities from the kernel, and all that bounds nothing else then; those that are
    /// gone already are passed over.
    static void remove(const Entities& entities);
};

} // namespace Ovra::GeoTool
