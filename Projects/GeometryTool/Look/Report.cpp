#include "Report.h"

#include "CaseFiles.h"
#include "CaseSummary.h"
#include "CaseSurface.h"
#include "CaseVerifier.h"
#include "CaseView.h"
#include "EntityTable.h"
#include "InfoJson.h"
#include "PackedSurface.h"
#include "PageTemplate.h"
#include "Progress.h"
#include "VerifyReport.h"

#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Findings of a kind that are told with their place.
constexpr int findingLimit = 100;

QJsonArray aspectsJson(const QualityHistogram& histogram)
{
    QJsonArray bins;
    for (std::size_t i = 0; i < histogram.aspects().size(); ++i) {
        bins.append(QJsonArray{QualityHistogram::AspectBounds[i], histogram.aspects()[i]});
    }
    return bins;
}

QJsonArray measuresJson(const QualityHistogram& histogram)
{
    QJsonArray bins;
    for (const auto& [exponent, count] : histogram.measures()) {
        bins.append(QJsonArray{exponent, count});
    }
    return bins;
}

/// Bins as pairs: of aspects, of where they begin and the number of elements; of measures, of the
/// power of two at which they begin and the number.
QJsonArray histogramsJson(const CaseSummary& summary)
{
    QJsonArray array;
    for (const auto& [dimension, quality] : summary.quality) {
        array.append(QJsonObject{{"dimension", dimension},
                                 {"aspects", aspectsJson(quality.histogram())},
                                 {"measures", measuresJson(quality.histogram())}});
    }
    return array;
}

QJsonObject objectOf(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

QByteArray keyOf(const QJsonObject& twin)
{
    return QJsonDocument(QJsonObject{{"as", twin["relation"]},
                                     {"dimension", twin["dimension"]},
                                     {"id", twin["id"]},
                                     {"of", twin["originalId"]}})
        .toJson();
}

/// What has been doubled since.
QJsonArray newTwins(const QJsonObject& info, const QJsonObject& infoBefore)
{
    QSet<QByteArray> had;
    for (const auto& twin : infoBefore["twins"].toArray()) {
        had += keyOf(twin.toObject());
    }
    QJsonArray array;
    for (const auto& twin : info["twins"].toArray()) {
        if (!had.contains(keyOf(twin.toObject()))) {
            array.append(twin);
        }
    }
    return array;
}

QJsonValue changesJson(const QJsonObject& info, const std::optional<QJsonObject>& changes)
{
    if (!changes) {
        return QJsonValue::Null;
    }
    QJsonObject json = *changes;
    json.insert("newTwins", newTwins(info, json["info"].toObject()));
    return json;
}

/// The template is taken apart at its marks, so that a text of the case that looks like one stays.
QByteArray filled(const QByteArray& page, const QHash<QByteArray, QByteArray>& parts)
{
    QByteArray result;
    qsizetype from = 0;
    for (qsizetype mark = page.indexOf("{{"); mark >= 0; mark = page.indexOf("{{", from)) {
        const qsizetype end = page.indexOf("}}", mark);
        const auto part = parts.find(page.mid(mark + 2, end - mark - 2));
        const bool isMark = end >= 0 && part != parts.end();
        const qsizetype next = isMark ? end + 2 : mark + 2;
        result += page.mid(from, (isMark ? mark : next) - from);
        result += isMark ? *part : QByteArray();
        from = next;
    }
    return result + page.mid(from);
}

} // namespace

Report::Report(const PageBudget& budget)
    : budget_(budget)
    , template_(pageTemplate())
{
}

/// Regions and faces have half of the room each, and what the others leave of theirs.
QJsonObject Report::tables(const QJsonObject& data, const QJsonArray& bodies,
                           const QJsonArray& boundaries) const
{
    QJsonObject result = budget_.limited(data);
    const qsizetype room =
        budget_.page - budget_.surfaces - template_.size() - PageBudget::scriptText(result).size();
    const QJsonArray halfOfBoundaries = budget_.fitting(boundaries, room / 2);
    QJsonArray entities =
        budget_.fitting(bodies, room - PageBudget::scriptText(halfOfBoundaries).size());
    const qsizetype left = room - PageBudget::scriptText(entities).size();
    for (const auto& boundary : budget_.fitting(boundaries, left)) {
        entities.append(boundary);
    }
    result.insert("entities", entities);
    return result;
}

QByteArray Report::page(const CaseFiles& files, const Database& database,
                        const std::optional<QJsonObject>& changes, Progress& progress) const
{
    const CaseView view(database);
    const CaseSummary summary(files, view, progress);
    const CaseFindings findings =
        CaseVerifier::verify(view, progress, CaseVerifier::ContentTopics, findingLimit);
    const QJsonObject info = objectOf(infoJson(summary));
    QJsonObject data =
        tables({{"info", info},
                {"verify", objectOf(VerifyReport(files.name(), database, findings).json())},
                {"histograms", histogramsJson(summary)},
                {"before", changesJson(info, changes)}},
               bodyTable(view, summary), boundaryTable(view, summary));
    progress.phase(QStringLiteral("gathering the surfaces"));
    const qsizetype room = budget_.page - template_.size() - PageBudget::scriptText(data).size();
    const PackedSurface surfaces(view, CaseSurface(view), room);
    data.insert("surfaces", surfaces.head());
    const QString title = QFileInfo(files.name()).fileName();
    return filled(template_, {{"title", title.toHtmlEscaped().toUtf8()},
                              {"case", PageBudget::scriptText(data)},
                              {"positions", surfaces.positions()},
                              {"indices", surfaces.indices()}});
}

} // namespace Ovra::GeoTool
