#include "ElementKind.h"

#include "ElementTopology.h"

#include <algorithm>
#include <gmsh.h>
#include <iterator>
#include <string>
#include <vector>

namespace Ovra::GeoTool
{

ElementKind ElementKind::of(int gmshType)
{
    ElementKind kind;
    std::string name;
    std::vector<double> local;
    try {
        gmsh::model::mesh::getElementProperties(gmshType, name, kind.dimension, kind.order,
                                                kind.nodes, local, kind.corners);
    } catch (...) {
        name = "type " + std::to_string(gmshType); // Gmsh itself cannot describe some kinds
    }
    kind.name = QString::fromStdString(name);
    return kind;
}

bool ElementKind::isKnown() const
{
    static const char* const families[] = {"Point",       "Line",    "Triangle", "Quadrilateral",
                                           "Tetrahedron", "Pyramid", "Prism",    "Hexahedron"};
    return hasCorners() &&
           std::any_of(std::begin(families), std::end(families), [this](const char* family) {
               return name.startsWith(QLatin1String(family));
           });
}

/// \brief Whether an element of as many corners is one, and has a node at each of them.
bool ElementKind::hasCorners() const
{
    return nodes >= corners &&
           (dimension < 2 ? corners == dimension + 1
                          : ElementTopology::find(dimension, corners) != nullptr);
}

} // namespace Ovra::GeoTool
