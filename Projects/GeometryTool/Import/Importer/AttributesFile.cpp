#include "AttributesFile.h"

#include "AttributeValue.h"
#include "ImportedMesh.h"
#include "Model.h"
#include "ModelEntity.h"
#include "NamePattern.h"
#include "OpenInput.h"
#include "RepeatedKey.h"
#include "ShellLinks.h"
#include "ToolError.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Geo;

namespace
{

constexpr QLatin1String MeshKey("mesh"); // these stand among the tags, but are none
constexpr QLatin1String NameKey("name");
constexpr QLatin1String TagKey("tag");

QString keyFor(int dimension, const QString& name)
{
    return QStringLiteral("%1:%2").arg(dimension).arg(name);
}

/// \brief Ids of the entities of \p dimension in the group \p name, ascending.
QList<int> membersOf(const ImportedMesh& mesh, int dimension, const QString& name)
{
    QList<int> ids;
    for (const ImportedEntity& entity : mesh.entitiesOf(dimension)) {
        if (!entity.discarded && entity.groups.contains(name)) {
            ids.append(entity.id);
        }
    }
    return ids;
}

QString allGroups(const ImportedMesh& mesh)
{
    QStringList names;
    for (const auto& entities : mesh.entities) {
        for (const ImportedEntity& entity : entities) {
            names += entity.discarded ? QStringList() : entity.groups;
        }
    }
    names.sort();
    names.removeDuplicates();
    return names.isEmpty() ? QStringLiteral("the input has no named groups")
                           : QStringLiteral("the input has ") + names.join(QStringLiteral(", "));
}

/// \brief Line of a byte of the text, from 1.
qsizetype lineOf(const QByteArray& text, qsizetype offset)
{
    return text.left(offset).count('\n') + 1;
}

} // namespace

AttributesFile::AttributesFile(const QString& path)
    : path_(path)
{
}

void AttributesFile::fail(const QString& place, const QString& what) const
{
    throw ToolError(ExitCode::InputDamaged, QStringLiteral("%1: %2: %3").arg(path_, place, what));
}

void AttributesFile::read()
{
    QFile file(path_);
    openInput(file);
    const QJsonObject top = parsed(file.readAll());
    hasSections_ = !top.isEmpty();
    for (auto it = top.begin(); it != top.end(); ++it) {
        if (it.key() == QLatin1String("model")) {
            model_ = readEntries(it.key(), object(it.value(), it.key()));
        } else if (it.key() == QLatin1String("names")) {
            targets_ += readTargets(Section::Names, it.key(), it.value());
        } else if (it.key() == QLatin1String("groups")) {
            targets_ += readTargets(Section::Groups, it.key(), it.value());
        } else if (it.key() == QLatin1String("entities")) {
            targets_ += readTargets(Section::Entities, it.key(), it.value());
        } else if (it.key() == QLatin1String("shells")) {
            shells_ = readShells(it.key(), it.value());
        } else {
            fail(it.key(), QStringLiteral("unknown section; there are model, names, groups, "
                                          "entities and shells"));
        }
    }
    std::stable_sort(targets_.begin(), targets_.end(), [](const Target& a, const Target& b) {
        if (a.section != b.section || a.section != Section::Names) {
            return a.section < b.section;
        }
        return NamePattern(a.key).isVaguerThan(NamePattern(b.key));
    });
}

QJsonObject AttributesFile::parsed(const QByteArray& text) const
{
    const auto placeOf = [&text](qsizetype offset) {
        return QStringLiteral("line %1, byte %2").arg(lineOf(text, offset)).arg(offset);
    };
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        fail(placeOf(error.offset), error.errorString());
    }
    if (const std::optional<RepeatedKey> repeated = RepeatedKey::in(text)) {
        fail(placeOf(repeated->offset),
             QStringLiteral("\"%1\" is there twice in one object").arg(repeated->key));
    }
    if (!document.isObject()) {
        fail(QStringLiteral("top level"), QStringLiteral("an object is expected"));
    }
    return document.object();
}

QJsonObject AttributesFile::object(const QJsonValue& value, const QString& place) const
{
    if (!value.isObject()) {
        fail(place, QStringLiteral("an object is expected, not %1")
                        .arg(AttributeValue::description(value)));
    }
    return value.toObject();
}

