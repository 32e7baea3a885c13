#include "DiscreteMesh.h"

#include <gmsh.h>

namespace Ovra::GeoTool
{

void DiscreteMesh::addNode(const std::array<double, 3>& point)
{
    addNode(nodeCount() + 1, point);
}

void DiscreteMesh::addNode(std::size_t number, const std::array<double, 3>& point)
{
    numbers_.push_back(number);
    coordinates_.insert(coordinates_.end(), point.begin(), point.end());
}

void DiscreteMesh::addElement(int dimension, int reference, int gmshType,
                              std::span<const std::size_t> nodes)
{
    const std::array<int, 2> entity{dimension, reference > 0 ? reference : 0};
    std::vector<std::size_t>& all = entities_[entity][gmshType];
    all.insert(all.end(), nodes.begin(), nodes.end());
}

int DiscreteMesh::tagOf(int dimension, int reference) const
{
    if (reference > 0) {
        return reference;
    }
    const auto next = entities_.lower_bound({dimension + 1, 0});
    return std::prev(next)->first[1] + 1; // the highest reference of the dimension
}

void DiscreteMesh::loadNodes(int dimension, int tag) const
{
    gmsh::model::mesh::addNodes(dimension, tag, numbers_, coordinates_);
}

void DiscreteMesh::load() const
{
    bool first = true;
    for (const auto& [entity, elements] : entities_) {
        const auto [dimension, reference] = entity;
        const int tag = gmsh::model::addDiscreteEntity(dimension, tagOf(dimension, reference));
        if (first) {
            loadNodes(dimension, tag);
        }
        first = false;
        for (const auto& [type, nodes] : elements) {
            gmsh::model::mesh::addElementsByType(tag, type, {}, nodes);
        }
    }
    gmsh::model::mesh::reclassifyNodes();
}

void DiscreteMesh::loadGroup(int dimension, const std::vector<int>& references, const QString& name)
{
    const int group = gmsh::model::addPhysicalGroup(dimension, references);
    gmsh::model::setPhysicalName(dimension, group, name.toStdString());
}

} // namespace Ovra::GeoTool
