#include "EqualSets.h"

namespace Ovra::GeoTool
{

unsigned EqualSets::hashOf(std::span<const int> vertices)
{
    unsigned sum = 0;
    for (const int vertex : vertices) {
        const auto number = static_cast<unsigned>(vertex);
        sum += (number ^ number >> 16U) * number;
    }
    return sum;
}

EqualSets::Set EqualSets::setOf(std::span<const int> vertices)
{
    Set set;
    set.fill(-1);
    std::copy(vertices.begin(), vertices.end(), set.begin());
    std::sort(set.begin(), set.end());
    return set;
}

std::vector<EqualSets::Group> EqualSets::groupsOf(std::vector<Member>& members)
{
    std::sort(members.begin(), members.end());
    std::vector<Group> groups;
    for (std::size_t i = 1; i < members.size(); ++i) {
        if (members[i].set != members[i - 1].set) {
            continue;
        }
        if (groups.empty() || groups.back().back() != members[i - 1].element) {
            groups.push_back({members[i - 1].element});
        }
        groups.back().push_back(members[i].element);
    }
    return groups;
}

} // namespace Ovra::GeoTool
