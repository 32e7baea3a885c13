#include "MeshContacts.h"

#include "BodyBoxes.h"
#include "BoxTree.h"
#include "ImportedMesh.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace Ovra::GeoTool
{

using ConvexClip::Polygon;
using Geo::Box;
using Geo::Vector;

namespace
{

Box inflated(const Box& box, double by)
{
    const Vector margin(by, by, by);
    return {box.minimum() - margin, box.maximum() + margin};
}

} // namespace

MeshContacts::MeshContacts(const ImportedMesh& mesh, const ContactReach& reach)
    : mesh_(mesh)
    , reach_(reach)
    , dimension_(mesh.elementDimension - 1)
{
    addFacets();
}

void MeshContacts::addFacets()
{
    const BodyBoxes boxes(mesh_, reach_.most());
    for (const ImportedElement& element : mesh_.elementsOf(dimension_)) {
        const ImportedEntity& face = mesh_.entity(dimension_, element.entity);
        const auto& bodies = face.adjacent[static_cast<std::size_t>(mesh_.elementDimension)];
        if (bodies.size() != 1 || !boxes.hasOther(mesh_.boxOf(element), bodies)) {
            continue;
        }
        const int body = mesh_.entity(mesh_.elementDimension, *bodies.begin()).id;
        if (element.nodeCount == 2) {
            addFacet(face.id, body, {mesh_.point(element, 0), mesh_.point(element, 1)});
        }
        for (int n = 1; n + 1 < element.nodeCount; ++n) { // four corners need not lie in a plane
            addFacet(
                face.id, body,
                {mesh_.point(element, 0), mesh_.point(element, n), mesh_.point(element, n + 1)});
        }
    }
}

void MeshContacts::addFacet(int face, int body, const Polygon& corners)
{
    if (!(ConvexClip::size(corners, dimension_) > 0)) {
        return;
    }
    Facet facet{face, body, corners, ConvexClip::normal(corners), Box()};
    facet.normal.normalize();
    for (const Vector& corner : corners) {
        facet.box += corner;
    }
    facets_.push_back(facet);
}

std::vector<BodyContact> MeshContacts::find() const
{
    std::vector<BodyContact> contacts = findAll();
    std::erase_if(contacts, [this](const BodyContact& contact) { return !isWide(contact); });
    return contacts;
}

std::vector<BodyContact> MeshContacts::findAll() const
{
    std::vector<Box> boxes;
    for (const Facet& facet : facets_) {
        boxes.push_back(facet.box);
    }
    const BoxTree tree(boxes);
    std::map<std::pair<int, int>, BodyContact> contacts;
    for (std::size_t i = 0; i < facets_.size(); ++i) {
        const Facet& a = facets_[i];
        tree.forEachMeeting(inflated(a.box, reach_.between(a.body, a.body)), [&](std::size_t j) {
            const Facet& b = facets_[j];
            const double size = j > i && a.body != b.body ? commonSize(a, b) : 0;
            if (size > 0) {
                const auto [low, high] = std::minmax(a.face, b.face);
                const BodyContact empty{low, high, 0, reach_.between(a.body, b.body)};
                contacts.try_emplace({low, high}, empty).first->second.size += size;
            }
        });
    }
    std::vector<BodyContact> all;
    all.reserve(contacts.size());
    for (const auto& entry : contacts) {
        all.push_back(entry.second);
    }
    return all;
}

double MeshContacts::commonSize(const Facet& a, const Facet& b) const
{
    constexpr double opposed = -0.5;
    if (dimension_ == 2 && a.normal * b.normal > opposed) {
        return 0;
    }
    const Polygon common = ConvexClip::clipped(a.corners, ConvexClip::column(b.corners));
    return liesOn(b, common, reach_.between(a.body, b.body)) ? ConvexClip::size(common, dimension_)
                                                             : 0;
}

bool MeshContacts::liesOn(const Facet& facet, const Polygon& polygon, double reach) const
{
    const Vector& origin = facet.corners[0];
    Vector along = facet.corners[1] - origin;
    along.normalize();
    return std::all_of(polygon.begin(), polygon.end(), [&](const Vector& corner) {
        const Vector offset = corner - origin;
        const double distance =
            dimension_ == 2 ? std::abs(offset * facet.normal) : (offset ^ along).length();
        return distance <= reach;
    });
}

bool MeshContacts::isWide(const BodyContact& contact) const
{
    return contact.size > std::pow(BodyContact::narrow * contact.tolerance, dimension_);
}

} // namespace Ovra::GeoTool
