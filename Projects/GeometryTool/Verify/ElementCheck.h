#pragma once

#include <span>

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;
class Progress;

/// \brief Judges every mesh entity by itself: its point or vertices, its shape, and whether it is
/// used at all.
class ElementCheck
{
public:
    /// \param view, sink not owned; must outlive this object
    ElementCheck(const CaseView& view, FindingSink& sink);

    void run(Progress& progress);

    /// \brief True if the entity is of a kind of ElementTopology and names no vertex twice.
    static bool isWellFormed(const Geo::MeshEntity& entity);

    /// \brief The same of an entity of \p dimension with these vertices, by any numbers of theirs.
    static bool isWellFormed(int dimension, std::span<const int> vertices);

    /// \brief Reports an edge, face or region whose number of vertices makes no element.
    static void checkVertexCount(const Geo::MeshEntity& entity, FindingSink& sink);

private:
    void checkPresence();
    void checkVertices();
    void checkVertexLists(int dimension);
    void checkVertexList(const Geo::MeshEntity& entity);
    void checkShapes(int dimension, Progress& progress);
    void reportFlat(Geo::MeshEntity& entity);
    void reportInverted(Geo::MeshEntity& entity);
    void reportTwisted(Geo::MeshEntity& entity);
    void checkDuplicates(int dimension);

    const CaseView& view_;
    FindingSink& sink_;
};

} // namespace Ovra::GeoTool
