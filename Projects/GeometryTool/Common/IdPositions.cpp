#include "IdPositions.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

/// As many places of the table as there may be for each id.
constexpr std::size_t placesOfId = 8;

bool areDense(const std::vector<std::int64_t>& ids)
{
    return ids.empty() ||
           (ids.front() >= 0 && static_cast<std::size_t>(ids.back()) / placesOfId <= ids.size());
}

} // namespace

IdPositions::IdPositions(std::vector<std::int64_t> ids)
{
    if (!areDense(ids)) {
        ids_ = std::move(ids);
        return;
    }
    byId_.assign(ids.empty() ? 0 : static_cast<std::size_t>(ids.back()) + 1, -1);
    for (std::size_t i = ids.size(); i > 0; --i) { // of equal ids the first counts
        byId_[static_cast<std::size_t>(ids[i - 1])] = static_cast<int>(i) - 1;
    }
}

int IdPositions::search(std::int64_t id) const
{
    const auto found = std::lower_bound(ids_.begin(), ids_.end(), id);
    return found != ids_.end() && *found == id ? static_cast<int>(found - ids_.begin()) : -1;
}

} // namespace Ovra::GeoTool
