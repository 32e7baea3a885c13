#pragma once

#include "AttributeType.h"
#include "AttributeValue.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

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

    QString path() const { return path_; }

    /// \brief Reads the file and checks all that can be checked without a model: structure, tags
    /// and, but for names of faces, values.
    void read();

    /// \brief Whether it is one that gives no attributes and is not meant to: it has sections, for
    /// names for instance.
    bool isOfNamesAlone() const;

    /// \brief Gives the entities of the section "entities" the names that the file has for them, as
    /// if they stood in a physical group of that name alone, and keeps those that it says to have no
    /// mesh.
    /// \param mesh as it comes from the input: what is yet to be rebuilt is passed over
    void nameEntities(ImportedMesh& mesh) const;

    /// \brief Takes the mesh away from the regions that are to have none; their faces keep theirs.
    ///
    /// Throws for a name or an entity that \p mesh does not have, or that is no region.
    void leaveWithoutMesh(ImportedMesh& mesh) const;

    /// \brief Sets the attributes, those of shells first; throws for a name or an entity that
    /// \p mesh does not have.
    /// \param model made from \p mesh
    void apply(const ImportedMesh& mesh, Geo::Model& model) const;

private:
    enum class Section
    {
        Names,
        Groups,
        Entities
    };

    struct Entry
    {
        QString place; ///< in the file, "groups/air/material_id" for instance
        Geo::AttributeType type;
        QJsonValue json;
        QVariant value; ///< invalid where names of faces are still to be looked up
    };

    struct Target
    {
        QString place;
        QString key;
        Section section;
        std::optional<bool> meshed; ///< what the file says, if anything
        std::optional<QString> name;
        std::optional<QString> tag;
        QList<Entry> entries;
    };

    struct Shell
    {
        QString place;
        QJsonValue region;
        QJsonValue originalFace;
        QJsonValue newFace;
    };

    struct Reference
    {
        int dimension;
        int id;
    };

    [[noreturn]] void fail(const QString& place, const QString& what) const;
    void requireKind(const QString& place, const QJsonValue& json, ValueKind kind) const;
    void requireEntity(const QString& place, const Reference& reference,
                       const ImportedMesh& mesh) const;
    QJsonObject parsed(const QByteArray& text) const;
    QJsonObject object(const QJsonValue& value, const QString& place) const;

    QList<Target> readTargets(Section section, const QString& key, const QJsonValue& value) const;
    QList<Entry> readEntries(const QString& place, const QJsonObject& object) const;
    std::optional<bool> readMeshed(const QString& place, const QJsonValue& value) const;
    std::optional<QString> takeText(Section section, const QString& place, const QString& key,
                                    QJsonObject& keys) const;
    QList<Shell> readShells(const QString& section, const QJsonValue& value) const;
    QJsonValue takeReference(const QString& place, const QString& key, ValueKind kind,
                             QJsonObject& keys) const;

    void applyShell(const Shell& shell, const ImportedMesh& mesh, Geo::Model& model) const;
    QList<Reference> targetsOf(const Target& target, const ImportedMesh& mesh) const;
    QList<Reference> groupMembers(const Target& target, const ImportedMesh& mesh) const;
    QList<Reference> namedEntities(const Target& target, const ImportedMesh& mesh) const;
    Reference referenceOf(const Target& target) const;
    Reference entityOf(const Target& target, const ImportedMesh& mesh) const;
    void applyTo(Geo::ModelEntity& entity, const Target& target, const ImportedMesh& mesh) const;
    QVariant resolved(const Entry& entry, const ImportedMesh& mesh) const;
    QList<int> named(const QJsonValue& json, const QString& place, int dimension,
                     const ImportedMesh& mesh) const;
    int single(const QJsonValue& json, const QString& place, int dimension,
               const ImportedMesh& mesh) const;

    QString path_;
    bool hasSections_ = false;
    QList<Entry> model_;
    QList<Target> targets_; ///< the later ones have the last word
    QList<Shell> shells_;
};

} // namespace Ovra::GeoTool
