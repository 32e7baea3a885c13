#include "SolidMaking.h"

#include "Counted.h"
#include "GmshSession.h"
#include "ImportOptions.h"
#include "InputFileCheck.h"
#include "LooseFaces.h"
#include "Progress.h"
#include "ToolError.h"

#include <QStringList>

#include <cmath>
#include <gmsh.h>
#include <optional>

namespace Ovra::GeoTool
{

namespace
{

bool isCadFormat(const QString& path)
{
    static const QStringList suffixes{"step", "stp", "iges", "igs", "brep", "brp"};
    return suffixes.contains(InputFileCheck::suffix(path));
}

bool hasSolids()
{
    gmsh::vectorpair solids;
    gmsh::model::getEntities(solids, 3);
    return !solids.empty();
}

double sizeOfModel()
{
    double low[3] = {0, 0, 0};
    double high[3] = {0, 0, 0};
    gmsh::model::getBoundingBox(-1, -1, low[0], low[1], low[2], high[0], high[1], high[2]);
    return std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
}

QString freeEdges(int count)
{
    return counted(count, QStringLiteral("edge belongs to one face only"),
                   QStringLiteral("edges belong to one face only"));
}

QString openness(const LooseFaces& loose)
{
    return loose.freeEdgeCount() > 0
               ? freeEdges(loose.freeEdgeCount())
               : QStringLiteral("there is nothing between the two sides of ") +
                     counted(loose.emptyCount(), QStringLiteral("closed shell"));
}

} // namespace

SolidMaking::SolidMaking(GmshSession& session, Progress& progress, const ImportOptions& options)
    : session_(session)
    , progress_(progress)
    , options_(options)
{
}

void SolidMaking::run()
{
    if (options_.dimension == 2 || !isCadFormat(options_.input)) {
        return;
    }
    constexpr double exact = 1e-9;
    constexpr double coarse = 1e-5;
    progress_.phase(QStringLiteral("looking for closed shells"));
    const double size = sizeOfModel();
    LooseFaces loose = look(exact * size);
    if (loose.count() == 0 || loose.areFlat()) {
        return;
    }
    if (hasSolids()) {
        tellOfFacesBesideSolids(loose);
        return;
    }
    for (const double closeness : {exact, coarse}) {
        if (loose.freeEdgeCount() > 0) {
            session_.run(options_.input, [&] { loose.sew(closeness * size); });
            loose = look(closeness * size);
        }
    }
    fill(loose);
}

LooseFaces SolidMaking::look(double tolerance)
{
    std::optional<LooseFaces> loose;
    session_.run(options_.input, [&] { loose.emplace(tolerance); });
    return *loose;
}

void SolidMaking::fill(LooseFaces& loose)
{
    if (loose.closedCount() > 0) {
        session_.run(options_.input, [&loose] { loose.makeSolids(); });
    }
    if (loose.solidCount() == 0) {
        tellOfOpenness(loose);
        return;
    }
    if (loose.hollowCount() > 0) {
        warn(counted(loose.hollowCount(),
                     QStringLiteral("closed shell lies inside another and is taken for a hollow"),
                     QStringLiteral("closed shells lie inside others and are taken for hollows")));
    }
    if (loose.freeEdgeCount() + loose.emptyCount() > 0) {
        warn(QStringLiteral("%1 made of its shells, but some faces enclose no volume: %2; they "
                            "stay surfaces")
                 .arg(counted(loose.solidCount(), QStringLiteral("solid is"),
                              QStringLiteral("solids are")),
                      openness(loose)));
    }
}

void SolidMaking::tellOfFacesBesideSolids(const LooseFaces& loose) const
{
    QStringList shells;
    if (loose.closedCount() > 0) {
        shells += counted(loose.closedCount(), QStringLiteral("closed shell"));
    }
    if (loose.freeEdgeCount() > 0) {
        shells += QStringLiteral("open ones, where ") + freeEdges(loose.freeEdgeCount());
    }
    warn(QStringLiteral("beside its solids it holds %1, in %2; they stay surfaces without "
                        "volume")
             .arg(counted(loose.count(), QStringLiteral("face that bounds none of them"),
                          QStringLiteral("faces that bound none of them")),
                  shells.join(QStringLiteral(" and "))));
}

void SolidMaking::tellOfOpenness(const LooseFaces& loose)
{
    const QString text = QStringLiteral("its faces enclose no volume: ") + openness(loose);
    if (options_.dimension == 3) {
        throw ToolError(ExitCode::Unsuitable, QStringLiteral("%1: %2").arg(options_.input, text));
    }
    warn(text + QStringLiteral("; only the faces are imported"));
    isOpennessTold_ = true;
}

void SolidMaking::warn(const QString& text) const
{
    progress_.warning(QStringLiteral("%1: %2").arg(options_.input, text));
}

} // namespace Ovra::GeoTool
