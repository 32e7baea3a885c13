#pragma once

#include "IdPositions.h"
#include "ImportedMesh.h"

#include <QString>

namespace Ovra::GeoTool
{

class Progress;
struct ElementKind;

/// \brief Copies Gmsh's current model into an ImportedMesh.
///
/// Elements of higher order lose the nodes between their corners, elements that turn their nodes
/// the wrong way round are turned, elements that are there twice on one entity are taken once,
/// nodes that no element uses stay behind; each of these is a warning with its number. Faces on the
/// outside are turned outwards. Elements of a kind that the database does not have are an error
/// that counts them.
class GmshExtraction
{
public:
    /// \param input the name of the file, for messages
    GmshExtraction(const QString& input, Progress& progress);

    /// \brief The model with elements of up to \p dimension; throws ToolError Unsuitable.
    ImportedMesh extract(int dimension);

private:
    void addEntities(int dimension);
    void addGroups(ImportedEntity& entity, int dimension) const;
    void addBoundaries(int dimension);
    void requireKnownKinds(int dimension) const;
    void addNodes();
    void classifyNodes(int dimension);
    void addElements(int dimension);
    void addElementsOf(int dimension, int position);
    void addElementsOfAllOrders(int gmshType, int position);
    void addElement(const ElementKind& kind, int position, const std::size_t* nodes);
    std::size_t positionOfNode(std::size_t tag) const;
    void removeDuplicates(int dimension);
    void turnVolumes();
    void turnPlanarFaces();
    void turnOuterSides();
    bool isOnPoint(const ImportedNode& node) const;
    void dropUnusedNodes();
    void warn(long long count, const QString& singular, const QString& plural);

    QString input_;
    Progress& progress_;
    ImportedMesh mesh_;
    IdPositions nodePositions_; ///< by Gmsh's tag
    std::vector<bool> between_; ///< nodes that only elements of higher order had
    long long higherOrder_ = 0;
};

} // namespace Ovra::GeoTool
