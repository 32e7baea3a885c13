#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Calls \p work with ranges that make up 0 to \p size, on as many cores as there are, and
/// returns when all is done.
///
/// For arrays of the host: a database is for one thread at a time. Where no more threads are to be
/// had, the ranges are worked on one after the other. What a range throws is thrown when the others
/// are done.
/// \param least so many make a range; fewer are not worth a thread
/// \param work  called with the begin of a range and its end, which is not in it, by several threads
///              at a time: ranges may write to nothing that they share
void inParallel(std::size_t size, std::size_t least,
                const std::function<void(std::size_t begin, std::size_t end)>& work);

/// \brief What \p work adds for each of the places from 0 to \p size, in the order of these; asked like
/// inParallel().
/// \param work called with a place and the list to add to
template <typename Thing, typename Work>
std::vector<Thing> gatherInParallel(std::size_t size, std::size_t least, Work work)
{
    std::mutex mutex; // of byBegin
    std::map<std::size_t, std::vector<Thing>> byBegin;
    inParallel(size, least, [&](std::size_t begin, std::size_t end) {
        std::vector<Thing> things;
        for (std::size_t place = begin; place < end; ++place) {
            work(place, things);
        }
        const std::lock_guard lock(mutex);
        byBegin[begin] = std::move(things);
    });
    std::vector<Thing> all;
    for (const auto& [begin, things] : byBegin) {
        all.insert(all.end(), things.begin(), things.end());
    }
    return all;
}

/// \brief The places from 0 to \p size of which \p isWanted is true, ascending; asked like inParallel().
std::vector<std::size_t> placesInParallel(std::size_t size, std::size_t least,
                                          const std::function<bool(std::size_t place)>& isWanted);

} // namespace Ovra::GeoTool
