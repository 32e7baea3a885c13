#pragma once

#include <cstddef>

/// \file
/// \brief Counts what the process has allocated, the heap's own headers included. Only in programs
///        that are not timed, and with the GNU C library.

namespace HeapWatch
{

/// \brief Bytes that are allocated at present.
std::size_t allocated();

/// \brief The most bytes that have been allocated at once since resetPeak().
std::size_t peak();

/// \brief Begins anew at what is allocated now.
void resetPeak();

} // namespace HeapWatch
