#include "AttributesFile.h"

#include "ImportedMesh.h"
#include "Matrix.h"
#include "Model.h"
#include "ModelEntity.h"
#include "ToolError.h"
#include "Vector.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include <cmath>
#include <limits>

namespace Ovra::GeoTool
{

using namespace Geo;

namespace
{

enum class ValueKind
{
    Any,
    Integer,
    Boolean,
    Real,
    Text,
    RealList,
    Vector,
    Matrix,
    FaceId,
    FaceList
};

/// \brief What each tag holds; a tag that is not named here holds any scalar or list.
ValueKind kindOf(const AttributeType& type)
{
    static const QMap<AttributeType, ValueKind> Kinds{
        {AttributeType::CaseFaces, ValueKind::FaceList},
        {AttributeType::ColdFaces, ValueKind::FaceList},
        {AttributeType::CoordinateSystem, ValueKind::Integer},
        {AttributeType::ExtrudedEntityId, ValueKind::Integer},
        {AttributeType::ExtrudedEntityType, ValueKind::Integer},
        {AttributeType::ExtrudedFace, ValueKind::FaceId},
        {AttributeType::ExtrudedWeights, ValueKind::RealList},
        {AttributeType::FluidFace, ValueKind::FaceId},
        {AttributeType::FluidRegion, ValueKind::Integer},
        {AttributeType::HotFaces, ValueKind::FaceList},
        {AttributeType::InBL, ValueKind::Boolean},
        {AttributeType::IsShell, ValueKind::Boolean},
        {AttributeType::IsSuppressed, ValueKind::Boolean},
        {AttributeType::MaterialId, ValueKind::Integer},
        {AttributeType::MaterialType, ValueKind::Text},
        {AttributeType::MeshByExtrusion, ValueKind::Boolean},
        {AttributeType::NewMotionRegion, ValueKind::Integer},
        {AttributeType::NewMotionVertex, ValueKind::Integer},
        {AttributeType::NewShellFace, ValueKind::FaceId},
        {AttributeType::NonExtrudedFace, ValueKind::FaceId},
        {AttributeType::OriginalMotionRegion, ValueKind::Integer},
        {AttributeType::OriginalMotionVertex, ValueKind::Integer},
        {AttributeType::OriginalShellFace, ValueKind::FaceId},
        {AttributeType::PeriodicEntityId, ValueKind::Integer},
        {AttributeType::PeriodicEntityType, ValueKind::Integer},
        {AttributeType::PeriodicFace, ValueKind::FaceId},
        {AttributeType::PeriodicMatrix, ValueKind::Matrix},
        {AttributeType::PeriodicOrigin, ValueKind::Vector},
        {AttributeType::PeriodicPairId, ValueKind::Integer},
        {AttributeType::PeriodicSideId, ValueKind::Integer},
        {AttributeType::PeriodicTranslation, ValueKind::Vector},
        {AttributeType::PeriodicWeights, ValueKind::RealList},
        {AttributeType::PeriodicXAxis, ValueKind::Vector},
        {AttributeType::PeriodicYAxis, ValueKind::Vector},
        {AttributeType::PeriodicZAxis, ValueKind::Vector},
        {AttributeType::RotorFace, ValueKind::FaceId},
        {AttributeType::RotorVertex, ValueKind::Integer},
        {AttributeType::ShellVertex, ValueKind::Integer},
        {AttributeType::SolidFace, ValueKind::FaceId},
        {AttributeType::StatorFace, ValueKind::FaceId},
        {AttributeType::StatorVertex, ValueKind::Integer},
        {AttributeType::VisualScaleFactor, ValueKind::Real}};
    return Kinds.value(type, ValueKind::Any);
}

QString expectation(ValueKind kind)
{
    static const QMap<ValueKind, QString> Texts{
        {ValueKind::Any, QStringLiteral("a number, a text, true, false, or a list of these")},
        {ValueKind::Integer, QStringLiteral("an integer")},
        {ValueKind::Boolean, QStringLiteral("true or false")},
        {ValueKind::Real, QStringLiteral("a number")},
        {ValueKind::Text, QStringLiteral("a text")},
        {ValueKind::RealList, QStringLiteral("a list of numbers")},
        {ValueKind::Vector, QStringLiteral("a list of 3 numbers")},
        {ValueKind::Matrix, QStringLiteral("a list of 9 numbers or of 3 lists of 3 numbers")},
        {ValueKind::FaceId, QStringLiteral("the id of a face or the name of a group of one face")},
        {ValueKind::FaceList, QStringLiteral("a list of ids of faces and names of groups")}};
    return Texts.value(kind);
}

QString kindText(const QJsonValue& json)
{
    switch (json.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("true or false");
    case QJsonValue::Double:
        return QStringLiteral("the number %1").arg(json.toDouble());
    case QJsonValue::String:
        return QStringLiteral("the text \"%1\"").arg(json.toString());
    case QJsonValue::Array:
        return QStringLiteral("a list of %1").arg(json.toArray().size());
    default:
        return QStringLiteral("an object");
    }
}

bool isInteger(const QJsonValue& json)
{
    if (!json.isDouble())
        return false;
    const double number = json.toDouble();
    return std::floor(number) == number && number >= std::numeric_limits<int>::min() &&
           number <= std::numeric_limits<int>::max();
}

bool isFaceReference(const QJsonValue& json)
{
    return json.isString() || isInteger(json);
}

bool allOf(const QJsonValue& json, bool (*test)(const QJsonValue&))
{
    if (!json.isArray())
        return false;
    const QJsonArray items = json.toArray();
    return std::all_of(items.begin(), items.end(),
                       [test](const QJsonValue& item) { return test(item); });
}

bool isNumber(const QJsonValue& json)
{
    return json.isDouble();
}

bool isTriple(const QJsonValue& json)
{
    return json.toArray().size() == 3 && allOf(json, isNumber);
}

QVariant listOfReals(const QJsonValue& json)
{
    QVariantList list;
    for (const QJsonValue& item : json.toArray())
        list.append(item.toDouble());
    return list;
}

QVariant vectorOf(const QJsonValue& json)
{
    const QJsonArray items = json.toArray();
    return Vector(items.at(0).toDouble(), items.at(1).toDouble(), items.at(2).toDouble());
}

QVariant matrixOf(const QJsonValue& json)
{
    QList<double> numbers;
    for (const QJsonValue& item : json.toArray()) {
        if (item.isDouble())
            numbers.append(item.toDouble());
        for (const QJsonValue& inner : item.toArray())
            numbers.append(inner.toDouble());
    }
    Matrix matrix;
    for (int i = 0; i < 9; ++i)
        matrix(i / 3, i % 3) = numbers.at(i);
    return matrix;
}

bool fits(const QJsonValue& json, ValueKind kind)
{
    const qsizetype size = json.toArray().size();
    switch (kind) {
    case ValueKind::Integer:
        return isInteger(json);
    case ValueKind::Boolean:
        return json.isBool();
    case ValueKind::Real:
        return json.isDouble();
    case ValueKind::Text:
        return json.isString();
    case ValueKind::RealList:
        return allOf(json, isNumber);
    case ValueKind::Vector:
        return isTriple(json);
    case ValueKind::Matrix:
        return (size == 9 && allOf(json, isNumber)) || (size == 3 && allOf(json, isTriple));
    case ValueKind::FaceId:
        return isFaceReference(json);
    case ValueKind::FaceList:
        return allOf(json, isFaceReference);
    case ValueKind::Any:
        break;
    }
    return json.isDouble() || json.isString() || json.isBool() ||
           allOf(json, [](const QJsonValue& item) { return fits(item, ValueKind::Any); });
}

QVariant anyValue(const QJsonValue& json)
{
    if (json.isArray()) {
        QVariantList list;
        for (const QJsonValue& item : json.toArray())
            list.append(anyValue(item));
        return list;
    }
    if (isInteger(json))
        return json.toInt();
    return json.toVariant();
}

/// \brief The value of what fits \p kind; invalid where faces must be looked up first.
QVariant convert(const QJsonValue& json, ValueKind kind)
{
    switch (kind) {
    case ValueKind::Real:
        return json.toDouble();
    case ValueKind::RealList:
        return listOfReals(json);
    case ValueKind::Vector:
        return vectorOf(json);
    case ValueKind::Matrix:
        return matrixOf(json);
    case ValueKind::FaceId:
    case ValueKind::FaceList:
        return QVariant();
    default:
        return anyValue(json);
    }
}

QString keyFor(int dimension, const QString& name)
{
    return QStringLiteral("%1:%2").arg(dimension).arg(name);
}

/// \brief Ids of the entities of \p dimension in the group \p name, ascending.
QList<int> membersOf(const ImportedMesh& mesh, int dimension, const QString& name)
{
    QList<int> ids;
    for (const ImportedEntity& entity : mesh.entitiesOf(dimension)) {
        if (!entity.discarded && entity.groups.contains(name))
            ids.append(entity.id);
    }
    return ids;
}

QString allGroups(const ImportedMesh& mesh)
{
    QStringList names;
    for (const auto& entities : mesh.entities) {
        for (const ImportedEntity& entity : entities)
            names += entity.discarded ? QStringList() : entity.groups;
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
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(path_, file.errorString()));
    const QByteArray text = file.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        fail(QStringLiteral("line %1, byte %2").arg(lineOf(text, error.offset)).arg(error.offset),
             error.errorString());
    if (!document.isObject())
        fail(QStringLiteral("top level"), QStringLiteral("an object is expected"));
    const QJsonObject top = document.object();
    for (auto it = top.begin(); it != top.end(); ++it) {
        if (it.key() == QLatin1String("model"))
            model_ = readEntries(it.key(), object(it.value(), it.key()));
        else if (it.key() == QLatin1String("groups"))
            groups_ = readTargets(it.key(), it.value());
        else if (it.key() == QLatin1String("entities"))
            entities_ = readTargets(it.key(), it.value());
        else
            fail(it.key(), QStringLiteral("unknown section; there are model, groups and entities"));
    }
}

QJsonObject AttributesFile::object(const QJsonValue& value, const QString& place) const
{
    if (!value.isObject())
        fail(place, QStringLiteral("an object is expected, not %1").arg(kindText(value)));
    return value.toObject();
}

QList<AttributesFile::Target> AttributesFile::readTargets(const QString& section,
                                                          const QJsonValue& value) const
{
    QList<Target> targets;
    const QJsonObject all = object(value, section);
    for (auto it = all.begin(); it != all.end(); ++it) {
        const QString place = section + QLatin1Char('/') + it.key();
        targets.append({it.key(), readEntries(place, object(it.value(), place))});
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
        if (!entry.type.isValid())
            fail(entry.place, QStringLiteral("unknown attribute tag"));
        for (const Entry& other : std::as_const(entries)) {
            if (other.type == entry.type)
                fail(entry.place, QStringLiteral("the same attribute as %1").arg(other.place));
        }
        const ValueKind kind = kindOf(entry.type);
        if (!fits(entry.json, kind))
            fail(entry.place, QStringLiteral("%1 is expected, not %2")
                                  .arg(expectation(kind), kindText(entry.json)));
        entry.value = convert(entry.json, kind);
        entries.append(entry);
    }
    return entries;
}

void AttributesFile::apply(const ImportedMesh& mesh, Model& model) const
{
    for (const Entry& entry : model_)
        model.attributes().insert(entry.type, resolved(entry, mesh, model));
    for (const Target& target : groups_) {
        for (ModelEntity* entity : groupMembers(target.key, mesh, model)) {
            for (const Entry& entry : target.entries)
                entity->attributes().insert(entry.type, resolved(entry, mesh, model));
        }
    }
    for (const Target& target : entities_) {
        ModelEntity* entity = entityOf(target.key, model);
        for (const Entry& entry : target.entries)
            entity->attributes().insert(entry.type, resolved(entry, mesh, model));
    }
}

QList<ModelEntity*> AttributesFile::groupMembers(const QString& key, const ImportedMesh& mesh,
                                                 Model& model) const
{
    QList<ModelEntity*> members;
    QStringList matches;
    for (int d = 0; d <= mesh.elementDimension; ++d) {
        const QString prefix = keyFor(d, QString());
        QList<int> ids = membersOf(mesh, d, key);
        if (ids.isEmpty() && key.startsWith(prefix))
            ids = membersOf(mesh, d, key.mid(prefix.size()));
        if (!ids.isEmpty())
            matches.append(keyFor(d, key));
        for (const int id : ids)
            members.append(model.entity(d, id));
    }
    const QString place = QStringLiteral("groups/") + key;
    if (matches.isEmpty())
        fail(place, QStringLiteral("no physical group has this name; %1").arg(allGroups(mesh)));
    if (matches.size() > 1)
        fail(place, QStringLiteral("groups of several dimensions have this name; write %1")
                        .arg(matches.join(QStringLiteral(" or "))));
    return members;
}

ModelEntity* AttributesFile::entityOf(const QString& key, Model& model) const
{
    const QString place = QStringLiteral("entities/") + key;
    const QStringList parts = key.split(QLatin1Char(':'));
    bool dimensionOk = false;
    bool idOk = false;
    const int dimension = parts.value(0).toInt(&dimensionOk);
    const int id = parts.value(1).toInt(&idOk);
    if (parts.size() != 2 || !dimensionOk || !idOk || dimension < 0 || dimension > 3)
        fail(place, QStringLiteral("dimension and id are expected, 2:17 for instance"));
    ModelEntity* entity = model.entity(dimension, id);
    if (entity == nullptr)
        fail(
            place,
            QStringLiteral("there is no entity of dimension %1 with id %2").arg(dimension).arg(id));
    return entity;
}

QVariant AttributesFile::resolved(const Entry& entry, const ImportedMesh& mesh, Model& model) const
{
    if (entry.value.isValid())
        return entry.value;
    const bool isList = kindOf(entry.type) == ValueKind::FaceList;
    const QJsonArray items = isList ? entry.json.toArray() : QJsonArray{entry.json};
    QList<int> ids;
    for (const QJsonValue& item : items) {
        if (item.isString())
            ids += facesNamed(item.toString(), entry.place, mesh, model);
        else
            ids.append(faceWithId(item, entry.place, model));
    }
    if (!isList && ids.size() != 1)
        fail(entry.place,
             QStringLiteral("the group has %1 faces, but one is expected").arg(ids.size()));
    if (!isList)
        return ids.first();
    QVariantList list;
    for (const int id : ids)
        list.append(id);
    return list;
}

QList<int> AttributesFile::facesNamed(const QString& name, const QString& place,
                                      const ImportedMesh& mesh, Model& model) const
{
    const QList<int> ids = membersOf(mesh, model.faceDimension(), name);
    if (ids.isEmpty())
        fail(place, QStringLiteral("no physical group of dimension %1 has the name \"%2\"")
                        .arg(model.faceDimension())
                        .arg(name));
    return ids;
}

int AttributesFile::faceWithId(const QJsonValue& json, const QString& place, Model& model) const
{
    const int id = json.toInt();
    if (model.entity(model.faceDimension(), id) == nullptr)
        fail(place, QStringLiteral("there is no entity of dimension %1 with id %2")
                        .arg(model.faceDimension())
                        .arg(id));
    return id;
}

} // namespace Ovra::GeoTool
