#include "CaseMatch.h"

namespace Ovra::GeoTool
{

namespace
{

using Owner = EntityName::Owner;

/// \param a, b ascending
void pairEqualIds(EntityMatch& match, const std::vector<int>& a, const std::vector<int>& b)
{
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i] == b[j]) {
            match.pair(static_cast<int>(i++), static_cast<int>(j++));
        } else {
            ++(a[i] < b[j] ? i : j);
        }
    }
}

} // namespace

CaseMatch::CaseMatch(const ComparedCase& a, const ComparedCase& b)
{
    for (const Owner owner : {Owner::Model, Owner::Mesh}) {
        for (int dimension = 0; dimension < 4; ++dimension) {
            of(owner, dimension) =
                EntityMatch(a.count(owner, dimension), b.count(owner, dimension));
        }
    }
}

CaseMatch CaseMatch::byId(const ComparedCase& a, const ComparedCase& b)
{
    CaseMatch match(a, b);
    for (const Owner owner : {Owner::Model, Owner::Mesh}) {
        for (int dimension = 0; dimension < 4; ++dimension) {
            pairEqualIds(match.of(owner, dimension), a.ids(owner, dimension),
                         b.ids(owner, dimension));
        }
    }
    return match;
}

EntityMatch& CaseMatch::of(Owner owner, int dimension)
{
    return (owner == Owner::Model ? model_ : mesh_)[static_cast<std::size_t>(dimension)];
}

const EntityMatch& CaseMatch::of(Owner owner, int dimension) const
{
    return (owner == Owner::Model ? model_ : mesh_)[static_cast<std::size_t>(dimension)];
}

bool CaseMatch::areMatched(Owner owner, const EntityPosition& a, const EntityPosition& b) const
{
    if (a.isNone() || b.isNone()) {
        return a.isNone() && b.isNone();
    }
    return a.dimension == b.dimension && of(owner, a.dimension).inB(a.position) == b.position;
}

} // namespace Ovra::GeoTool
