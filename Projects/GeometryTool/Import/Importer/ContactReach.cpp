#include "ContactReach.h"

#include "ElementShape.h"
#include "ImportedMesh.h"

#include <algorithm>
#include <limits>

namespace Ovra::GeoTool
{

namespace
{

double shortestEdge(const ImportedMesh& mesh, const ImportedElement& element)
{
    std::vector<std::array<int, 2>> edges;
    ElementShape::edges(element, mesh.elementDimension, edges);
    double shortest = std::numeric_limits<double>::max();
    for (const auto& [from, to] : edges) {
        const Geo::Vector along = mesh.nodes[static_cast<std::size_t>(to)].point -
                                  mesh.nodes[static_cast<std::size_t>(from)].point;
        shortest = std::min(shortest, along.length());
    }
    return shortest;
}

} // namespace

ContactReach::ContactReach(const ImportedMesh& mesh, double share)
{
    const auto& bodies = mesh.entitiesOf(mesh.elementDimension);
    std::vector<double> sums(bodies.size(), 0);
    std::vector<double> counts(bodies.size(), 0);
    for (const ImportedElement& element : mesh.elementsOf(mesh.elementDimension)) {
        sums[static_cast<std::size_t>(element.entity)] += shortestEdge(mesh, element);
        counts[static_cast<std::size_t>(element.entity)] += 1;
    }
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        reaches_[bodies[i].id] = counts[i] > 0 ? share * sums[i] / counts[i] : 0;
    }
}

ContactReach ContactReach::everywhere(const ImportedMesh& mesh, double distance)
{
    ContactReach reach;
    for (const ImportedEntity& body : mesh.entitiesOf(mesh.elementDimension)) {
        reach.reaches_[body.id] = distance;
    }
    return reach;
}

double ContactReach::of(int body) const
{
    const auto found = reaches_.find(body);
    return found == reaches_.end() ? 0 : found->second;
}

double ContactReach::most() const
{
    double most = 0;
    for (const auto& entry : reaches_) {
        most = std::max(most, entry.second);
    }
    return most;
}

double ContactReach::between(int body, int other) const
{
    return std::min(of(body), of(other));
}

} // namespace Ovra::GeoTool
