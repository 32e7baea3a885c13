#pragma once

#include "AttributeType.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QVariant>

namespace Ovra::Geo
{
class Model;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief The attributes that a JSON file gives to the entities of an imported model.
///
/// Documentation/AttributesFile.md describes the format. Every error is a ToolError InputDamaged
/// with the file, the place in it and what is expected there.
class AttributesFile
{
public:
    explicit AttributesFile(const QString& path);

    /// \brief Reads the file and checks all that can be checked without a model: structure, tags
    /// and, but for names of faces, values.
    void read();

    /// \brief Sets the attributes; throws for a name or an entity that \p mesh does not have.
    /// \param model made from \p mesh
    void apply(const ImportedMesh& mesh, Geo::Model& model) const;

private:
    struct Entry
    {
        QString place; ///< in the file, "groups/air/material_id" for instance
        Geo::AttributeType type;
        QJsonValue json;
        QVariant value; ///< invalid where names of faces are still to be looked up
    };

    struct Target
    {
        QString key;
        QList<Entry> entries;
    };

    [[noreturn]] void fail(const QString& place, const QString& what) const;
    QJsonObject object(const QJsonValue& value, const QString& place) const;
    QList<Target> readTargets(const QString& section, const QJsonValue& value) const;
    QList<Entry> readEntries(const QString& place, const QJsonObject& object) const;

    QList<Geo::ModelEntity*> groupMembers(const QString& key, const ImportedMesh& mesh,
                                          Geo::Model& model) const;
    Geo::ModelEntity* entityOf(const QString& key, Geo::Model& model) const;
    QVariant resolved(const Entry& entry, const ImportedMesh& mesh, Geo::Model& model) const;
    QList<int> facesNamed(const QString& name, const QString& place, const ImportedMesh& mesh,
                          Geo::Model& model) const;
    int faceWithId(const QJsonValue& json, const QString& place, Geo::Model& model) const;

    QString path_;
    QList<Entry> model_;
    QList<Target> groups_;
    QList<Target> entities_;
};

} // namespace Ovra::GeoTool
