#include "FaceElements.h"

#include "Buckets.h"
#include "CaseView.h"
#include "InParallel.h"

#include <algorithm>
#include <span>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

/// It takes a millisecond to look for the faces of these.
constexpr std::size_t fewElements = 65536;

using Meeting = std::pair<int, std::size_t>; ///< a face and an element

bool hasAll(std::span<const int> element, std::span<const int> face)
{
    return std::all_of(face.begin(), face.end(), [element](int vertex) {
        return std::find(element.begin(), element.end(), vertex) != element.end();
    });
}

Buckets<int> bySmallestVertex(const VertexLists& faces, std::size_t vertexCount)
{
    return Buckets<int>(vertexCount, [&faces](auto add) {
        for (std::size_t i = 0; i < faces.size(); ++i) {
            const std::span<const int> face = faces.of(i);
            if (!face.empty()) {
                add(static_cast<std::size_t>(*std::min_element(face.begin(), face.end())),
                    static_cast<int>(i));
            }
        }
    });
}

} // namespace

FaceElements::FaceElements(const CaseView& view)
{
    const VertexLists& faces = view.vertexLists(view.faceDimension());
    const VertexLists& elements = view.vertexLists(view.elementDimension());
    const Buckets<int> facesAt = bySmallestVertex(faces, view.meshEntities(0).size());
    const auto meetings = gatherInParallel<Meeting>(
        elements.size(), fewElements, [&](std::size_t element, std::vector<Meeting>& found) {
            for (const int vertex : elements.of(element)) {
                for (const int face : facesAt[static_cast<std::size_t>(vertex)]) {
                    if (hasAll(elements.of(element), faces.of(static_cast<std::size_t>(face)))) {
                        found.emplace_back(face, element);
                    }
                }
            }
        });
    elements_.assign(faces.size(), {None, None});
    for (const auto& [face, element] : meetings) {
        auto& [first, second] = elements_[static_cast<std::size_t>(face)];
        const auto position = static_cast<int>(element);
        if (first == None) {
            first = position;
        } else if (second == None && first != position) { // which may list a vertex twice
            second = position;
        }
    }
}

} // namespace Ovra::GeoTool
