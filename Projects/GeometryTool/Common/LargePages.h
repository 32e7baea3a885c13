#pragma once

#include <QtGlobal>

namespace Ovra::GeoTool
{

/// \brief Lets the heap of this process take its next memory in large pages, where the system has
/// them for those who ask, and keep what is freed for what is allocated next.
///
/// A mesh is a great many small objects, and its walks make arrays of megabytes that do not last:
/// in pages of 4 KiB, handed out one at a time and given back with each array, the kernel takes a
/// fifth of the time. For a process that has one case to see to and ends.
/// \param bytes what may be needed; no more is taken of the memory than is used in the end. What
/// the system does not grant, and a number below 1, change nothing.
void useLargePages(qint64 bytes);

} // namespace Ovra::GeoTool
