#pragma once

#include "Buckets.h"
#include "ElementSides.h"

#include <QString>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;
class Progress;
class UpwardPositions;

/// \brief Looks how the elements meet one another, and which of them lie on which mesh face; in a
/// case without regions which mesh faces lie on which edge.
///
/// It goes by whole sides of elements. The upward list of a mesh face goes by vertices alone, and
/// so does CaseView::upward(): they may name an element that has all of them without having that
/// side.
class SideCheck
{
public:
    /// \param view, sink not owned; must outlive this object
    SideCheck(const CaseView& view, FindingSink& sink);

    void run(Progress& progress);

    /// \brief Reports a mesh face with more than two elements.
    static void checkElementCount(const Geo::MeshEntity& face, std::size_t count,
                                  FindingSink& sink);

private:
    void cover(std::span<const int> faces);
    void checkFaces(std::span<const int> faces);
    void checkRuns(const ElementSides::Part& part);
    bool isSuspect(int vertex) const;
    void checkFace(std::size_t position, ElementSides::Run sides);
    void checkElementsAt(std::size_t position, ElementSides::Run sides);
    void checkRegions(const Geo::MeshEntity& face, ElementSides::Run sides);
    void checkForeign(const Geo::MeshEntity& face, ElementSides::Run sides);
    void reportMissing(const Geo::MeshEntity& face, const Geo::ModelEntity& region, bool isBare);
    void checkRun(const ElementSides::Key& key, ElementSides::Run sides);
    void checkMeeting(const ElementSides::Key& key, ElementSides::Run pair);
    void checkCover(const ElementSides::Key& key, ElementSides::Run sides);
    bool isCovered(const ElementSides::Key& key) const;
    bool hasElementIn(ElementSides::Run sides, const Geo::ModelEntity* region) const;
    QString elementNames(ElementSides::Run sides) const;
    QString verticesText(const ElementSides::Key& key) const;

    const CaseView& view_;
    FindingSink& sink_;
    const UpwardPositions& elements_; ///< at the mesh faces; made ahead of the sides
    ElementSides sides_;
    Buckets<int> facesByPart_;               ///< positions of mesh faces, by that of their part
    std::vector<ElementSides::Key> covered_; ///< the mesh faces of the part, ascending
};

} // namespace Ovra::GeoTool
