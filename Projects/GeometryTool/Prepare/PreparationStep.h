#pragma once

#include "AttributeType.h"

#include <QList>
#include <QString>

namespace Ovra::Geo
{
class AttributeMap;
class Database;
class Mesh;
class MeshEntity;
class Model;
class ModelEntity;
class Solver;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief One operation of the preparation: what must hold before the library may carry it out,
///        the operation itself, and what has to be set right after it.
///
/// Faces and regions are those of the model's face dimension and one above. Steps run on a case
/// whose upward lists are set, and leave such a case.
class PreparationStep
{
public:
    /// \param database not owned; must outlive this object
    explicit PreparationStep(Geo::Database& database);
    virtual ~PreparationStep();
    PreparationStep(const PreparationStep&) = delete;
    PreparationStep& operator=(const PreparationStep&) = delete;

    /// \brief Refuses what no step before this one can mend, so that a long preparation is not
    ///        begun in vain; throws ToolError Unsuitable.
    virtual void requireAtStart() const {}

    /// \brief Checks, throwing ToolError Unsuitable, and carries out.
    /// \return what was done, in numbers; empty if there was nothing to do
    virtual QString run(Geo::Solver& solver) = 0;

protected:
    Geo::Database& database() const { return database_; }
    Geo::Model& model() const;
    Geo::Mesh& mesh() const;
    int faceDimension() const;
    int regionDimension() const { return faceDimension() + 1; }

    /// \brief Model entities of the face or region dimension by ascending id.
    QList<Geo::ModelEntity*> modelFaces() const;
    QList<Geo::ModelEntity*> modelRegions() const;

    /// \brief Model regions next to \p face.
    QList<Geo::ModelEntity*> regionsAt(const Geo::ModelEntity& face) const;

    /// \brief Elements next to \p meshFace, or about a vertex.
    QList<Geo::MeshEntity*> elementsAt(const Geo::MeshEntity& meshFace) const;

    /// \brief Derives the upward lists from the vertex lists anew, those of mesh edges too, which
    ///        the operations that double mesh faces leave behind.
    void refreshUpwardLists() const;

    /// \brief How often an element has a mesh face as its side. Doubling mesh faces keeps the
    ///        number; where it falls, a mesh face and its element no longer share their vertices.
    qint64 sideCount() const;

    /// \brief Refuses a region that lists a face twice: the library would double it twice over.
    void requireSingleLinks(const Geo::ModelEntity& region) const;

    /// \brief Ends the preparation with \p text; nothing has been written by then.
    [[noreturn]] static void refuse(const QString& text);

    static bool isMeshed(const Geo::ModelEntity& region);

    /// \brief Whether `material_type` is exactly \p type.
    static bool isOfMaterial(const Geo::ModelEntity& region, const QString& type);

    /// \brief "model region 4 (material_type \"solid\")" or "model region 4 (no material_type)".
    static QString withMaterial(const Geo::ModelEntity& region);

private:
    Geo::Database& database_;
};

} // namespace Ovra::GeoTool
