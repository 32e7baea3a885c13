#pragma once

#include <cstddef>
#include <cstdlib>

/// \file
/// \brief Watches for requests of memory that no test justifies. Include it in one file of a test.
///
/// A request that the system refuses would go unnoticed: Qt's lists put up with it when they reserve.
/// So the largest request is recorded, or the address sanitizer stops the test at the first that is
/// too large. With other C libraries nothing is watched.

#if defined(__SANITIZE_ADDRESS__)
#define OVRA_TEST_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OVRA_TEST_ADDRESS_SANITIZER
#endif
#endif

namespace AllocationWatch
{

/// \brief No value in a test's stream takes more; Qt's own types are read in steps of 1 to 8 MB.
constexpr std::size_t Bound = std::size_t(64) << 20;

inline std::size_t& largestRequest()
{
    static std::size_t largest = 0;
    return largest;
}

/// \brief Whether a request beyond the bound has been made since the start of the process.
inline bool isExceeded()
{
    return largestRequest() > Bound;
}

inline std::size_t recorded(std::size_t size)
{
    if (size > largestRequest()) {
        largestRequest() = size;
    }
    return size;
}

} // namespace AllocationWatch

#if defined(OVRA_TEST_ADDRESS_SANITIZER)

extern "C" const char* __asan_default_options()
{
    return "max_allocation_size_mb=64";
}

#elif defined(__GLIBC__)

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept
{
    return __libc_malloc(AllocationWatch::recorded(size));
}

void* realloc(void* block, std::size_t size) noexcept
{
    return __libc_realloc(block, AllocationWatch::recorded(size));
}
}

#endif
