#include "UniversalElementType.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

enum class Shape
{
    None,
    Line,
    Triangle,
    Quadrilateral,
    Tetrahedron,
    Wedge,
    Hexahedron
};

Shape shapeOf(int descriptor)
{
    static const std::map<Shape, std::set<int>> descriptors{
        {Shape::Line, {11, 21, 22, 23, 24, 171, 172}},
        {Shape::Triangle, {41, 42, 51, 52, 61, 62, 72, 74, 81, 82, 91, 92}},
        {Shape::Quadrilateral, {44, 45, 54, 55, 64, 65, 71, 75, 84, 85, 94, 95}},
        {Shape::Tetrahedron, {111, 118}},
        {Shape::Wedge, {101, 102, 112, 113}},
        {Shape::Hexahedron, {104, 105, 115, 116}}};
    for (const auto& [shape, numbers] : descriptors) {
        if (numbers.count(descriptor) > 0) {
            return shape;
        }
    }
    return Shape::None;
}

} // namespace

UniversalElementType UniversalElementType::of(int descriptor, int nodeCount)
{
    static const std::map<std::pair<Shape, int>, UniversalElementType> types{
        {{Shape::Line, 2}, {{1, 1}, {0, 1}}},
        {{Shape::Line, 3}, {{1, 8}, {0, 2}}},
        {{Shape::Triangle, 3}, {{2, 2}, {0, 1, 2}}},
        {{Shape::Triangle, 6}, {{2, 9}, {0, 2, 4}}},
        {{Shape::Quadrilateral, 4}, {{2, 3}, {0, 1, 2, 3}}},
        {{Shape::Quadrilateral, 8}, {{2, 16}, {0, 2, 4, 6}}},
        {{Shape::Tetrahedron, 4}, {{3, 4}, {0, 1, 2, 3}}},
        {{Shape::Tetrahedron, 10}, {{3, 11}, {0, 2, 4, 9}}},
        {{Shape::Wedge, 6}, {{3, 6}, {0, 1, 2, 3, 4, 5}}},
        {{Shape::Wedge, 15}, {{3, 18}, {0, 2, 4, 9, 11, 13}}},
        {{Shape::Hexahedron, 8}, {{3, 5}, {0, 1, 2, 3, 4, 5, 6, 7}}},
        {{Shape::Hexahedron, 20}, {{3, 17}, {0, 2, 4, 6, 12, 14, 16, 18}}}};
    const auto found = types.find({shapeOf(descriptor), nodeCount});
    return found == types.end() ? UniversalElementType() : found->second;
}

bool UniversalElementType::isBeam(int descriptor)
{
    constexpr int lastBeam = 24; // behind it come shells that a line stands for
    return shapeOf(descriptor) == Shape::Line && descriptor <= lastBeam;
}

std::vector<qint64> UniversalElementType::cornersFirst(const std::vector<qint64>& nodes) const
{
    std::vector<qint64> sorted;
    for (const std::size_t corner : corners) {
        sorted.push_back(nodes[corner]);
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (std::find(corners.begin(), corners.end(), i) == corners.end()) {
            sorted.push_back(nodes[i]);
        }
    }
    return sorted;
}

} // namespace Ovra::GeoTool
