// A source of its own: the host asks for it, and the modules alone for what is linked to METIS.

#include "GraphCut.h"

namespace Ovra::GeoTool
{

void requireMetis() {}

} // namespace Ovra::GeoTool
