#pragma once

#include "IdTable.h"

#include <vector>

namespace Ovra::Geo
{

class MeshEntity;

/// \brief Enters elements into the lists of their vertices, those of a whole mesh at once. Not for
///        hosts.
///
/// Vertices lie anywhere in memory, and fetching them is what takes the time. So each vertex of an
/// element is fetched once, for its place in a table; the elements of each place are counted, the
/// lists get the length that they need, and are then filled by place. That saves a third of the
/// time of appending to one list after the other, and lists that are longer than they need be.
class VertexListFiller
{
public:
    /// \param vertices of the mesh, which do not change meanwhile
    explicit VertexListFiller(const IdTable<MeshEntity>& vertices);

    /// \brief Appends \p elements of \p dimension, in the order of their ids, to the list of that
    ///        dimension of each vertex that they list; twice to one that is listed twice.
    void append(const IdTable<MeshEntity>& elements, int dimension);

    /// \brief The number of vertices that all the elements list.
    qint64 count() const { return count_; }

private:
    struct Place
    {
        MeshEntity* vertex = nullptr;
        MeshEntity** next = nullptr; // of its list
    };

    static constexpr int Nowhere = -1;

    int placeOf(const MeshEntity* vertex) const;
    std::vector<quint32> countElements(const IdTable<MeshEntity>& elements);
    void makeRoom(int dimension, const std::vector<quint32>& counts);
    void fillLists(const IdTable<MeshEntity>& elements, int dimension);
    void takeIn(int dimension, const std::vector<quint32>& counts);

    // Of vertices whose id is below their number or so; others, or such as have another id than the
    // table knows, are rare, and appended to by themselves.
    std::vector<Place> places_;
    std::vector<int> placesOfElements_; // one behind the other
    qint64 count_ = 0;
};

} // namespace Ovra::Geo
