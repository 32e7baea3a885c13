#include "CadModel.h"

#include "EntityNames.h"

#include <algorithm>
#include <array>
#include <gmsh.h>
#include <new>

namespace Ovra::GeoTool
{

using Geo::Box;
using Geo::Vector;

namespace
{

QStringList groupNames(int dimension, int tag)
{
    std::vector<int> groups;
    gmsh::model::getPhysicalGroupsForEntity(dimension, tag, groups);
    for (int& group : groups) {
        group = std::abs(group); // the sign tells the sense of the entity in the group
    }
    std::sort(groups.begin(), groups.end());
    QStringList names;
    for (const int group : groups) {
        std::string name;
        gmsh::model::getPhysicalName(dimension, group, name);
        if (!name.empty()) {
            names.append(QString::fromStdString(name));
        }
    }
    return names;
}

/// \brief Size of the pieces that two entities have both been cut into.
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

std::vector<double> sizesInCommon(int dimension, int tag, const std::vector<int>& others,
                                  double tolerance)
{
    CadModel::Entities object;
    CadModel::Entities tools;
    CadModel::Entities wanted;
    for (const int other : others) {
        wanted.emplace_back(dimension, other);
    }
    gmsh::model::occ::copy({{dimension, tag}}, object);
    gmsh::model::occ::copy(wanted, tools);
    const CadModel::Fragments fragments = CadModel::fragment(object, tools, tolerance);
    std::vector<double> sizes;
    for (std::size_t i = 0; i < others.size(); ++i) {
        sizes.push_back(commonSize(fragments.origins.front(), fragments.origins.at(i + 1)));
    }
    for (const CadModel::Entities& copies : {fragments.pieces, object, tools}) {
        CadModel::remove(copies);
    }
    return sizes;
}

CadModel::Entities aboveVertices()
{
    CadModel::Entities all;
    gmsh::model::getEntities(all);
    std::erase_if(all, [](const auto& entity) { return entity.first == 0; });
    return all;
}

bool isShape(const std::pair<int, int>& entity)
{
    std::string type;
    gmsh::model::getType(entity.first, entity.second, type);
    return type.rfind("Discrete", 0) != 0;
}

} // namespace

bool CadModel::isOfKernel()
{
    gmsh::vectorpair known;
    gmsh::model::occ::getEntities(known, bodyDimension());
    std::vector<int> tags;
    for (const auto& entity : known) {
        tags.push_back(entity.second);
    }
    std::sort(tags.begin(), tags.end());
    return !tags.empty() && tags == entities(bodyDimension());
}

bool CadModel::hasShapes()
{
    const CadModel::Entities all = aboveVertices();
    return std::any_of(all.begin(), all.end(), isShape);
}

bool CadModel::hasShapesOnly()
{
    const CadModel::Entities all = aboveVertices();
    return !all.empty() && std::all_of(all.begin(), all.end(), isShape);
}

int CadModel::bodyDimension()
{
    return gmsh::model::getDimension();
}

std::vector<int> CadModel::entities(int dimension)
{
    gmsh::vectorpair all;
    gmsh::model::getEntities(all, dimension);
    std::vector<int> tags;
    for (const auto& entity : all) {
        tags.push_back(entity.second);
    }
    std::sort(tags.begin(), tags.end());
    return tags;
}

double CadModel::measure(int dimension, int tag)
{
    double mass = 0;
    gmsh::model::occ::getMass(dimension, tag, mass);
    return mass;
}

Box CadModel::box(int dimension, int tag)
{
    std::array<double, 6> c{};
    gmsh::model::occ::getBoundingBox(dimension, tag, c[0], c[1], c[2], c[3], c[4], c[5]);
    return {Vector(c[0], c[1], c[2]), Vector(c[3], c[4], c[5])};
}

Box CadModel::box()
{
    Box all;
    for (const int tag : entities(bodyDimension())) {
        all += box(bodyDimension(), tag);
    }
    return all;
}

double CadModel::contactTolerance()
{
    constexpr double share = 1e-5;
    constexpr double scar = 1e-7;
    const double diagonal = box().extent().length();
    double tolerance = share * diagonal;
    for (const int edge : entities(1)) {
        const double length = measure(1, edge);
        if (length > scar * diagonal) {
            tolerance = std::min(tolerance, 0.1 * length);
        }
    }
    return tolerance;
}

QString CadModel::described(int dimension, int tag)
{
    const QStringList groups = groupNames(dimension, tag);
    const QString name = groups.isEmpty() ? label(dimension, tag) : groups.first();
    const QString id = QStringLiteral("%1 %2").arg(kindName(dimension), QString::number(tag));
    return name.isEmpty() ? id : QStringLiteral("%1 (%2)").arg(id, name);
}

QString CadModel::label(int dimension, int tag)
{
    std::string name;
    gmsh::model::getEntityName(dimension, tag, name);
    return QString::fromStdString(name).simplified();
}

CadModel::Fragments CadModel::fragment(const Entities& objects, const Entities& tools,
                                       double tolerance)
{
    // Gmsh tells the pieces of what it does not cut by the number that this has had. That number is
    // good for as long as nothing is removed; later it may be another entity's.
    constexpr bool removeInputs = false;
    gmsh::option::setNumber("Geometry.ToleranceBoolean", tolerance);
    Fragments fragments;
    gmsh::model::occ::fragment(objects, tools, fragments.pieces, fragments.origins, -1,
                               removeInputs, removeInputs);
    return fragments;
}

std::vector<double> CadModel::commonSizes(int dimension, int tag, const std::vector<int>& others,
                                          double tolerance)
{
    try {
        return sizesInCommon(dimension, tag, others, tolerance);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) { // a question that the kernel cannot answer is no fault of the input
        return std::vector<double>(others.size(), 0);
    }
}

void CadModel::remove(const Entities& entities)
{
    for (const auto& entity : entities) {
        try {
            gmsh::model::occ::remove({entity}, true);
        } catch (...) {
            continue; // it went with one that it bounded
        }
    }
}

QStringList CadModel::namesOf(int dimension, int tag)
{
    return groupNames(dimension, tag) << label(dimension, tag).section(QLatin1Char('/'), -1, -1);
}

} // namespace Ovra::GeoTool
