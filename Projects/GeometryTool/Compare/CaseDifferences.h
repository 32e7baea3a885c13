#pragma once

#include "EntityName.h"
#include "Vector.h"

#include <QString>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief In what two cases can differ, in the order in which DiffReport tells it.
///
/// Documentation/Diff.md tells what counts under each.
enum class DifferenceKind
{
    OnlyInA,
    OnlyInB,
    Version,
    Name,
    Place,
    Vertices,
    Classification,
    Attributes,
    Links,
    Neighbours
};

/// \brief Name of a kind in texts and JSON, such as "only-in-a"; scripts rely on it.
QString differenceName(DifferenceKind kind);

/// \brief What of two cases can differ, in the order in which DiffReport tells it.
enum class ComparedPart
{
    Model,
    ModelVertices,
    ModelEdges,
    ModelFaces,
    ModelRegions,
    RefinementRegions,
    Mesh,
    MeshVertices,
    MeshEdges,
    MeshFaces,
    MeshRegions
};

/// \brief The model or mesh as a whole, or its entities of a dimension.
/// \param dimension 0 to 3, or EntityName::Whole
ComparedPart partOf(EntityName::Owner owner, int dimension);

/// \brief "model", "mesh vertices", ...
QString partName(ComparedPart part);

/// \brief Whom a difference is about: an entity, or a refinement region by its number from 1.
struct Subject
{
    ComparedPart part;
    std::optional<int> inA; ///< the id in A; none where A has nothing like it, or of a whole
    std::optional<int> inB;

    /// \brief "mesh face 7", "mesh face 7 (12 in B)", "the model", "refinement region 2".
    QString text() const;
};

/// \brief What differs, and how it stands in A and in B.
struct Change
{
    QString what;
    QString inA;
    QString inB;

    /// \brief "material_id 3 in A, 4 in B".
    QString text() const;
};

/// \brief What differs of one subject in one respect.
struct Difference
{
    Subject subject;
    std::optional<Geo::Vector> place; ///< the centroid, in A if it is there
    std::vector<Change> changes;      ///< none of what is in one case only

    /// \brief "mesh face 7 at (0.5, 0.5, 0): parent model face 3 in A, model face 4 in B".
    QString text() const;
};

/// \brief All in which two cases differ: how often, and the first of each kind and part.
class CaseDifferences
{
public:
    struct Group
    {
        qint64 count = 0;
        std::vector<Difference>
            first; ///< at most as many as the limit, in order of their discovery
    };

    using Key = std::pair<DifferenceKind, ComparedPart>;

    static constexpr int DefaultLimit = 10;

    /// \param limit how many differences of a kind and part are kept; of the rest only the number
    explicit CaseDifferences(int limit)
        : limit_(limit)
    {
    }

    /// \brief Takes a difference in.
    /// \param make gives the Difference; called only if it is kept: two cases may differ a million
    ///        times
    template <typename Make>
    void add(DifferenceKind kind, ComparedPart part, Make make)
    {
        Group& group = groups_[{kind, part}];
        if (++group.count <= limit_) {
            group.first.push_back(make());
        }
    }

    bool areNone() const { return groups_.empty(); }

    /// \brief How many of a kind there are on a part.
    qint64 count(DifferenceKind kind, ComparedPart part) const;

    const std::map<Key, Group>& groups() const { return groups_; }

private:
    int limit_;
    std::map<Key, Group> groups_;
};

} // namespace Ovra::GeoTool
