#include "CadContacts.h"

#include "CadModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmsh.h>

namespace Ovra::GeoTool
{

using Geo::Box;
using Geo::Vector;

namespace
{

constexpr double negligible = 10; ///< contacts narrower than so many tolerances pass nothing

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

/// \brief Size of the pieces that two faces have both been cut into.
double commonSize(const CadModel::Entities& first, const CadModel::Entities& second)
{
    double size = 0;
    for (const auto& piece : first) {
        if (std::find(second.begin(), second.end(), piece) != second.end()) {
            size += CadModel::measure(piece.first, piece.second);
        }
    }
    return size;
}

} // namespace

CadContacts::CadContacts(double tolerance)
    : dimension_(CadModel::bodyDimension() - 1)
    , tolerance_(tolerance)
{
}

std::vector<CadContacts::Contact> CadContacts::find() const
{
    const std::vector<Side> all = sides();
    std::vector<Contact> contacts;
    std::vector<std::size_t> byLeft(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        byLeft[i] = i;
    }
    std::stable_sort(byLeft.begin(), byLeft.end(), [&all](std::size_t a, std::size_t b) {
        return all[a].box.minimum().x() < all[b].box.minimum().x();
    });
    std::vector<std::vector<int>> partners(all.size());
    for (auto a = byLeft.begin(); a != byLeft.end(); ++a) {
        const double reach = all[*a].box.maximum().x() + tolerance_;
        for (auto b = a + 1; b != byLeft.end() && all[*b].box.minimum().x() <= reach; ++b) {
            if (mayTouch(all[*a], all[*b])) {
                partners[std::min(*a, *b)].push_back(all[std::max(*a, *b)].tag);
            }
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::sort(partners[i].begin(), partners[i].end());
        const std::vector<Contact> found = common(all[i].tag, partners[i]);
        contacts.insert(contacts.end(), found.begin(), found.end());
    }
    return contacts;
}

std::vector<CadContacts::Side> CadContacts::sides() const
{
    std::vector<Side> sides;
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

bool CadContacts::mayTouch(const Side& a, const Side& b) const
{
    if (a.body == b.body || (a.kind != b.kind && a.kind != 0 && b.kind != 0)) {
        return false;
    }
    const std::array<double, 3> widths = commonWidths(a.box, b.box);
    const auto narrowest = static_cast<std::size_t>(dimension_ - 1);
    return widths[narrowest] > negligible * tolerance_ && widths.back() >= -tolerance_ &&
           isInLine(a, b);
}

bool CadContacts::isInLine(const Side& a, const Side& b) const
{
    if (!a.flat || !b.flat) {
        return std::abs(a.radius - b.radius) <= 2 * tolerance_ || a.kind != b.kind;
    }
    const Vector along = b.point - a.point;
    const double size = a.box.extent().length() + b.box.extent().length();
    const double turn =
        (a.normal ^ b.normal).length() * std::min(a.box.extent().length(), b.box.extent().length());
    const double offset =
        dimension_ == 2 ? std::abs(along * a.normal) : (along ^ a.normal).length();
    const double slack = tolerance_ + 1e-9 * size;
    return turn <= slack && offset <= slack + turn * along.length() / size;
}

std::vector<CadContacts::Contact> CadContacts::common(int tag, const std::vector<int>& others) const
{
    if (others.empty()) {
        return {};
    }
    gmsh::vectorpair object;
    gmsh::vectorpair tools;
    gmsh::vectorpair wanted;
    for (const int other : others) {
        wanted.emplace_back(dimension_, other);
    }
    gmsh::model::occ::copy({{dimension_, tag}}, object);
    gmsh::model::occ::copy(wanted, tools);
    const CadModel::Fragments fragments = CadModel::fragment(object, tools, tolerance_);
    std::vector<Contact> contacts;
    for (std::size_t i = 0; i < others.size(); ++i) {
        const double size = commonSize(fragments.origins.front(), fragments.origins.at(i + 1));
        if (size > std::pow(negligible * tolerance_, dimension_)) {
            contacts.push_back({tag, others[i], size});
        }
    }
    for (const CadModel::Entities& copies : {fragments.pieces, object, tools}) {
        CadModel::remove(copies);
    }
    return contacts;
}

} // namespace Ovra::GeoTool
