#pragma once

#include "AbaqusElementType.h"
#include "AbaqusLine.h"
#include "AbaqusSets.h"
#include "Vector.h"

#include <QHash>
#include <QList>

#include <vector>

namespace Ovra::GeoTool
{

class AbaqusPlacement;

/// \brief Nodes, elements and sets that are numbered together: a part, an instance of one, or what
/// stands outside of all parts.
class AbaqusPart
{
public:
    struct Element
    {
        int number = 0;
        AbaqusElementType type;
        std::size_t firstNode = 0; ///< in elementNodes
        AbaqusLine line;           ///< where it begins
    };

    /// \brief The material that a section gives to a set.
    struct Section
    {
        AbaqusSets::Reference set;
        AbaqusLabel material;
    };

    /// \return false if the number stands for another point already
    bool addNode(int number, const Geo::Vector& point);

    /// \brief Adds an element whose nodes are then appended to elementNodes.
    /// \return false if the number is taken
    bool addElement(int number, const AbaqusElementType& type, const AbaqusLine& line);

    /// \brief How many nodes the last element still lacks.
    int missingNodes() const;

    /// \brief Moves all nodes to their place in the assembly.
    void place(const AbaqusPlacement& placement);

    /// \brief The first node of an element that is not there; 0 if all are.
    int unknownNodeOf(const Element& element) const;

    /// \brief Position in elements of the one with \p number; -1 if there is none.
    int positionOf(int number) const { return elementPositions_.value(number, -1); }

    AbaqusLabel name; ///< empty outside of parts
    std::vector<int> nodeNumbers;
    std::vector<Geo::Vector> points; ///< beside nodeNumbers
    std::vector<Element> elements;
    std::vector<int> elementNodes; ///< numbers of nodes, element by element
    AbaqusSets elementSets;
    AbaqusSets nodeSets;
    QList<Section> sections;

private:
    QHash<int, int> nodePositions_;
    QHash<int, int> elementPositions_;
};

} // namespace Ovra::GeoTool
