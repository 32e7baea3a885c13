#include "FreedMemory.h"

#include <malloc.h>

namespace Ovra::GeoTool
{

void keepFreedMemory()
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1); // never
}

} // namespace Ovra::GeoTool
