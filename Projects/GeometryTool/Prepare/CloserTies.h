#pragma once

#include "VertexTies.h"

#include <QVarLengthArray>

namespace Ovra::GeoTool
{

/// \brief Ties vertices to the mesh face of the partner that has their image, where the library's
///        search has ended at another.
///
/// That search looks at the mesh faces about the vertex next to the image, and nowhere else. Where
/// triangles have obtuse angles, as those that are stretched along a wall, none of these need hold
/// the image, and where it lies on the very side between two of them rounding may have it in
/// neither; the tie is then that of a place beside it. From there this goes on, over mesh faces of
/// the partner that share vertices, those that yield the nearest places first.
class CloserTies
{
public:
    /// \param mesh      must outlive this object
    /// \param ties      the ties to be looked at, all of them without fault
    /// \param tolerance that of the weights, as the library had it
    CloserTies(Geo::Mesh& mesh, const VertexTies& ties, double tolerance);

    /// \brief Ties \p vertex anew if it stands for a place beside \p image, and another mesh face of
    ///        its partner yields one less than half as far away.
    /// \return whether it does
    bool improve(Geo::MeshEntity& vertex, const Geo::Vector& image) const;

    /// \brief What to say of \p count vertices that were tied anew, behind the number of all.
    /// \return empty for none
    static QString report(qint64 count);

private:
    struct Candidate
    {
        Geo::MeshEntity* meshFace = nullptr;
        QVarLengthArray<double, 4> weights;
        double miss = 0.0;
    };

    Candidate candidate(Geo::MeshEntity& meshFace, const Geo::Vector& image) const;
    Candidate closest(Geo::MeshEntity& start, const Geo::Vector& image) const;
    bool isBeside(double miss, const Geo::MeshEntity& meshFace) const;

    Geo::Mesh& mesh_;
    VertexTies ties_;
    double tolerance_;
};

} // namespace Ovra::GeoTool
