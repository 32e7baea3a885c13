#include "Signatures.h"

#include <algorithm>

namespace Ovra::GeoTool
{

std::vector<Signed> inOrder(const std::vector<Signature>& signatures)
{
    std::vector<Signed> list;
    list.reserve(signatures.size());
    for (std::size_t i = 0; i < signatures.size(); ++i) {
        if (signatures[i] != 0) {
            list.push_back({signatures[i], static_cast<int>(i)});
        }
    }
    std::sort(list.begin(), list.end());
    return list;
}

} // namespace Ovra::GeoTool
