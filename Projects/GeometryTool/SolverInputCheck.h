#pragma once

#include <QString>
#include <QStringList>

namespace Ovra::Geo
{
class AttributeType;
class Database;
class MeshEntity;
class Model;
class Mesh;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Looks whether a case holds what the writer of the solver input takes for granted.
///
/// The writer follows ids in attributes without a test and stops the process where a rotor face
/// lacks its partners. Every operation throws ToolError Unsuitable, which names the first entity,
/// in ascending id, that would bring it there.
class SolverInputCheck
{
public:
    /// \param database not owned; must outlive this object
    explicit SolverInputCheck(const Geo::Database& database);

    /// \brief Checks what the sections of these names need.
    void require(const QStringList& sections) const;

private:
    void checkElements() const;
    void checkSurfaceConnectivity() const;
    void checkPeriodic() const;
    void checkExtrusion() const;
    void checkMoving() const;
    void checkRotating() const;

    void requireModelReference(const Geo::ModelEntity& entity, const Geo::AttributeType& type,
                               int dimension) const;
    void requireVertexReference(Geo::MeshEntity& vertex, const Geo::AttributeType& type) const;
    void requireStencil(Geo::MeshEntity& vertex, const Geo::AttributeType& entityType,
                        const Geo::AttributeType& entityId,
                        const Geo::AttributeType& weights) const;
    void requireKnownElements(const Geo::ModelEntity& face, int elementDimension) const;
    void checkReplica(const Geo::ModelEntity& region) const;
    void checkRotor(const Geo::ModelEntity& face) const;
    void requireOneElementEach(const Geo::ModelEntity& face) const;

    Geo::Model* model_;
    Geo::Mesh* mesh_;
    int faceDimension_;
    int elementDimension_;
};

} // namespace Ovra::GeoTool
