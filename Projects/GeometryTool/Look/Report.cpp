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

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Findings of a kind that are told with their place.
constexpr int findingLimit = 100;

/// What a page may take, in bytes, and what its surfaces may in any case: tables that take more than
/// the rest are not to leave them out.
constexpr qsizetype pageSize = 14'900'000;
constexpr qsizetype leastForSurfaces = 4'000'000;

/// \param taken by all else in the page
qsizetype roomForSurfaces(qsizetype taken)
{
    return std::max(pageSize - taken, leastForSurfaces);
}

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

/// A tag that ends the script in which the text stands begins with a bracket, which JSON can do
/// without.
QByteArray scriptText(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).replace("<", "\\u003c");
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

Report::Report()
    : template_(pageTemplate())
{
}

QByteArray Report::page(const CaseFiles& files, const Database& database,
                        const std::optional<QJsonObject>& changes, Progress& progress) const
{
    const CaseView view(database);
    const CaseSummary summary(files, view, progress);
    const CaseFindings findings =
        CaseVerifier::verify(view, progress, CaseVerifier::ContentTopics, findingLimit);
    QJsonObject data{{"info", objectOf(infoJson(summary))},
                     {"verify", objectOf(VerifyReport(files.name(), database, findings).json())},
                     {"entities", entityTable(view, summary)},
                     {"histograms", histogramsJson(summary)},
                     {"before", changes ? QJsonValue(*changes) : QJsonValue(QJsonValue::Null)}};
    progress.phase(QStringLiteral("gathering the surfaces"));
    const PackedSurface surfaces(view, CaseSurface(view),
                                 roomForSurfaces(template_.size() + scriptText(data).size()));
    data.insert("surfaces", surfaces.head());
    const QString title = QFileInfo(files.name()).fileName();
    return filled(template_, {{"title", title.toHtmlEscaped().toUtf8()},
                              {"case", scriptText(data)},
                              {"positions", surfaces.positions()},
                              {"indices", surfaces.indices()}});
}

} // namespace Ovra::GeoTool
