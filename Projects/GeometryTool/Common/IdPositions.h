#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Positions in a list of ascending ids, by id: from a table while the ids are dense, as
/// those of meshes are, and by a search otherwise.
///
/// A hash takes ten times the memory, and a cache miss or two for each id.
class IdPositions
{
public:
    IdPositions() = default;

    /// \param ids ascending
    explicit IdPositions(std::vector<std::int64_t> ids);

    /// \brief The position of \p id; -1 if it is not in the list.
    int find(std::int64_t id) const
    {
        if (ids_.empty()) {
            const bool isInTable = id >= 0 && static_cast<std::size_t>(id) < byId_.size();
            return isInTable ? byId_[static_cast<std::size_t>(id)] : -1;
        }
        return search(id);
    }

private:
    int search(std::int64_t id) const;

    std::vector<int> byId_;         ///< positions, while the ids are dense
    std::vector<std::int64_t> ids_; ///< otherwise
};

} // namespace Ovra::GeoTool
