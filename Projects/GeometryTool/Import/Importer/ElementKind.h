#pragma once

#include <QString>

namespace Ovra::GeoTool
{

/// \brief What Gmsh tells of one of its types of elements.
struct ElementKind
{
    QString name;
    int dimension = 0;
    int order = 0;
    int nodes = 0;
    int corners = 0;

    static ElementKind of(int gmshType);

    /// \brief Whether the database has elements of this kind, with or without more nodes.
    ///
    /// Gmsh has kinds of no nodes at all under the names of others, "Triangle Xfem" for instance.
    bool isKnown() const;

private:
    bool hasCorners() const;
};

} // namespace Ovra::GeoTool
