#pragma once

#include "FaceShells.h"

#include <QString>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief The faces in Gmsh's current model that bound no solid, and the solids that they could
/// bound, by means of the OpenCASCADE kernel.
class LooseFaces
{
public:
    /// \brief Looks through the current model.
    /// \param tolerance edges up to this length are no openings, in the unit of the model
    explicit LooseFaces(double tolerance);

    int count() const { return static_cast<int>(faces_.size()); }
    const std::vector<FaceShells::Shell>& shells() const { return shells_; }
    int closedCount() const;
    int freeEdgeCount() const;

    /// \brief Whether all of them lie in one plane, as those of a planar case.
    bool areFlat() const;

    /// \brief Joins the edges of the open shells where they coincide, after which this object tells
    /// of a model that is no more; the faces get new numbers.
    void sew(double tolerance) const;

    /// \brief Makes solids of the closed shells, numbered from 1; a shell inside a solid bounds it
    /// from within as a hollow, what lies inside the hollow is a solid again.
    void makeSolids();

    int solidCount() const { return solidCount_; }
    int hollowCount() const { return hollowCount_; }

    /// \brief Closed shells that the kernel finds no volume in: no solids are made of them.
    int emptyCount() const { return emptyCount_; }

private:
    struct Body
    {
        int loop = 0; ///< its surface loop; its solid while bodies are being nested
        double volume = 0;
        int depth = 0;
        int around = -1; ///< the smallest body that it lies in
        std::vector<int> faces;
    };

    void addBody(const FaceShells::Shell& shell);
    void nest(Body& inner);
    void addSolids();

    std::vector<int> faces_;
    std::vector<FaceShells::Shell> shells_;
    std::vector<Body> bodies_;
    int solidCount_ = 0;
    int hollowCount_ = 0;
    int emptyCount_ = 0;
};

} // namespace Ovra::GeoTool
