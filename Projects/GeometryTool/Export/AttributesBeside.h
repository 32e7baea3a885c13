#pragma once

#include "GroupNames.h"
#include "ReturningEntities.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace Ovra::Geo
{
class AttributeMap;
class AttributeType;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief The attributes file of an exported case: what the import of the mesh cannot find in it.
///
/// Attributes of the model and its entities, names that the format has not kept, the shells, and the
/// regions that are to stay without mesh. All entities stand under the ids by which they come back;
/// what names an entity that does not is left out. Documentation/AttributesFile.md describes the
/// form.
class AttributesBeside
{
public:
    AttributesBeside(const CaseView& view, const GmshFormat& format, const GroupNames& names);

    QByteArray text() const;

    /// \brief The attributes that the form cannot hold: "mesh_size of model face 3".
    QStringList unheld() const { return unheld_; }

private:
    void addEntities(const CaseView& view, int dimension);
    void addShells(const CaseView& view);
    void addNames(const Geo::ModelEntity& entity, QJsonObject& entry) const;
    QJsonObject attributesOf(const Geo::AttributeMap& attributes, const QString& owner);
    QJsonValue returning(const QJsonValue& json, const Geo::AttributeType& type) const;

    const GmshFormat& format_;
    const GroupNames& names_;
    ReturningEntities returning_;
    int faceDimension_;
    QJsonObject model_;
    QJsonObject entities_;
    QJsonArray shells_;
    QStringList unheld_;
};

} // namespace Ovra::GeoTool
