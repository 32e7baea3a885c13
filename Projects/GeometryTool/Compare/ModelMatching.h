#pragma once

#include "CaseMatch.h"
#include "PlacedCase.h"

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Matches the model entities of two cases whose ids mean nothing: by the mesh on them, by
/// their centroids, and by their names.
///
/// Those that lie in the same place, a face and its double for instance, are told apart by their
/// names and the tags of their attributes, and by those of their neighbours.
class ModelMatching
{
public:
    /// \param a, b, match not owned; must outlive this object
    /// \param match takes in what is matched
    /// \param tolerance how far each coordinate of a centroid may differ
    ModelMatching(const PlacedCase& a, const PlacedCase& b, double tolerance, CaseMatch& match);

    void run();

private:
    using Owner = EntityName::Owner;
    using Signatures = std::vector<Signature>;

    /// What tells the model entities of a case apart, by dimension and position.
    struct Looks
    {
        explicit Looks(const ComparedCase& oneCase);

        std::array<Signatures, 4> own;        ///< name, tag, and tags of attributes
        std::array<Signatures, 4> neighbours; ///< those of the neighbours
        std::array<Signatures, 4> names;
    };

    void matchByMesh(int dimension);
    void matchByVotes(int dimension, bool withLooks);
    void matchByCentroids(int dimension);
    void matchByNames(int dimension);
    void matchWithLooks(int dimension, const Signatures& a, const Signatures& b);

    const PlacedCase& a_;
    const PlacedCase& b_;
    double tolerance_;
    CaseMatch& match_;
    Looks looksInA_;
    Looks looksInB_;
};

} // namespace Ovra::GeoTool
