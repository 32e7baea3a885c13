#include "SurfaceFilling.h"

#include "Counted.h"
#include "UnionFind.h"

#include <algorithm>
#include <cmath>
#include <gmsh.h>
#include <map>
#include <unordered_map>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

constexpr int TriangleType = 2;

std::map<std::pair<std::size_t, std::size_t>, int>
edgeUses(const std::vector<std::array<std::size_t, 3>>& triangles)
{
    std::map<std::pair<std::size_t, std::size_t>, int> uses;
    for (const auto& triangle : triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            ++uses[std::minmax(triangle[i], triangle[(i + 1) % 3])];
        }
    }
    return uses;
}

} // namespace

void SurfaceFilling::collect()
{
    readTriangles();
    checkClosed();
    if (!openness_.isEmpty()) {
        return;
    }
    partIntoPieces();
    nestPieces();
}

void SurfaceFilling::readTriangles()
{
    std::vector<std::size_t> tags;
    std::vector<double> coordinates;
    std::vector<double> parameters;
    gmsh::model::mesh::getNodes(tags, coordinates, parameters);
    std::unordered_map<std::size_t, std::size_t> positions;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        positions.emplace(tags[i], i);
        points_.emplace_back(coordinates[3 * i], coordinates[3 * i + 1], coordinates[3 * i + 2]);
    }
    std::vector<int> types;
    gmsh::model::mesh::getElementTypes(types, 2);
    if (types != std::vector<int>{TriangleType}) {
        openness_ = QStringLiteral("it is not made of plain triangles");
    }
    std::vector<std::size_t> elements;
    std::vector<std::size_t> nodes;
    gmsh::model::mesh::getElementsByType(TriangleType, elements, nodes);
    for (std::size_t i = 0; i + 2 < nodes.size(); i += 3) {
        triangles_.push_back(
            {positions.at(nodes[i]), positions.at(nodes[i + 1]), positions.at(nodes[i + 2])});
    }
}

void SurfaceFilling::checkClosed()
{
    int open = 0;
    int branching = 0;
    for (const auto& [edge, uses] : edgeUses(triangles_)) {
        open += uses < 2 ? 1 : 0;
        branching += uses > 2 ? 1 : 0;
    }
    if (open > 0) {
        openness_ = counted(open, QStringLiteral("edge belongs to one triangle only"),
                            QStringLiteral("edges belong to one triangle only"));
    } else if (branching > 0) {
        openness_ = counted(branching, QStringLiteral("edge belongs to more than two triangles"),
                            QStringLiteral("edges belong to more than two triangles"));
    }
}

void SurfaceFilling::partIntoPieces()
{
    UnionFind sets(points_.size());
    for (const Triangle& triangle : triangles_) {
        sets.join(triangle[0], triangle[1]);
        sets.join(triangle[0], triangle[2]);
    }
    std::map<std::size_t, std::size_t> pieceOf;
    for (const Triangle& triangle : triangles_) {
        const auto [found, isNew] = pieceOf.emplace(sets.find(triangle[0]), pieces_.size());
        if (isNew) {
            pieces_.emplace_back();
        }
        Piece& piece = pieces_[found->second];
        piece.triangles.push_back(triangle);
        piece.volume +=
            ((points_[triangle[0]] ^ points_[triangle[1]]) * points_[triangle[2]]) / 6.0;
    }
}

void SurfaceFilling::nestPieces()
{
    for (Piece& inner : pieces_) {
        const Vector point = points_[inner.triangles.front()[0]];
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            const Piece& outer = pieces_[i];
            if (&outer == &inner || !contains(outer, point)) {
                continue;
            }
            ++inner.depth;
            if (inner.around < 0 ||
                std::abs(outer.volume) <
                    std::abs(pieces_[static_cast<std::size_t>(inner.around)].volume)) {
                inner.around = static_cast<int>(i);
            }
        }
    }
}

// The solid angle of the piece at the point: 4 pi inside, 0 outside (Van Oosterom and Strackee,
// The solid angle of a plane triangle, 1983).
bool SurfaceFilling::contains(const Piece& piece, const Vector& point) const
{
    double angle = 0;
    for (const Triangle& triangle : piece.triangles) {
        const Vector a = points_[triangle[0]] - point;
        const Vector b = points_[triangle[1]] - point;
        const Vector c = points_[triangle[2]] - point;
        const double la = a.length();
        const double lb = b.length();
        const double lc = c.length();
        angle += 2.0 *
                 std::atan2((a ^ b) * c, la * lb * lc + (a * b) * lc + (b * c) * la + (c * a) * lb);
    }
    constexpr double twoPi = 6.283185307179586;
    return std::abs(angle) > twoPi;
}

void SurfaceFilling::addVolumes() const
{
    gmsh::clear();
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        addPiece(pieces_[i], static_cast<int>(i) + 1);
        gmsh::model::geo::addSurfaceLoop({static_cast<int>(i) + 1}, static_cast<int>(i) + 1);
    }
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        const bool hollow = pieces_[i].depth % 2 == 1 && pieces_[i].volume < 0;
        if (hollow) {
            continue;
        }
        std::vector<int> loops{static_cast<int>(i) + 1};
        for (std::size_t j = 0; j < pieces_.size(); ++j) {
            if (pieces_[j].around == static_cast<int>(i)) {
                loops.push_back(static_cast<int>(j) + 1);
            }
        }
        gmsh::model::geo::addVolume(loops);
    }
    gmsh::model::geo::synchronize();
}

void SurfaceFilling::addPiece(const Piece& piece, int tag) const
{
    gmsh::model::addDiscreteEntity(2, tag);
    std::vector<std::size_t> nodes;
    for (const Triangle& triangle : piece.triangles) {
        for (const std::size_t position : triangle) {
            nodes.push_back(position + 1);
        }
    }
    std::vector<std::size_t> used = nodes;
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    std::vector<double> coordinates;
    for (const std::size_t node : used) {
        const Vector& point = points_[node - 1];
        coordinates.insert(coordinates.end(), {point.x(), point.y(), point.z()});
    }
    gmsh::model::mesh::addNodes(2, tag, used, coordinates);
    gmsh::model::mesh::addElementsByType(tag, TriangleType, {}, nodes);
}

} // namespace Ovra::GeoTool
