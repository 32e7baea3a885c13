#include "LargePages.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace Ovra::GeoTool
{

namespace
{

constexpr std::size_t largePage = 2U << 20U;

/// What is allocated comes from one piece at the end of the process's data, which only grows.
void keepInOnePiece()
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

/// A file that is larger, such as one with a hole in it, is no reason to ask for more.
qint64 memoryOfMachine()
{
    return static_cast<qint64>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE);
}

} // namespace

void useLargePages(qint64 bytes)
{
    if (bytes < 1) {
        return;
    }
    keepInOnePiece();
    // What is freed here is where the heap takes from next.
    std::size_t size = static_cast<std::size_t>(std::min(bytes, memoryOfMachine()));
    void* const room = std::malloc(size); // NOLINT(*-no-malloc)
    void* aligned = room;
    if (room && std::align(largePage, 1, aligned, size)) {
        madvise(aligned, size, MADV_HUGEPAGE);
    }
    std::free(room); // NOLINT(*-no-malloc)
}

} // namespace Ovra::GeoTool