QList<AttributesFile::Target> AttributesFile::readTargets(Section section, const QString& key,
                                                          const QJsonValue& value) const
{
    QList<Target> targets;
    const QJsonObject all = object(value, key);
    for (auto it = all.begin(); it != all.end(); ++it) {
        const QString place = key + QLatin1Char('/') + it.key();
        QJsonObject entries = object(it.value(), place);
        Target target;
        target.place = place;
        target.key = it.key();
        target.section = section;
        target.meshed = readMeshed(place, entries.take(MeshKey));
        target.name = takeText(section, place, NameKey, entries);
        target.tag = takeText(section, place, TagKey, entries);
        target.entries = readEntries(place, entries);
        targets.append(target);
    }
    return targets;
}

QList<AttributesFile::Entry> AttributesFile::readEntries(const QString& place,
                                                         const QJsonObject& object) const
{
    QList<Entry> entries;
    for (auto it = object.begin(); it != object.end(); ++it) {
        Entry entry;
        entry.place = place + QLatin1Char('/') + it.key();
        entry.type = AttributeType::fromString(it.key());
        entry.json = it.value();
        if (!entry.type.isValid()) {
            fail(entry.place, QStringLiteral("unknown attribute tag"));
        }
        for (const Entry& other : std::as_const(entries)) {
            if (other.type == entry.type) {
                fail(entry.place, QStringLiteral("the same attribute as %1").arg(other.place));
            }
        }
        const ValueKind kind = AttributeValue::kindOf(entry.type);
        requireKind(entry.place, entry.json, kind);
        entry.value = AttributeValue::convert(entry.json, kind);
        entries.append(entry);
    }
    return entries;
}

std::optional<bool> AttributesFile::readMeshed(const QString& place, const QJsonValue& value) const
{
    if (value.isUndefined()) {
        return std::nullopt;
    }
    requireKind(place + QLatin1Char('/') + MeshKey, value, ValueKind::Boolean);
    return value.toBool();
}

