#pragma once

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
    int find(std::int64_t id) const;

private:
    std::vector<int> byId_;         ///< positions, while the ids are dense
    std::vector<std::int64_t> ids_; ///< otherwise
};

} // namespace Ovra::GeoTool
