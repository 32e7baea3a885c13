#include "BodyJoining.h"

#include "CadModel.h"

#include <algorithm>
#include <cmath>
#include <gmsh.h>
#include <tuple>

namespace Ovra::GeoTool
{

namespace
{

QString sizeText(double value)
{
    return QString::number(value, 'g', 6);
}

QString measureName(int dimension)
{
    return dimension == 3 ? QStringLiteral("volume") : QStringLiteral("area");
}

std::vector<int> groupsOf(const std::pair<int, int>& entity)
{
    std::vector<int> groups;
    gmsh::model::getPhysicalGroupsForEntity(entity.first, entity.second, groups);
    for (int& group : groups) {
        group = std::abs(group);
    }
    std::sort(groups.begin(), groups.end());
    groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
    return groups;
}

std::vector<int> bodiesAt(int dimension, int face)
{
    std::vector<int> upward;
    std::vector<int> downward;
    gmsh::model::getAdjacencies(dimension, face, upward, downward);
    return upward;
}

} // namespace

BodyJoining::BodyJoining(double tolerance)
    : dimension_(CadModel::bodyDimension())
    , tolerance_(tolerance)
{
}

void BodyJoining::join()
{
    record();
    markBackground();
    cut();
    checkBodies();
    assignBodies();
    assignLower();
    addRemarks();
    transfer();
}

void BodyJoining::record()
{
    for (int d = dimension_; d >= 0; --d) {
        for (const int tag : CadModel::entities(d)) {
            Original original;
            original.entity = {d, tag};
            original.label = CadModel::label(d, tag);
            original.description = CadModel::described(d, tag);
            original.groups = groupsOf(original.entity);
            if (d == dimension_) {
                recordBody(original);
            }
            originals_.push_back(original);
        }
    }
    gmsh::vectorpair groups;
    gmsh::model::getPhysicalGroups(groups);
    for (const auto& [d, group] : groups) {
        std::string name;
        gmsh::model::getPhysicalName(d, group, name);
        groupNames_[{d, group}] = QString::fromStdString(name);
    }
}

void BodyJoining::recordBody(Original& body) const
{
    constexpr double rounding = 1e-6;
    body.measure = CadModel::measure(dimension_, body.entity.second);
    gmsh::vectorpair sides;
    gmsh::model::getBoundary({body.entity}, sides, false, false);
    double area = 0;
    for (const auto& [d, tag] : sides) {
        area += CadModel::measure(d, tag);
    }
    body.slack = rounding * body.measure + tolerance_ * area;
}

void BodyJoining::markBackground()
{
    if (background_ == 0) {
        return;
    }
    gmsh::vectorpair sides;
    gmsh::model::getBoundary({{dimension_, background_}}, sides, false, false);
    for (Original& original : originals_) {
        original.isBackground =
            original.entity == Entity(dimension_, background_) ||
            std::find(sides.begin(), sides.end(), original.entity) != sides.end();
    }
}

void BodyJoining::cut()
{
    gmsh::vectorpair entities;
    for (const Original& original : originals_) {
        entities.push_back(original.entity);
    }
    const std::vector<gmsh::vectorpair> origins =
        CadModel::fragment(entities, {}, tolerance_).origins;
    for (std::size_t i = 0; i < originals_.size() && i < origins.size(); ++i) {
        for (const Entity& piece : origins[i]) {
            if (piece.first == originals_[i].entity.first) {
                originals_[i].pieces.push_back(piece);
                owners_[piece].push_back(i);
            }
        }
    }
    for (const Entity& entity : entities) {
        if (owners_.count(entity) == 0) {
            CadModel::remove({entity});
        }
    }
    gmsh::model::occ::synchronize();
}

void BodyJoining::checkBodies()
{
    for (const Original& body : originals_) {
        if (body.entity.first != dimension_) {
            continue;
        }
        double sum = 0;
        for (const Entity& piece : body.pieces) {
            sum += CadModel::measure(piece.first, piece.second);
        }
        if (std::abs(sum - body.measure) > body.slack) {
            setFault(
                QStringLiteral("joining would change the %1 of %2 from %3 to %4; the input may "
                               "be damaged there, or the tolerance too large")
                    .arg(measureName(dimension_), body.description, sizeText(body.measure),
                         sizeText(sum)));
        }
    }
    for (const int tag : CadModel::entities(dimension_)) {
        if (owners_.count({dimension_, tag}) == 0) {
            setFault(QStringLiteral("joining would make a body that comes from none of the input"));
        }
    }
}

bool BodyJoining::precedes(std::size_t a, std::size_t b) const
{
    const Original& first = originals_[a];
    const Original& second = originals_[b];
    // Bodies that are copies of one another differ by rounding.
    const bool alike = std::abs(first.measure - second.measure) <= first.slack + second.slack;
    return std::make_tuple(first.isBackground, alike ? 0.0 : first.measure, first.entity) <
           std::make_tuple(second.isBackground, alike ? 0.0 : second.measure, second.entity);
}

void BodyJoining::assignBodies()
{
    std::vector<std::size_t> remaining(originals_.size(), 0);
    for (auto& [piece, owners] : owners_) {
        if (piece.first != dimension_) {
            continue;
        }
        const auto byRight = [this](std::size_t a, std::size_t b) { return precedes(a, b); };
        std::iter_swap(owners.begin(), std::min_element(owners.begin(), owners.end(), byRight));
        noteOverlaps(owners, CadModel::measure(piece.first, piece.second));
        if (background_ != 0 && !originals_[owners.front()].isBackground &&
            !originals_[*std::max_element(owners.begin(), owners.end(), byRight)].isBackground) {
            setFault(QStringLiteral("%1 reaches out of the box of air; make that larger")
                         .arg(originals_[owners.front()].description));
        }
        owners.resize(1);
        ++remaining[owners.front()];
    }
    for (std::size_t i = 0; i < originals_.size(); ++i) {
        if (originals_[i].entity.first == dimension_ && remaining[i] == 0) {
            setFault(QStringLiteral("nothing is left of %1, as other bodies fill its place")
                         .arg(originals_[i].description));
        }
    }
}

void BodyJoining::noteOverlaps(const std::vector<std::size_t>& owners, double measure)
{
    for (const std::size_t a : owners) {
        for (const std::size_t b : owners) {
            if (a < b && !originals_[a].isBackground && !originals_[b].isBackground) {
                overlaps_[{a, b}] += measure;
            }
        }
    }
}

void BodyJoining::assignLower()
{
    for (auto& [piece, owners] : owners_) {
        if (piece.first != dimension_ - 1 || boundsBackground(piece)) {
            continue;
        }
        noteTouch(piece);
        std::erase_if(owners, [this](std::size_t i) { return originals_[i].isBackground; });
    }
}

bool BodyJoining::boundsBackground(const Entity& face) const
{
    const std::vector<int> bodies = bodiesAt(face.first, face.second);
    return std::any_of(bodies.begin(), bodies.end(), [this](int body) {
        const auto owner = owners_.find({dimension_, body});
        return owner != owners_.end() && originals_[owner->second.front()].isBackground;
    });
}

void BodyJoining::noteTouch(const Entity& face)
{
    for (const std::size_t side : owners_.at(face)) {
        for (const int body : bodiesAt(face.first, face.second)) {
            const auto owner = owners_.find({dimension_, body});
            if (originals_[side].isBackground && owner != owners_.end()) {
                touches_.emplace(owner->second.front(), side);
            }
        }
    }
}

void BodyJoining::addRemarks()
{
    for (const auto& [pair, measure] : overlaps_) {
        const bool first = precedes(pair.first, pair.second);
        remarks_.append(QStringLiteral("%1 and %2 overlap by a %3 of %4, which goes to %5")
                            .arg(originals_[pair.first].description,
                                 originals_[pair.second].description, measureName(dimension_),
                                 sizeText(measure),
                                 originals_[first ? pair.first : pair.second].description));
    }
    for (const auto& [body, side] : touches_) {
        remarks_.append(QStringLiteral("%1 touches the side %2 of the box; no air is there")
                            .arg(originals_[body].description, originals_[side].label));
    }
}

void BodyJoining::transfer() const
{
    for (int d = 0; d <= dimension_; ++d) {
        for (const int tag : CadModel::entities(d)) {
            gmsh::model::setEntityName(d, tag, ""); // another entity's, from before
        }
    }
    std::map<Entity, std::vector<int>> members;
    for (const auto& [piece, owners] : owners_) {
        QString label;
        std::set<int> groups;
        for (const std::size_t i : owners) {
            label = label.isEmpty() ? originals_[i].label : label;
            groups.insert(originals_[i].groups.begin(), originals_[i].groups.end());
        }
        gmsh::model::setEntityName(piece.first, piece.second, label.toStdString());
        for (const int group : groups) {
            members[{piece.first, group}].push_back(piece.second);
        }
    }
    gmsh::model::removePhysicalGroups();
    for (const auto& [group, tags] : members) {
        gmsh::model::addPhysicalGroup(group.first, tags, group.second);
        const QString name = groupNames_.at(group);
        if (!name.isEmpty()) {
            gmsh::model::setPhysicalName(group.first, group.second, name.toStdString());
        }
    }
}

void BodyJoining::setFault(const QString& text)
{
    fault_ = fault_.isEmpty() ? text : fault_;
}

} // namespace Ovra::GeoTool
