#include "BodyBoxes.h"

#include "ImportedMesh.h"

namespace Ovra::GeoTool
{

using Geo::Box;
using Geo::Vector;

namespace
{

std::vector<Box> boxesOf(const ImportedMesh& mesh, double margin)
{
    const Vector by(margin, margin, margin);
    std::vector<Box> boxes;
    for (const ImportedEntity& body : mesh.entitiesOf(mesh.elementDimension)) {
        const Box& box = body.geometry.box;
        boxes.emplace_back(box.minimum() - by, box.maximum() + by);
    }
    return boxes;
}

} // namespace

BodyBoxes::BodyBoxes(const ImportedMesh& mesh, double margin)
    : tree_(boxesOf(mesh, margin))
{
}

bool BodyBoxes::hasOther(const Box& box, const std::set<int>& own) const
{
    bool found = false;
    tree_.forEachMeeting(
        box, [&](std::size_t body) { found = found || !own.contains(static_cast<int>(body)); });
    return found;
}

} // namespace Ovra::GeoTool
