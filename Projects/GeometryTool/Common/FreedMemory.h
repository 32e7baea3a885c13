#pragma once

namespace Ovra::GeoTool
{

/// \brief Has the heap of this process keep what is freed for what is allocated next.
///
/// A walk over a mesh makes arrays of megabytes that do not last. Each would be memory of its own,
/// which the kernel hands out page by page and takes back. For a process that has one case to see
/// to and ends.
void keepFreedMemory();

} // namespace Ovra::GeoTool
