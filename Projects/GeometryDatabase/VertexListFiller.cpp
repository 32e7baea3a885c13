#include "VertexListFiller.h"

#include "MeshEntity.h"

#include <utility>

namespace Ovra::Geo
{

VertexListFiller::VertexListFiller(const IdTable<MeshEntity>& vertices)
    : places_(2 * static_cast<std::size_t>(vertices.size()) + 1)
{
    for (IdTableWalk<MeshEntity> walk(vertices); walk.hasNext();) {
        const auto entry = walk.next();
        if (entry.key() >= 0 && static_cast<std::size_t>(entry.key()) < places_.size()) {
            places_[static_cast<std::size_t>(entry.key())].vertex = entry.value();
        }
    }
}

int VertexListFiller::placeOf(const MeshEntity* vertex) const
{
    const auto place = static_cast<std::size_t>(vertex->id()); // a negative one is far off
    return place < places_.size() && places_[place].vertex == vertex ? vertex->id() : Nowhere;
}

void VertexListFiller::append(const IdTable<MeshEntity>& elements, int dimension)
{
    // The lists are longer only when all is done that can run out of memory.
    const std::vector<quint32> counts = countElements(elements);
    makeRoom(dimension, counts);
    fillLists(elements, dimension);
    takeIn(dimension, counts);
    count_ += static_cast<qint64>(placesOfElements_.size());
    placesOfElements_.clear();
}

std::vector<quint32> VertexListFiller::countElements(const IdTable<MeshEntity>& elements)
{
    std::vector<quint32> counts(places_.size());
    constexpr std::size_t usual = 4;
    placesOfElements_.reserve(usual * static_cast<std::size_t>(elements.size()));
    for (IdTableWalk<MeshEntity> walk(elements); walk.hasNext();) {
        for (const MeshEntity* vertex : std::as_const(*walk.next().value()).adjacencies(0)) {
            const int place = placeOf(vertex);
            placesOfElements_.push_back(place);
            if (place != Nowhere) {
                ++counts[static_cast<std::size_t>(place)];
            }
        }
    }
    return counts;
}

void VertexListFiller::makeRoom(int dimension, const std::vector<quint32>& counts)
{
    for (std::size_t i = 0; i < places_.size(); ++i) {
        if (counts[i] != 0) {
            places_[i].next = places_[i].vertex->adjacencies(dimension).makeRoom(counts[i]);
        }
    }
}

void VertexListFiller::takeIn(int dimension, const std::vector<quint32>& counts)
{
    for (std::size_t i = 0; i < places_.size(); ++i) {
        if (counts[i] != 0) {
            places_[i].vertex->adjacencies(dimension).takeIn(counts[i]);
        }
    }
}

void VertexListFiller::fillLists(const IdTable<MeshEntity>& elements, int dimension)
{
    auto place = placesOfElements_.cbegin();
    for (IdTableWalk<MeshEntity> walk(elements); walk.hasNext();) {
        MeshEntity* const element = walk.next().value();
        for (MeshEntity* vertex : std::as_const(*element).adjacencies(0)) {
            if (*place == Nowhere) {
                vertex->append(element, dimension);
            } else {
                *places_[static_cast<std::size_t>(*place)].next++ = element;
            }
            ++place;
        }
    }
}

} // namespace Ovra::Geo
