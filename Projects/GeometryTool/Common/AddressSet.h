#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace Ovra::GeoTool
{

/// \brief A set of addresses of objects, which are asked for and never followed.
///
/// A bit for each place that an object can begin at, in pages. The objects of a mesh lie close
/// together, so that the bits take two bytes or so an object and stay in the cache; a hash takes
/// fifty bytes and a cache miss for each question.
class AddressSet
{
public:
    void insert(const void* address)
    {
        std::unique_ptr<Page>& page = pages_[pageOf(address)];
        if (!page) {
            page = std::make_unique<Page>();
            lastNumber_ = noPage;
        }
        page->set(placeOf(address));
    }

    bool contains(const void* address) const
    {
        const std::uintptr_t number = pageOf(address);
        if (number != lastNumber_) {
            const auto found = pages_.find(number);
            lastPage_ = found == pages_.end() ? nullptr : found->second.get();
            lastNumber_ = number;
        }
        return lastPage_ != nullptr && isAligned(address) && lastPage_->test(placeOf(address));
    }

private:
    static constexpr std::uintptr_t alignment = alignof(void*);
    static constexpr std::size_t placesOfPage = std::size_t(1) << 17U;
    static constexpr std::uintptr_t noPage = ~std::uintptr_t(0);
    using Page = std::bitset<placesOfPage>;

    static std::uintptr_t number(const void* address)
    {
        return reinterpret_cast<std::uintptr_t>(address);
    }
    static std::uintptr_t pageOf(const void* address)
    {
        return number(address) / alignment / placesOfPage;
    }
    static std::size_t placeOf(const void* address)
    {
        return number(address) / alignment % placesOfPage;
    }
    static bool isAligned(const void* address) { return number(address) % alignment == 0; }

    std::unordered_map<std::uintptr_t, std::unique_ptr<Page>> pages_;
    mutable std::uintptr_t lastNumber_ = noPage;
    mutable const Page* lastPage_ = nullptr;
};

} // namespace Ovra::GeoTool
