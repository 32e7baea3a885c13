#include "PointNumbers.h"

#include "CaseView.h"

#include <algorithm>

namespace Ovra::GeoTool
{

PointNumbers::PointNumbers(const CaseView& view)
    : view_(view)
    , numbers_(view.meshEntities(0).size())
    , marks_(view.meshEntities(0).size(), 0)
{
}

std::vector<int> PointNumbers::verticesOf(int dimension, const std::vector<std::size_t>& selection)
{
    ++mark_;
    std::vector<int> vertices;
    const VertexLists& lists = view_.vertexLists(dimension);
    for (const std::size_t entity : selection) {
        for (const int vertex : lists.of(entity)) {
            if (!isMarked(vertex)) {
                marks_[static_cast<std::size_t>(vertex)] = mark_;
                vertices.push_back(vertex);
            }
        }
    }
    sort(vertices);
    return vertices;
}

/// To sort a fortieth of the vertices takes about as long as a walk over all marks.
void PointNumbers::sort(std::vector<int>& vertices) const
{
    if (vertices.size() < marks_.size() / 40) {
        std::sort(vertices.begin(), vertices.end());
        return;
    }
    auto place = vertices.begin();
    for (int vertex = 0; place != vertices.end(); ++vertex) {
        if (isMarked(vertex)) {
            *place++ = vertex;
        }
    }
}

void PointNumbers::number(const std::vector<int>& vertices)
{
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        numbers_[static_cast<std::size_t>(vertices[i])] = static_cast<int>(i);
    }
}

} // namespace Ovra::GeoTool
