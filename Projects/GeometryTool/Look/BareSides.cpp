#include "BareSides.h"

#include "CaseView.h"
#include "ElementTopology.h"
#include "InParallel.h"
#include "MeshEntity.h"

#include <QtGlobal>

#include <atomic>

namespace Ovra::GeoTool
{

namespace
{

/// It takes a millisecond to sum up the sides of these.
constexpr std::size_t fewElements = 16384;

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

quint64 sumOfSides(std::span<const int> element, int dimension, const std::vector<quint64>& numbers)
{
    quint64 sum = 0;
    if (const auto* topology = ElementTopology::find(dimension, static_cast<int>(element.size()))) {
        ElementTopology::with(*topology, [&](auto kind) {
            for (const ElementTopology::Side& side : kind().sides) {
                sum ^= sideNumber(numbers, side, [element](int local) {
                    return element[static_cast<std::size_t>(local)];
                });
            }
        });
    }
    return sum;
}

/// All sides of elements together: what two of them share goes out.
quint64 sumOfSides(const CaseView& view, const std::vector<quint64>& numbers)
{
    const VertexLists& lists = view.vertexLists(view.elementDimension());
    std::atomic<quint64> sum = 0;
    inParallel(lists.size(), fewElements, [&](std::size_t begin, std::size_t end) {
        quint64 ofRange = 0;
        for (std::size_t i = begin; i < end; ++i) {
            ofRange ^= sumOfSides(lists.of(i), view.elementDimension(), numbers);
        }
        sum ^= ofRange;
    });
    return sum;
}

/// The mesh faces that have an element on one side alone.
quint64 sumOfOuterFaces(const CaseView& view, const std::vector<quint64>& numbers)
{
    const int dimension = view.faceDimension();
    const VertexLists& lists = view.vertexLists(dimension);
    quint64 sum = 0;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (view.upward(dimension).of(i).size() == 1) {
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
