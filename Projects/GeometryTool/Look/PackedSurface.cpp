#include "PackedSurface.h"

#include "InParallel.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

/// Without the size that Qt puts ahead, which a browser's stream does not know.
QByteArray packed(const QByteArray& bytes)
{
    return qCompress(bytes).mid(sizeof(quint32)).toBase64();
}

std::size_t cornersOf(const CaseSurface& surface)
{
    std::size_t corners = 0;
    for (const CaseSurface::Patch& patch : surface.patches()) {
        corners += patch.triangles.size() + patch.quadrilaterals.size();
    }
    for (const CaseSurface::Line& line : surface.lines()) {
        corners += line.ends.size();
    }
    return corners;
}

} // namespace

/// How much a corner takes is known only when it is packed. At first a tenth fewer than would fit if all
/// took the same; what is left may take more than what was cut off, so that then half of that is tried.
PackedSurface::PackedSurface(const CaseView& view, const CaseSurface& surface, qsizetype room)
{
    std::size_t corners = std::min(MostCorners, cornersOf(surface));
    take(SurfaceData(view, surface, corners));
    for (double share = 0.9; size() > room && corners > 0; share = 0.45) {
        share *= static_cast<double>(room) / static_cast<double>(size());
        corners = static_cast<std::size_t>(share * static_cast<double>(corners));
        take(SurfaceData(view, surface, corners));
    }
}

void PackedSurface::take(const SurfaceData& data)
{
    head_ = data.head();
    const std::array<std::pair<QByteArray*, QByteArray>, 2> blocks = {
        {{&positions_, data.positions()}, {&indices_, data.indices()}}};
    inParallel(blocks.size(), 1, [&blocks](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            *blocks.at(i).first = packed(blocks.at(i).second);
        }
    });
    size_ = QJsonDocument(head_).toJson(QJsonDocument::Compact).size() + positions_.size() +
            indices_.size();
}

} // namespace Ovra::GeoTool
