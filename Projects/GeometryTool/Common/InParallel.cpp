#include "InParallel.h"

#include <QThread>

#include <algorithm>
#include <future>

namespace Ovra::GeoTool
{

void inParallel(std::size_t size, std::size_t least,
                const std::function<void(std::size_t begin, std::size_t end)>& work)
{
    const auto cores = static_cast<std::size_t>(std::max(QThread::idealThreadCount(), 1));
    const std::size_t count = std::clamp<std::size_t>(size / least, 1, cores);
    const auto beginOf = [=](std::size_t range) { return size / count * range; };
    std::vector<std::future<void>> others;
    for (std::size_t range = 1; range < count; ++range) {
        const std::size_t end = range + 1 < count ? beginOf(range + 1) : size;
        // Deferred where the system has no thread left.
        others.push_back(
            std::async(std::launch::async | std::launch::deferred, work, beginOf(range), end));
    }
    work(0, count > 1 ? beginOf(1) : size);
    for (std::future<void>& other : others) {
        other.get();
    }
}

std::vector<std::size_t> placesInParallel(std::size_t size, std::size_t least,
                                          const std::function<bool(std::size_t place)>& isWanted)
{
    return gatherInParallel<std::size_t>(
        size, least, [&isWanted](std::size_t place, std::vector<std::size_t>& places) {
            if (isWanted(place)) {
                places.push_back(place);
            }
        });
}

} // namespace Ovra::GeoTool
