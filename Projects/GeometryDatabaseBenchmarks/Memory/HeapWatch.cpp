#include "HeapWatch.h"

#include <algorithm>
#include <cerrno>
#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace HeapWatch
{

namespace
{

std::size_t allocatedBytes = 0; // of one thread: the programs that watch have no other
std::size_t peakBytes = 0;

std::size_t sizeOf(void* block)
{
    constexpr std::size_t header = sizeof(std::size_t);
    return block != nullptr ? malloc_usable_size(block) + header : 0;
}

void* entered(void* block)
{
    allocatedBytes += sizeOf(block);
    peakBytes = std::max(peakBytes, allocatedBytes);
    return block;
}

void leave(void* block)
{
    allocatedBytes -= sizeOf(block);
}

} // namespace

std::size_t allocated()
{
    return allocatedBytes;
}

std::size_t peak()
{
    return peakBytes;
}

void resetPeak()
{
    peakBytes = allocatedBytes;
}

} // namespace HeapWatch

extern "C" {

void* malloc(std::size_t size) noexcept
{
    return HeapWatch::entered(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    return HeapWatch::entered(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept
{
    HeapWatch::leave(block);
    void* moved = __libc_realloc(block, size);
    // What could not grow is still there.
    return HeapWatch::entered(moved != nullptr || size == 0 ? moved : block) == nullptr ? nullptr
                                                                                        : moved;
}

void* memalign(std::size_t alignment, std::size_t size) noexcept
{
    return HeapWatch::entered(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept
{
    *block = memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

void free(void* block) noexcept
{
    HeapWatch::leave(block);
    __libc_free(block);
}
}
