#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <type_traits>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Things by a small number of theirs, those of the same number next to one another and in
/// the order in which they came.
///
/// They are counted and then put in their place, all in one array: linear time, where a sort of all
/// takes n log n. What has to be in order within a bucket can be sorted there.
template <typename Thing>
class Buckets
{
public:
    Buckets() = default;

    /// \param count how many buckets there are
    /// \param forEach calls what it is given with the bucket and the thing, or a function that makes
    ///        the thing, for each thing; called twice, and must give the same both times
    template <typename ForEach>
    Buckets(std::size_t count, ForEach forEach)
        : starts_(count + 2, 0)
    {
        forEach([this](std::size_t bucket, const auto&) { ++starts_[bucket + 2]; });
        fill(forEach);
    }

    /// \param counts  how many things there are in each bucket
    /// \param forEach as above, but called once
    template <typename ForEach>
    Buckets(std::span<const int> counts, ForEach forEach)
        : starts_(counts.size() + 2, 0)
    {
        std::copy(counts.begin(), counts.end(), starts_.begin() + 2);
        fill(forEach);
    }

    std::size_t count() const { return starts_.empty() ? 0 : starts_.size() - 1; }

    std::span<const Thing> operator[](std::size_t bucket) const
    {
        return std::span(things_).subspan(starts_[bucket], sizeOf(bucket));
    }

    std::span<Thing> operator[](std::size_t bucket)
    {
        return std::span(things_).subspan(starts_[bucket], sizeOf(bucket));
    }

    /// \brief All things, bucket by bucket.
    const std::vector<Thing>& things() const { return things_; }

private:
    // The counts stand two places ahead, so that filling a bucket moves its start to where it belongs.
    template <typename ForEach>
    void fill(ForEach& forEach)
    {
        things_.resize(std::accumulate(starts_.begin(), starts_.end(), std::size_t(0)));
        std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
        forEach([this](std::size_t bucket, const auto& thing) {
            things_[starts_[bucket + 1]++] = made(thing);
        });
        starts_.pop_back();
    }

    template <typename ThingOrMaker>
    static Thing made(const ThingOrMaker& thing)
    {
        if constexpr (std::is_invocable_v<ThingOrMaker>) {
            return thing();
        } else {
            return thing;
        }
    }

    std::size_t sizeOf(std::size_t bucket) const { return starts_[bucket + 1] - starts_[bucket]; }

    std::vector<std::size_t> starts_;
    std::vector<Thing> things_;
};

} // namespace Ovra::GeoTool
