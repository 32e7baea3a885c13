#include "MeshQuality.h"

#include "CaseView.h"
#include "MeshEntity.h"
#include "Progress.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Elements that are judged before the next are: 3 MiB.
constexpr std::size_t atATime = 1U << 17U;

} // namespace

void Extremes::add(double value, int id)
{
    if (smallestId == 0 || value < smallest) {
        smallest = value;
        smallestId = id;
    }
    if (largestId == 0 || value > largest) {
        largest = value;
        largestId = id;
    }
}

MeshQuality::MeshQuality(const CaseView& view, int dimension, Progress& progress)
{
    const std::vector<MeshEntity*>& elements = view.meshEntities(dimension);
    const ModelEntity* owner = nullptr;
    double* total = nullptr;
    for (std::size_t begin = 0; begin < elements.size(); begin += atATime) {
        const auto qualities =
            ElementQuality::ofMany(view, dimension, std::min(atATime, elements.size() - begin),
                                   [begin](std::size_t i) { return begin + i; });
        for (std::size_t i = 0; i < qualities.size(); ++i) {
            const MeshEntity& element = *elements[begin + i];
            if (!total || element.parent() != owner) { // neighbours mostly stand on the same
                owner = element.parent();
                total = &totals_[owner];
            }
            add(element, qualities[i], *total);
        }
        const std::size_t done = begin + qualities.size();
        progress.update(static_cast<qint64>(done), static_cast<qint64>(elements.size()),
                        QStringLiteral("elements"));
    }
}

void MeshQuality::add(const MeshEntity& element, const ElementQuality& quality, double& onOwner)
{
    if (std::vector<int>* const list = listOf(quality.state)) {
        list->push_back(element.id());
    }
    if (quality.state != ElementQuality::State::Unknown) {
        measure_.add(quality.measure, element.id());
        histogram_.addMeasure(quality.measure);
        total_ += quality.measure;
        onOwner += quality.measure;
    }
    if (!std::isnan(quality.aspect)) {
        aspect_.add(quality.aspect, element.id());
        histogram_.addAspect(quality.aspect);
    }
}

std::vector<int>* MeshQuality::listOf(ElementQuality::State state)
{
    switch (state) {
    case ElementQuality::State::Degenerate:
        return &degenerate_;
    case ElementQuality::State::Inverted:
        return &inverted_;
    case ElementQuality::State::Twisted:
        return &twisted_;
    case ElementQuality::State::Unknown:
        return &unknown_;
    default:
        return nullptr;
    }
}

} // namespace Ovra::GeoTool
