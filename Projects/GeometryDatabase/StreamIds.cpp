#include "StreamIds.h"

#include <algorithm>

namespace Ovra::Geo
{

bool StreamIds::insert(int id)
{
    if (runs_.isEmpty() || id > runs_.last().last) {
        if (!runs_.isEmpty() && id - 1 == runs_.last().last) {
            runs_.last().last = id;
        } else {
            runs_.append({id, id});
        }
        return true;
    }
    if (isInRun(id) || others_.contains(id)) {
        return false;
    }
    others_.insert(id);
    return true;
}

bool StreamIds::isInRun(int id) const
{
    const auto run =
        std::lower_bound(runs_.cbegin(), runs_.cend(), id,
                         [](const Run& candidate, int value) { return candidate.last < value; });
    return run != runs_.cend() && run->first <= id;
}

} // namespace Ovra::Geo
