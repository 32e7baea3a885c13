#include "FreedMemory.h"

#include <limits>
#include <malloc.h>

namespace Ovra::GeoTool
{

void keepFreedMemory()
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

} // namespace Ovra::GeoTool
