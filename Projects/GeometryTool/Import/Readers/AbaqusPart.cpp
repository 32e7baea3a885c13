#include "AbaqusPart.h"

#include "AbaqusPlacement.h"

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

bool AbaqusPart::addElement(int number, const AbaqusElementType& type)
{
    if (elementPositions_.contains(number)) {
        return false;
    }
    elementPositions_.insert(number, static_cast<int>(elements.size()));
    elements.push_back({number, type, elementNodes.size()});
    return true;
}

int AbaqusPart::missingNodes() const
{
    return elements.empty() ? 0
                            : elements.back().type.nodeCount -
                                  static_cast<int>(elementNodes.size() - elements.back().firstNode);
}

void AbaqusPart::place(const AbaqusPlacement& placement)
{
    for (Geo::Vector& point : points) {
        point = placement.place(point);
    }
}

} // namespace Ovra::GeoTool
