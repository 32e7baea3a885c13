#include "InfoJson.h"

#include "CaseSummary.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QJsonArray vectorJson(const Vector& vector)
{
    return {vector.x(), vector.y(), vector.z()};
}

/// null for the box of nothing.
QJsonValue boxJson(const Box& box)
{
    if (box.isValid()) { // true for exactly the inverted box
        return QJsonValue::Null;
    }
    return QJsonObject{{"minimum", vectorJson(box.minimum())},
                       {"maximum", vectorJson(box.maximum())}};
}

QJsonObject fileJson(const FileFacts& facts, const QString& formatName)
{
    return {{"path", facts.path},
            {"bytes", facts.size},
            {"format", facts.format},
            {"formatName", formatName},
            {"oldHeader", facts.oldHeader},
            {"version", facts.version.toString()},
            {"trailingBytes", facts.trailingBytes}};
}

QJsonObject idsJson(const IdSummary& ids)
{
    return {{"count", ids.count}, {"largestId", ids.largestId}, {"idGaps", ids.gaps}};
}

QJsonObject kindsJson(const std::map<QString, int>& kinds)
{
    QJsonObject object;
    for (const auto& [kind, count] : kinds) {
        object.insert(kind, count);
    }
    return object;
}

QJsonObject dimensionJson(const CaseSummary& summary, std::size_t dimension)
{
    QJsonObject mesh = idsJson(summary.mesh[dimension]);
    mesh.insert("unclassified", summary.unclassified[dimension]);
    mesh.insert("onOtherDimension", summary.onOtherDimension[dimension]);
    mesh.insert("kinds", kindsJson(summary.kinds[dimension]));
    return {{"dimension", static_cast<int>(dimension)},
            {"model", idsJson(summary.model[dimension])},
            {"mesh", mesh}};
}

QJsonArray dimensionsJson(const CaseSummary& summary)
{
    QJsonArray array;
    for (std::size_t dimension = 0; dimension < 4; ++dimension) {
        array.append(dimensionJson(summary, dimension));
    }
    return array;
}

QJsonArray materialsJson(const CaseSummary& summary)
{
    QJsonArray array;
    for (const MaterialSummary& material : summary.materials) {
        array.append(QJsonObject{
            {"type", material.type.isEmpty() ? QJsonValue::Null : QJsonValue(material.type)},
            {"id", material.hasId ? QJsonValue(material.id) : QJsonValue::Null},
            {"modelEntities", material.modelEntityCount},
            {"elements", material.elementCount}});
    }
    return array;
}

QJsonArray twinsJson(const CaseSummary& summary)
{
    QJsonArray array;
    for (const TwinSummary& twin : summary.twins) {
        array.append(QJsonObject{{"relation", twin.relation},
                                 {"dimension", twin.dimension},
                                 {"id", twin.copyId},
                                 {"name", twin.copyName},
                                 {"originalId", twin.originalId},
                                 {"originalName", twin.originalName}});
    }
    return array;
}

QJsonArray countsJson(const std::array<int, 4>& counts)
{
    QJsonArray array;
    for (const int count : counts) {
        array.append(count);
    }
    return array;
}

QJsonObject attributesJson(const CaseSummary& summary)
{
    QJsonObject object;
    for (auto each = summary.attributes.begin(); each != summary.attributes.end(); ++each) {
        object.insert(each.key(), QJsonObject{{"model", each->model},
                                              {"modelEntities", countsJson(each->modelEntities)},
                                              {"mesh", each->mesh},
                                              {"meshEntities", countsJson(each->meshEntities)}});
    }
    return object;
}

QJsonArray namesJson(const CaseSummary& summary)
{
    QJsonArray array;
    for (const NameSummary& name : summary.names) {
        QJsonArray ids;
        for (const int id : name.ids) {
            ids.append(id);
        }
        array.append(QJsonObject{{"dimension", name.dimension}, {"name", name.name}, {"ids", ids}});
    }
    return array;
}

QJsonValue extremesJson(const Extremes& extremes)
{
    if (extremes.isEmpty()) {
        return QJsonValue::Null;
    }
    return QJsonObject{
        {"smallest", QJsonObject{{"value", extremes.smallest}, {"id", extremes.smallestId}}},
        {"largest", QJsonObject{{"value", extremes.largest}, {"id", extremes.largestId}}}};
}

QJsonObject idListJson(const std::vector<int>& ids)
{
    QJsonArray first;
    for (std::size_t i = 0; i < std::min(ids.size(), shownIdCount); ++i) {
        first.append(ids[i]);
    }
    return {{"count", static_cast<qint64>(ids.size())}, {"firstIds", first}};
}

QJsonArray qualityJson(const CaseSummary& summary)
{
    QJsonArray array;
    for (const auto& [dimension, quality] : summary.quality) {
        array.append(QJsonObject{{"dimension", dimension},
                                 {"measure", extremesJson(quality.measure())},
                                 {"totalMeasure", quality.total()},
                                 {"aspect", extremesJson(quality.aspect())},
                                 {"inverted", idListJson(quality.inverted())},
                                 {"twisted", idListJson(quality.twisted())},
                                 {"degenerate", idListJson(quality.degenerate())},
                                 {"unknown", idListJson(quality.unknown())}});
    }
    return array;
}

} // namespace

QByteArray infoJson(const CaseSummary& summary)
{
    const QJsonObject object{
        {"case", summary.name},
        {"modelFile", fileJson(summary.modelFile, QStringLiteral("2013"))},
        {"meshFile", fileJson(summary.meshFile, meshFormatName(summary.meshFile.format))},
        {"is3d", summary.is3d},
        {"isPlanar", summary.isPlanar},
        {"coordinateSystem", summary.coordinateSystem},
        {"refinementRegions", summary.refinementRegionCount},
        {"modelBox", boxJson(summary.modelBox)},
        {"meshBox", boxJson(summary.meshBox)},
        {"dimensions", dimensionsJson(summary)},
        {"materials", materialsJson(summary)},
        {"names", namesJson(summary)},
        {"twins", twinsJson(summary)},
        {"attributes", attributesJson(summary)},
        {"quality", qualityJson(summary)}};
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace Ovra::GeoTool
