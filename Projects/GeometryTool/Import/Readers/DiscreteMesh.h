#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <map>
#include <span>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief A mesh without geometry on its way into Gmsh's current model.
///
/// The elements of one dimension with the same reference become one discrete entity, which the
/// reference numbers. A reference of 0 or below means that none is given; these elements share an
/// entity with a number above all others, from which the import rebuilds the topology.
class DiscreteMesh
{
public:
    /// \brief Appends a node; its number is the count of nodes then.
    void addNode(const std::array<double, 3>& point);

    /// \brief Appends a node with a number of its own. \pre \p number is above 0 and new
    void addNode(std::size_t number, const std::array<double, 3>& point);

    /// \param gmshType Gmsh's number of the kind
    /// \param nodes numbers of nodes in Gmsh's order
    void addElement(int dimension, int reference, int gmshType, std::span<const std::size_t> nodes);

    std::size_t nodeCount() const { return numbers_.size(); }
    bool hasElements() const { return !entities_.empty(); }

    /// \brief Makes entities, nodes and elements in Gmsh. \pre hasElements()
    void load() const;

    /// \brief Makes a physical group in Gmsh of entities of one dimension.
    /// \param references those of entities, above 0. \pre load() has been called
    static void loadGroup(int dimension, const std::vector<int>& references, const QString& name);

private:
    using NodesByType = std::map<int, std::vector<std::size_t>>;

    int tagOf(int dimension, int reference) const;
    void loadNodes(int dimension, int tag) const;

    std::vector<std::size_t> numbers_;
    std::vector<double> coordinates_;
    std::map<std::array<int, 2>, NodesByType> entities_; ///< by dimension and reference, 0 for none
};

} // namespace Ovra::GeoTool
