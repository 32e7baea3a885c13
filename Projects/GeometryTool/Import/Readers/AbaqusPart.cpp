#include "AbaqusPart.h"

#include "AbaqusPlacement.h"

#include <algorithm>

namespace Ovra::GeoTool
{

bool AbaqusPart::addNode(int number, const Geo::Vector& point)
{
    const int position = nodePositions_.value(number, -1);
    if (position >= 0) {
        return points[static_cast<std::size_t>(position)] == point;
    }
    nodePositions_.insert(number, static_cast<int>(points.size()));
    nodeNumbers.push_back(number);
    points.push_back(point);
    return true;
}

bool AbaqusPart::addElement(int number, const AbaqusElementType& type, const AbaqusLine& line)
{
    if (elementPositions_.contains(number)) {
        return false;
    }
    elementPositions_.insert(number, static_cast<int>(elements.size()));
    elements.push_back({number, type, elementNodes.size(), line});
    return true;
}

int AbaqusPart::missingNodes() const
{
    return elements.empty() ? 0
                            : elements.back().type.nodeCount -
                                  static_cast<int>(elementNodes.size() - elements.back().firstNode);
}

int AbaqusPart::unknownNodeOf(const Element& element) const
{
    const auto first = elementNodes.begin() + static_cast<std::ptrdiff_t>(element.firstNode);
    const auto end = first + element.type.nodeCount;
    const auto found =
        std::find_if(first, end, [this](int node) { return !nodePositions_.contains(node); });
    return found == end ? 0 : *found;
}

void AbaqusPart::place(const AbaqusPlacement& placement)
{
    for (Geo::Vector& point : points) {
        point = placement.place(point);
    }
}

} // namespace Ovra::GeoTool
