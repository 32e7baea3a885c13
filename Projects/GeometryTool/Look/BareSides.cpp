#include "BareSides.h"

#include "CaseView.h"
#include "ElementTopology.h"
#include "MeshEntity.h"

#include <QtGlobal>

namespace Ovra::GeoTool
{

namespace
{

/// The finaliser of SplitMix64, which turns any number into one that looks random.
quint64 scrambled(quint64 number)
{
    number = (number ^ (number >> 30U)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27U)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31U);
}

/// A number for each vertex, the same in every run.
std::vector<quint64> numbersOf(std::size_t vertexCount)
{
    std::vector<quint64> numbers(vertexCount);
    for (std::size_t i = 0; i < vertexCount; ++i) {
        numbers[i] = scrambled((i + 1) * 0x9e3779b97f4a7c15U);
    }
    return numbers;
}

/// Alike for the same vertices in whatever order.
template <typename Vertices, typename VertexOf>
quint64 sideNumber(const std::vector<quint64>& numbers, const Vertices& side, VertexOf vertexOf)
{
    quint64 sum = 0;
    for (const int each : side) {
        sum += numbers[static_cast<std::size_t>(vertexOf(each))];
    }
    return scrambled(sum);
}

/// All sides of elements together: what two of them share goes out.
quint64 sumOfSides(const CaseView& view, const std::vector<quint64>& numbers)
{
    const VertexLists& lists = view.vertexLists(view.elementDimension());
    quint64 sum = 0;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const std::span<const int> element = lists.of(i);
        const auto* const topology =
            ElementTopology::find(view.elementDimension(), static_cast<int>(element.size()));
        if (topology) {
            for (const std::vector<int>& side : topology->sides) {
                sum ^= sideNumber(numbers, side, [&](int local) {
                    return element[static_cast<std::size_t>(local)];
                });
            }
        }
    }
    return sum;
}

/// The mesh faces that have an element on one side alone.
quint64 sumOfOuterFaces(const CaseView& view, const std::vector<quint64>& numbers)
{
    const int dimension = view.faceDimension();
    const VertexLists& lists = view.vertexLists(dimension);
    quint64 sum = 0;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (view.meshEntities(dimension)[i]->adjacencyCount(dimension + 1) == 1) {
            sum ^= sideNumber(numbers, lists.of(i), [](int vertex) { return vertex; });
        }
    }
    return sum;
}

} // namespace

bool mayHaveBareSides(const CaseView& view)
{
    const std::vector<quint64> numbers = numbersOf(view.meshEntities(0).size());
    return sumOfSides(view, numbers) != sumOfOuterFaces(view, numbers);
}

} // namespace Ovra::GeoTool
