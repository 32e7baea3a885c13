#pragma once

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>
#endif

/// \file
/// \brief A bound on memory, so that a test in which a stream asks for gigabytes ends in a failure.

#if defined(__SANITIZE_ADDRESS__)
#define STREAM_TESTING_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define STREAM_TESTING_ADDRESS_SANITIZER
#endif
#endif

#ifdef STREAM_TESTING_ADDRESS_SANITIZER
// The sanitizer reserves terabytes of address space for itself, so that it has to set the bound.
extern "C" const char* __asan_default_options()
{
    return "max_allocation_size_mb=64";
}
#endif

namespace StreamTesting
{

/// \brief Allows the process 64 MB more than it has.
inline void limitMemory()
{
#if defined(Q_OS_UNIX) && !defined(STREAM_TESTING_ADDRESS_SANITIZER)
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t size = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (rlim_t(64) << 20);
    const rlimit limit{size, size};
    setrlimit(RLIMIT_AS, &limit);
#endif
}

} // namespace StreamTesting
