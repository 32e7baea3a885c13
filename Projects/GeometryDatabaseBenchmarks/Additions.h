#pragma once

#include "Vector.h"

#include <QHash>
#include <QList>

#include <utility>
#include <vector>

namespace Ovra::Geo
{
class Database;
class Mesh;
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Benchmarks
{

/// \brief The mesh entities that an operation has added to a case: the floor of its time is to make
///        and link these, and nothing else.
class Additions
{
public:
    /// \param before a case as it was
    /// \param after  an equal one, after the operation
    Additions(Ovra::Geo::Database& before, Ovra::Geo::Database& after);

    int count() const { return static_cast<int>(records_.size()); }

    /// \brief Adds the entities to the case as it was.
    ///
    /// Each is created, gets its vertices, is entered in the mesh and at its parent, and stands in
    /// the lists of its vertices; faces and edges list what they did. What stood on another vertex
    /// before and stands on a new one after goes over to it, in the lists of all three.
    /// \return seconds of processor time, finding the vertices and parents not counted in
    double make(Ovra::Geo::Database& before);

private:
    using Key = std::pair<int, int>; // dimension and id

    struct Record
    {
        int dimension = 0;
        Key parent;
        Ovra::Geo::Vector point;
        std::size_t place = 0;
        std::vector<std::size_t> vertices;
        std::vector<std::size_t> upward;
    };

    /// Where an entity that was there before has a new vertex.
    struct Takeover
    {
        std::size_t place = 0;
        int index = 0;
        std::size_t vertex = 0;
    };

    void record(Ovra::Geo::MeshEntity* entity);
    void recordTakeovers(Ovra::Geo::MeshEntity* entity, const Ovra::Geo::Mesh& before);
    std::size_t placeOf(const Ovra::Geo::MeshEntity* entity);
    void findPlaces(Ovra::Geo::Database& before);
    void findParents(Ovra::Geo::Database& before);
    void makeEntity(std::size_t index, Ovra::Geo::Database& before);
    void linkUpward(const Record& record);
    void takeOver(const Takeover& takeover);

    std::vector<Record> records_;
    std::vector<Takeover> takeovers_;
    QHash<Key, std::size_t> places_;
    std::vector<Key> keys_;
    std::vector<Ovra::Geo::MeshEntity*> entities_; // at each place
    std::vector<Ovra::Geo::ModelEntity*> parents_; // of each record
};

} // namespace Benchmarks
