#include "PackedSurface.h"

#include <QJsonDocument>

#include <algorithm>

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

/// A tenth fewer than would fit if all took the same: what is left may take more than what was cut off.
std::size_t fewer(std::size_t corners, qsizetype taken, qsizetype room)
{
    if (room <= 0) {
        return 0;
    }
    const double share = 0.9 * static_cast<double>(room) / static_cast<double>(taken);
    return static_cast<std::size_t>(share * static_cast<double>(corners));
}

} // namespace

PackedSurface::PackedSurface(const CaseView& view, const CaseSurface& surface, qsizetype room)
{
    std::size_t corners = std::min(MostCorners, cornersOf(surface));
    take(SurfaceData(view, surface, corners));
    while (size() > room && corners > 0) {
        corners = fewer(corners, size() - headSize(), room - headSize());
        take(SurfaceData(view, surface, corners));
    }
}

void PackedSurface::take(const SurfaceData& data)
{
    head_ = data.head();
    positions_ = packed(data.positions());
    indices_ = packed(data.indices());
}

qsizetype PackedSurface::headSize() const
{
    return QJsonDocument(head_).toJson(QJsonDocument::Compact).size();
}

} // namespace Ovra::GeoTool
