#include "InParallel.h"

#include <QThread>

#include <algorithm>
#include <future>
#include <map>
#include <mutex>

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
        others.push_back(std::async(std::launch::async | std::launch::deferred, work,
                                    beginOf(range), end));
    }
    work(0, count > 1 ? beginOf(1) : size);
    for (std::future<void>& other : others) {
        other.get();
    }
}

std::vector<std::size_t> placesInParallel(std::size_t size, std::size_t least,
                                          const std::function<bool(std::size_t place)>& isWanted)
{
    std::mutex mutex; // of byBegin
    std::map<std::size_t, std::vector<std::size_t>> byBegin;
    inParallel(size, least, [&](std::size_t begin, std::size_t end) {
        std::vector<std::size_t> places;
        for (std::size_t place = begin; place < end; ++place) {
            if (isWanted(place)) {
                places.push_back(place);
            }
        }
        const std::lock_guard lock(mutex);
        byBegin[begin] = std::move(places);
    });
    std::vector<std::size_t> all;
    for (const auto& [begin, places] : byBegin) {
        all.insert(all.end(), places.begin(), places.end());
    }
    return all;
}

} // namespace Ovra::GeoTool
