#pragma once

#include "NeighbourList.h"

#include <QHash>
#include <QSet>

namespace Ovra::Geo
{

/// \brief Keeps sets of the neighbours of vertices with very many, for as long as their lists of
///        one dimension do not change. Not for hosts.
///
/// A million elements about one vertex look up what they have in common with it: scanning its list
/// each time would take time by the square of their number.
class NeighbourSets
{
public:
    /// \brief Up to this many neighbours a list is scanned without delay.
    static constexpr qsizetype Few = 64;

    /// \brief The entries of \p list, which is that of \p vertex in all calls.
    const QSet<MeshEntity*>& of(const MeshEntity* vertex, const NeighbourList& list)
    {
        QSet<MeshEntity*>& set = sets_[vertex];
        if (set.isEmpty()) {
            set = QSet<MeshEntity*>(list.begin(), list.end());
        }
        return set;
    }

private:
    QHash<const MeshEntity*, QSet<MeshEntity*>> sets_;
};

} // namespace Ovra::Geo
