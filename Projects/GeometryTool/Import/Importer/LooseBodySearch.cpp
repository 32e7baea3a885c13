#include "LooseBodySearch.h"

#include "BodyJoining.h"
#include "CadContacts.h"
#include "CadModel.h"
#include "ContactReach.h"
#include "ImportedMesh.h"
#include "MeshContacts.h"
#include "MeshOverlaps.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <new>
#include <set>

namespace Ovra::GeoTool
{

namespace
{

/// \brief To two digits, upwards.
double roundedUp(double value)
{
    constexpr double slack = 1e-9;
    const double unit = std::pow(10, std::floor(std::log10(value)) - 1);
    return std::ceil(value / unit - slack) * unit;
}

bool joinsWith(double tolerance)
{
    try {
        BodyJoining joining(tolerance);
        joining.join();
        return joining.fault().isEmpty();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) { // Gmsh throws values of several types
        return false;
    }
}

} // namespace

LooseBodySearch::LooseBodySearch(const ImportedMesh& mesh, std::optional<double> tolerance,
                                 bool isMeshedHere)
    : mesh_(mesh)
    , tolerance_(tolerance)
    , isMeshedHere_(isMeshedHere)
    , dimension_(mesh.elementDimension)
{
}

LooseBodies LooseBodySearch::search() const
{
    LooseBodies found;
    if (mesh_.entitiesOf(dimension_).size() < 2) {
        return found;
    }
    if (dimension_ == CadModel::bodyDimension() && CadModel::isOfKernel()) {
        searchGeometry(found);
    } else {
        searchMesh(found);
    }
    dropExplained(found);
    if (found.remedy == LooseBodies::Remedy::Join) {
        found.wideTolerance = tried(found);
    }
    return found;
}

void LooseBodySearch::searchGeometry(LooseBodies& found) const
{
    found.remedy = isMeshedHere_ ? LooseBodies::Remedy::Join : LooseBodies::Remedy::JoinUnmeshed;
    found.tolerance = tolerance_.value_or(CadModel::contactTolerance());
    CadContacts contacts(found.tolerance);
    const ContactReach reach(mesh_, ContactReach::meant);
    if (!tolerance_) {
        contacts.setReach([&reach](int body, int other) { return reach.between(body, other); },
                          nearFaces());
    }
    found.contacts = contacts.find();
    for (const auto& [first, second] : MeshOverlaps(mesh_).find()) {
        const int body = mesh_.entity(dimension_, first).id;
        const int other = mesh_.entity(dimension_, second).id;
        const double size =
            CadModel::commonSizes(dimension_, body, {other}, found.tolerance).front();
        if (size > std::pow(BodyContact::narrow * found.tolerance, dimension_)) {
            found.overlaps.push_back({body, other, size});
        }
    }
}

/// \brief Faces whose meshes lie near one another, by id, the lower one first.
std::set<std::pair<int, int>> LooseBodySearch::nearFaces() const
{
    std::set<std::pair<int, int>> pairs;
    const ContactReach reach(mesh_, ContactReach::meshed);
    for (const BodyContact& contact : MeshContacts(mesh_, reach).findAll()) {
        pairs.emplace(contact.face, contact.other);
    }
    return pairs;
}

void LooseBodySearch::searchMesh(LooseBodies& found) const
{
    const ContactReach reach = tolerance_ ? ContactReach::everywhere(mesh_, *tolerance_)
                                          : ContactReach(mesh_, ContactReach::meant);
    found.contacts = MeshContacts(mesh_, reach).find();
    const MeshOverlaps overlaps(mesh_);
    for (const auto& pair : overlaps.find()) {
        const double size = overlaps.measure(pair);
        if (size > 0) {
            found.overlaps.push_back({mesh_.entity(dimension_, pair.first).id,
                                      mesh_.entity(dimension_, pair.second).id, size});
        }
    }
}

/// \brief Drops overlaps that are no more than faces which lie a little too deep, and contacts of
/// bodies that do overlap.
void LooseBodySearch::dropExplained(LooseBodies& found) const
{
    std::map<std::pair<int, int>, double> depths; // volumes that closing the contacts would end
    for (const BodyContact& contact : found.contacts) {
        depths[bodiesOf(contact)] += contact.tolerance * contact.size;
    }
    std::set<std::pair<int, int>> overlapping;
    std::erase_if(found.overlaps, [&](const LooseBodies::Overlap& overlap) {
        const auto depth = depths.find({overlap.body, overlap.other});
        return depth != depths.end() && overlap.size <= depth->second;
    });
    for (const LooseBodies::Overlap& overlap : found.overlaps) {
        overlapping.emplace(overlap.body, overlap.other);
    }
    std::erase_if(found.contacts, [&](const BodyContact& contact) {
        return overlapping.contains(bodiesOf(contact));
    });
}

std::pair<int, int> LooseBodySearch::bodiesOf(const BodyContact& contact) const
{
    return std::minmax({bodyOf(contact.face), bodyOf(contact.other)});
}

/// \brief Id of the body that a face of one body bounds; -1 if there is no such face.
int LooseBodySearch::bodyOf(int face) const
{
    const int position = mesh_.positionOf(dimension_ - 1, face);
    if (position < 0) {
        return -1;
    }
    const auto& bodies =
        mesh_.entity(dimension_ - 1, position).adjacent[static_cast<std::size_t>(dimension_)];
    return bodies.empty() ? -1 : mesh_.entity(dimension_, *bodies.begin()).id;
}

/// \brief The tolerance that the contacts need, if joining with it works. Plain contacts are not
/// tried.
double LooseBodySearch::tried(const LooseBodies& found)
{
    double needed = found.tolerance;
    for (const BodyContact& contact : found.contacts) {
        needed = std::max(needed, contact.tolerance);
    }
    const bool isWide = needed > found.tolerance;
    needed = isWide ? roundedUp(needed) : needed;
    return (!isWide && found.overlaps.empty()) || joinsWith(needed) ? needed : 0;
}

} // namespace Ovra::GeoTool