std::optional<QString> AttributesFile::takeText(Section section, const QString& place,
                                                const QString& key, QJsonObject& keys) const
{
    const QJsonValue value = keys.take(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const QString placeOfKey = place + QLatin1Char('/') + key;
    if (section != Section::Entities) {
        fail(placeOfKey, QStringLiteral("only in the section entities can this be given"));
    }
    requireKind(placeOfKey, value, ValueKind::Text);
    return value.toString();
}

QList<AttributesFile::Shell> AttributesFile::readShells(const QString& section,
                                                        const QJsonValue& value) const
{
    if (!value.isArray()) {
        fail(section,
             QStringLiteral("a list is expected, not %1").arg(AttributeValue::description(value)));
    }
    QList<Shell> shells;
    for (const QJsonValue item : value.toArray()) {
        Shell shell;
        shell.place = QStringLiteral("%1/%2").arg(section).arg(shells.size());
        QJsonObject keys = object(item, shell.place);
        shell.region =
            takeReference(shell.place, QStringLiteral("region"), ValueKind::RegionId, keys);
        shell.originalFace =
            takeReference(shell.place, QStringLiteral("original_face"), ValueKind::FaceId, keys);
        shell.newFace =
            takeReference(shell.place, QStringLiteral("new_face"), ValueKind::FaceId, keys);
        if (!keys.isEmpty()) {
            fail(shell.place + QLatin1Char('/') + keys.begin().key(),
                 QStringLiteral("unknown key; there are region, original_face and new_face"));
        }
        shells.append(shell);
    }
    return shells;
}

QJsonValue AttributesFile::takeReference(const QString& place, const QString& key, ValueKind kind,
                                         QJsonObject& keys) const
{
    if (!keys.contains(key)) {
        fail(place, QStringLiteral("%1 is missing").arg(key));
    }
    const QJsonValue value = keys.take(key);
    requireKind(place + QLatin1Char('/') + key, value, kind);
    return value;
}

void AttributesFile::requireKind(const QString& place, const QJsonValue& json, ValueKind kind) const
{
    if (!AttributeValue::fits(json, kind)) {
        fail(place, QStringLiteral("%1 is expected, not %2")
                        .arg(AttributeValue::expectation(kind), AttributeValue::description(json)));
    }
}

bool AttributesFile::isOfNamesAlone() const
{
    return hasSections_ && model_.isEmpty() && shells_.isEmpty() &&
           std::all_of(targets_.begin(), targets_.end(),
                       [](const Target& target) { return target.entries.isEmpty(); });
}

void AttributesFile::nameEntities(ImportedMesh& mesh) const
{
    for (const Target& target : targets_) {
        if (target.section != Section::Entities) {
            continue;
        }
        const Reference reference = referenceOf(target);
        const int position = mesh.positionOf(reference.dimension, reference.id);
        if (position < 0) {
            continue;
        }
        ImportedEntity& entity = mesh.entity(reference.dimension, position);
        entity.kept = entity.kept || !target.meshed.value_or(true);
        entity.label = target.tag.value_or(entity.label);
        if (target.name) {
            entity.groups = target.name->isEmpty() ? QStringList() : QStringList(*target.name);
            entity.inGroup = true;
        }
    }
}

void AttributesFile::leaveWithoutMesh(ImportedMesh& mesh) const
{
    QMap<int, bool> meshed;
    for (const Target& target : targets_) {
        if (!target.meshed) {
            continue;
        }
        for (const Reference& reference : targetsOf(target, mesh)) {
            if (reference.dimension != mesh.elementDimension) {
                fail(target.place + QLatin1Char('/') + MeshKey,
                     QStringLiteral("only entities of dimension %1 have a mesh of their own to be "
                                    "left out")
                         .arg(mesh.elementDimension));
            }
            meshed[reference.id] = *target.meshed;
        }
    }
    for (auto it = meshed.cbegin(); it != meshed.cend(); ++it) {
        if (!it.value()) {
            mesh.removeElementsOf(mesh.elementDimension,
                                  mesh.positionOf(mesh.elementDimension, it.key()));
        }
    }
    mesh.removeUnusedNodes();
}

void AttributesFile::apply(const ImportedMesh& mesh, Model& model) const
{
    for (const Entry& entry : model_) {
        model.attributes().insert(entry.type, resolved(entry, mesh));
    }
    for (const Shell& shell : shells_) {
        applyShell(shell, mesh, model);
    }
    ShellLinks::closeOtherFaces(model);
    for (const Target& target : targets_) {
        for (const Reference& reference : targetsOf(target, mesh)) {
            applyTo(*model.entity(reference.dimension, reference.id), target, mesh);
        }
    }
}

void AttributesFile::applyTo(ModelEntity& entity, const Target& target,
                             const ImportedMesh& mesh) const
{
    entity.setName(target.name.value_or(entity.name()));
    entity.setTag(target.tag.value_or(entity.tag()));
    for (const Entry& entry : target.entries) {
        entity.attributes().insert(entry.type, resolved(entry, mesh));
    }
}

void AttributesFile::applyShell(const Shell& shell, const ImportedMesh& mesh, Model& model) const
{
    const int dimension = mesh.elementDimension;
    const auto find = [&](const char* key, const QJsonValue& json, int ofDimension) {
        const QString place = shell.place + QLatin1Char('/') + QLatin1String(key);
        return model.entity(ofDimension, single(json, place, ofDimension, mesh));
    };
    // One after the other, so that with every compiler the first that is missing is told of.
    ModelEntity* const region = find("region", shell.region, dimension);
    ModelEntity* const originalFace = find("original_face", shell.originalFace, dimension - 1);
    ModelEntity* const newFace = find("new_face", shell.newFace, dimension - 1);
    ShellLinks links(region, originalFace, newFace);
    if (!links.pair()) {
        fail(shell.place, links.mismatch());
    }
    links.apply();
}

QList<AttributesFile::Reference> AttributesFile::targetsOf(const Target& target,
                                                           const ImportedMesh& mesh) const
{
    switch (target.section) {
    case Section::Names:
        return namedEntities(target, mesh);
    case Section::Groups:
        return groupMembers(target, mesh);
    case Section::Entities:
        break;
    }
    return {entityOf(target, mesh)};
}

QList<AttributesFile::Reference> AttributesFile::namedEntities(const Target& target,
                                                               const ImportedMesh& mesh) const
{
    QList<Reference> found;
    for (int d = mesh.elementDimension; d >= 0 && found.isEmpty(); --d) {
        const QString prefix = keyFor(d, QString());
        QList<int> ids = NamePattern(target.key).in(mesh, d);
        if (ids.isEmpty() && target.key.startsWith(prefix)) {
            ids = NamePattern(target.key.mid(prefix.size())).in(mesh, d);
        }
        for (const int id : ids) {
            found.append({d, id});
        }
    }
    if (found.isEmpty()) {
        fail(target.place, QStringLiteral("no entity has this name; %1")
                               .arg(NamePattern(target.key).alternatives(mesh)));
    }
    return found;
}

QList<AttributesFile::Reference> AttributesFile::groupMembers(const Target& target,
                                                              const ImportedMesh& mesh) const
{
    QList<Reference> members;
    QStringList matches;
    for (int d = 0; d <= mesh.elementDimension; ++d) {
        const QString prefix = keyFor(d, QString());
        QList<int> ids = membersOf(mesh, d, target.key);
        if (ids.isEmpty() && target.key.startsWith(prefix)) {
            ids = membersOf(mesh, d, target.key.mid(prefix.size()));
        }
        if (!ids.isEmpty()) {
            matches.append(keyFor(d, target.key));
        }
        for (const int id : ids) {
            members.append({d, id});
        }
    }
    if (matches.isEmpty()) {
        fail(target.place,
             QStringLiteral("no physical group has this name; %1").arg(allGroups(mesh)));
    }
    if (matches.size() > 1) {
        fail(target.place, QStringLiteral("groups of several dimensions have this name; write %1")
                               .arg(matches.join(QStringLiteral(" or "))));
    }
    return members;
}

AttributesFile::Reference AttributesFile::referenceOf(const Target& target) const
{
    const QStringList parts = target.key.split(QLatin1Char(':'));
    bool dimensionOk = false;
    bool idOk = false;
    const Reference reference{parts.value(0).toInt(&dimensionOk), parts.value(1).toInt(&idOk)};
    if (parts.size() != 2 || !dimensionOk || !idOk || reference.dimension < 0 ||
        reference.dimension > 3) {
        fail(target.place, QStringLiteral("dimension and id are expected, 2:17 for instance"));
    }
    return reference;
}

AttributesFile::Reference AttributesFile::entityOf(const Target& target,
                                                   const ImportedMesh& mesh) const
{
    const Reference reference = referenceOf(target);
    requireEntity(target.place, reference, mesh);
    return reference;
}

void AttributesFile::requireEntity(const QString& place, const Reference& reference,
                                   const ImportedMesh& mesh) const
{
    if (mesh.positionOf(reference.dimension, reference.id) < 0) {
        fail(place, QStringLiteral("there is no entity of dimension %1 with id %2")
                        .arg(reference.dimension)
                        .arg(reference.id));
    }
}

QVariant AttributesFile::resolved(const Entry& entry, const ImportedMesh& mesh) const
{
    if (entry.value.isValid()) {
        return entry.value;
    }
    const int dimension = mesh.elementDimension - 1;
    if (AttributeValue::kindOf(entry.type) == ValueKind::FaceId) {
        return single(entry.json, entry.place, dimension, mesh);
    }
    QVariantList list;
    for (const QJsonValue item : entry.json.toArray()) {
        for (const int id : named(item, entry.place, dimension, mesh)) {
            list.append(id);
        }
    }
    return list;
}

QList<int> AttributesFile::named(const QJsonValue& json, const QString& place, int dimension,
                                 const ImportedMesh& mesh) const
{
    if (!json.isString()) {
        requireEntity(place, {dimension, json.toInt()}, mesh);
        return {json.toInt()};
    }
    QList<int> ids = membersOf(mesh, dimension, json.toString());
    if (ids.isEmpty()) {
        ids = NamePattern(json.toString()).in(mesh, dimension);
    }
    if (ids.isEmpty()) {
        fail(place, QStringLiteral("no physical group and no entity of dimension %1 has the name "
                                   "\"%2\"")
                        .arg(dimension)
                        .arg(json.toString()));
    }
    return ids;
}

int AttributesFile::single(const QJsonValue& json, const QString& place, int dimension,
                           const ImportedMesh& mesh) const
{
    const QList<int> ids = named(json, place, dimension, mesh);
    if (ids.size() != 1) {
        fail(place, QStringLiteral("the name stands for %1 %2, but one is expected")
                        .arg(ids.size())
                        .arg(dimension == mesh.elementDimension ? QStringLiteral("regions")
                                                                : QStringLiteral("faces")));
    }
    return ids.first();
}

} // namespace Ovra::GeoTool
