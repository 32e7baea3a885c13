#include "CadContacts.h"

#include "CadModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmsh.h>
#include <map>
#include <set>
#include <tuple>

namespace Ovra::GeoTool
{

using Geo::Box;
using Geo::Vector;

namespace
{

/// \brief A number for kinds of which two different ones have no more than curves in common.
int kindOf(const std::string& type)
{
    static const std::array<const char*, 8> plain = {"Plane", "Cylinder", "Cone",   "Sphere",
                                                     "Torus", "Line",     "Circle", "Ellipse"};
    const auto found = std::find(plain.begin(), plain.end(), type);
    return found == plain.end() ? 0 : 1 + static_cast<int>(found - plain.begin());
}

Vector vectorOf(const std::vector<double>& c)
{
    return {c.at(0), c.at(1), c.at(2)};
}

/// \brief Width of what two boxes have in common, by axis, widest first; negative where they are
/// apart.
std::array<double, 3> commonWidths(const Box& a, const Box& b)
{
    std::array<double, 3> widths{};
    for (int i = 0; i < 3; ++i) {
        widths[static_cast<std::size_t>(i)] =
            std::min(a.maximum()[i], b.maximum()[i]) - std::max(a.minimum()[i], b.minimum()[i]);
    }
    std::sort(widths.rbegin(), widths.rend());
    return widths;
}

} // namespace

CadContacts::CadContacts(double tolerance)
    : dimension_(CadModel::bodyDimension() - 1)
    , tolerance_(tolerance)
{
}

void CadContacts::setReach(Reach reach, std::set<std::pair<int, int>> pairs)
{
    reach_ = std::move(reach);
    nearby_ = std::move(pairs);
}

std::vector<BodyContact> CadContacts::find() const
{
    const Sides all = sides();
    std::vector<BodyContact> contacts = touching(all);
    const std::vector<BodyContact> others = apart(all, contacts);
    contacts.insert(contacts.end(), others.begin(), others.end());
    std::sort(contacts.begin(), contacts.end(), [](const BodyContact& a, const BodyContact& b) {
        return std::tie(a.face, a.other) < std::tie(b.face, b.other);
    });
    return contacts;
}

CadContacts::Pairs CadContacts::pairs(const Sides& all) const
{
    std::vector<std::size_t> byLeft(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        byLeft[i] = i;
    }
    std::stable_sort(byLeft.begin(), byLeft.end(), [&all](std::size_t a, std::size_t b) {
        return all[a].box.minimum().x() < all[b].box.minimum().x();
    });
    Pairs pairs;
    for (auto a = byLeft.begin(); a != byLeft.end(); ++a) {
        const double end = all[*a].box.maximum().x() + tolerance_;
        for (auto b = a + 1; b != byLeft.end() && all[*b].box.minimum().x() <= end; ++b) {
            if (mayTouch(all[*a], all[*b], tolerance_)) {
                pairs.push_back(std::minmax(*a, *b));
            }
        }
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

std::vector<BodyContact> CadContacts::touching(const Sides& all) const
{
    std::map<std::size_t, std::vector<int>> partners;
    for (const auto& [a, b] : pairs(all)) {
        partners[a].push_back(all[b].tag);
    }
    std::vector<BodyContact> contacts;
    for (const auto& [side, others] : partners) {
        const std::vector<BodyContact> found = common(all[side].tag, others, tolerance_);
        contacts.insert(contacts.end(), found.begin(), found.end());
    }
    return contacts;
}

std::vector<BodyContact> CadContacts::apart(const Sides& all,
                                            const std::vector<BodyContact>& known) const
{
    std::set<std::pair<int, int>> done;
    for (const BodyContact& contact : known) {
        done.emplace(contact.face, contact.other);
    }
    std::map<int, const Side*> byTag;
    for (const Side& side : all) {
        byTag[side.tag] = &side;
    }
    std::vector<BodyContact> contacts;
    for (const auto& pair : nearby_) {
        const bool isKnown = byTag.count(pair.first) > 0 && byTag.count(pair.second) > 0;
        if (isKnown && done.count(pair) == 0) {
            const auto contact = apart(*byTag.at(pair.first), *byTag.at(pair.second));
            if (contact) {
                contacts.push_back(*contact);
            }
        }
    }
    return contacts;
}

std::optional<BodyContact> CadContacts::apart(const Side& a, const Side& b) const
{
    constexpr double share = 0.1; // of an edge; the kernel takes shorter ones for points
    const bool isTried = a.flat && b.flat && offset(a, b) <= tolerance_;
    const double limit =
        std::min({reach_(a.body, b.body), share * shortestEdge(a), share * shortestEdge(b)});
    if (isTried || limit <= tolerance_ || !mayTouch(a, b, limit)) {
        return std::nullopt;
    }
    return within(limit, a, b);
}

/// \brief With a tolerance up to \p limit that is not much more than it takes.
std::optional<BodyContact> CadContacts::within(double limit, const Side& a, const Side& b) const
{
    constexpr double margin = 1.25;
    const std::vector<BodyContact> widest = common(a.tag, {b.tag}, limit);
    if (widest.empty()) {
        return std::nullopt;
    }
    const double least = a.flat && b.flat ? margin * offset(a, b) : 0;
    double reach = std::max(2 * tolerance_, least);
    while (reach < limit) {
        const std::vector<BodyContact> contact = common(a.tag, {b.tag}, reach);
        if (!contact.empty()) {
            return contact.front();
        }
        reach *= 2;
    }
    return widest.front();
}

double CadContacts::shortestEdge(const Side& side) const
{
    gmsh::vectorpair edges;
    gmsh::model::getBoundary({{dimension_, side.tag}}, edges, false, false, dimension_ == 1);
    double shortest = side.box.extent().length();
    for (const auto& [d, tag] : edges) {
        shortest = d == 1 ? std::min(shortest, CadModel::measure(d, tag)) : shortest;
    }
    return shortest;
}

CadContacts::Sides CadContacts::sides() const
{
    Sides sides;
    for (const int tag : CadModel::entities(dimension_)) {
        std::vector<int> upward;
        std::vector<int> downward;
        gmsh::model::getAdjacencies(dimension_, tag, upward, downward);
        if (upward.size() == 1) {
            Side side{tag, upward.front(), CadModel::box(dimension_, tag), 0, false, {}, {}, 0};
            locate(side);
            sides.push_back(side);
        }
    }
    return sides;
}

void CadContacts::locate(Side& side) const
{
    std::string type;
    gmsh::model::getType(dimension_, side.tag, type);
    side.kind = kindOf(type);
    side.flat = type == "Plane" || type == "Line";
    std::vector<double> low;
    std::vector<double> high;
    gmsh::model::getParametrizationBounds(dimension_, side.tag, low, high);
    if (side.flat) {
        locateFlat(side, low);
    } else if (type == "Cylinder" || type == "Sphere" || type == "Circle") {
        for (std::size_t i = 0; i < low.size(); ++i) {
            low[i] = 0.5 * (low[i] + high[i]); // off the poles
        }
        std::vector<double> curvatures;
        gmsh::model::getCurvature(dimension_, side.tag, low, curvatures);
        side.radius = curvatures.at(0) == 0 ? 0 : 1 / std::abs(curvatures.at(0));
    }
}

void CadContacts::locateFlat(Side& side, const std::vector<double>& parameters) const
{
    std::vector<double> values;
    gmsh::model::getValue(dimension_, side.tag, parameters, values);
    side.point = vectorOf(values);
    if (dimension_ == 2) {
        gmsh::model::getNormal(side.tag, parameters, values);
    } else {
        gmsh::model::getDerivative(1, side.tag, parameters, values);
    }
    side.normal = vectorOf(values);
    side.normal.normalize();
}

bool CadContacts::mayTouch(const Side& a, const Side& b, double tolerance) const
{
    if (a.body == b.body || (a.kind != b.kind && a.kind != 0 && b.kind != 0)) {
        return false;
    }
    const std::array<double, 3> widths = commonWidths(a.box, b.box);
    const auto narrowest = static_cast<std::size_t>(dimension_ - 1);
    return widths[narrowest] > BodyContact::narrow * tolerance && widths.back() >= -tolerance &&
           isInLine(a, b, tolerance);
}

bool CadContacts::isInLine(const Side& a, const Side& b, double tolerance) const
{
    if (!a.flat || !b.flat) {
        return std::abs(a.radius - b.radius) <= 2 * tolerance || a.kind != b.kind;
    }
    const double along = (b.point - a.point).length();
    const double size = a.box.extent().length() + b.box.extent().length();
    const double turn =
        (a.normal ^ b.normal).length() * std::min(a.box.extent().length(), b.box.extent().length());
    const double slack = tolerance + 1e-9 * size;
    return turn <= slack && offset(a, b) <= slack + turn * along / size;
}

/// \brief How far the planes or lines of two flat sides are apart.
double CadContacts::offset(const Side& a, const Side& b) const
{
    const Vector along = b.point - a.point;
    return dimension_ == 2 ? std::abs(along * a.normal) : (along ^ a.normal).length();
}

std::vector<BodyContact> CadContacts::common(int tag, const std::vector<int>& others,
                                             double tolerance) const
{
    const std::vector<double> sizes = CadModel::commonSizes(dimension_, tag, others, tolerance);
    std::vector<BodyContact> contacts;
    for (std::size_t i = 0; i < others.size(); ++i) {
        if (sizes[i] > std::pow(BodyContact::narrow * tolerance, dimension_)) {
            contacts.push_back({tag, others[i], sizes[i], tolerance});
        }
    }
    return contacts;
}

} // namespace Ovra::GeoTool
