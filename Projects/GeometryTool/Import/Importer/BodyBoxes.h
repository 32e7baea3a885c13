#pragma once

#include "BoxTree.h"

#include <set>

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief Where the bodies of a mesh lie, by their boxes: most of a mesh is near no other body.
class BodyBoxes
{
public:
    /// \param margin by which the boxes are wider on all sides
    explicit BodyBoxes(const ImportedMesh& mesh, double margin = 0);

    /// \brief Whether \p box meets the box of a body other than \p own, by position.
    bool hasOther(const Geo::Box& box, const std::set<int>& own) const;

private:
    BoxTree tree_;
};

} // namespace Ovra::GeoTool
