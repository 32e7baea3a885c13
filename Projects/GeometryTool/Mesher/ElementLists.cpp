#include "ElementLists.h"

#include <gmsh.h>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Zeros, one for each element.
std::vector<std::size_t> roomFor(int gmshType, int entity)
{
    std::vector<std::size_t> elements;
    std::vector<std::size_t> nodes; // for which there is no telling how many there will be
    gmsh::model::mesh::preallocateElementsByType(gmshType, true, false, elements, nodes, entity);
    return elements;
}

} // namespace

std::size_t ElementLists::count(int gmshType, int entity)
{
    return roomFor(gmshType, entity).size();
}

std::vector<std::size_t> ElementLists::tags(int gmshType, int entity)
{
    std::vector<std::size_t> elements = roomFor(gmshType, entity);
    std::vector<std::size_t> nodes;
    gmsh::model::mesh::getElementsByType(gmshType, elements, nodes, entity);
    return elements;
}

} // namespace Ovra::GeoTool
