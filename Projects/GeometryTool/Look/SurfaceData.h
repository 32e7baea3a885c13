#pragma once

#include "CaseSurface.h"

#include <QByteArray>
#include <QJsonObject>

namespace Ovra::GeoTool
{

/// \brief The surfaces of a case as the report's page takes them: a head in JSON, and two blocks of
/// numbers that the browser reads as arrays.
///
/// The head has `origin`, which all positions are relative to; `vertices`, the number of positions;
/// `patches`, each with `dimension` and `id` of its entity (null where it has none), the numbers of
/// `triangles` and `quadrilaterals`, and those `leftOut`; `lines`, each with `dimension`, `id` and
/// the number of `segments`. The indices stand patch by patch, triangles before quadrilaterals, then
/// line by line.
class SurfaceData
{
public:
    /// \brief As many polygons as a page of less than 15 MB has room for.
    static constexpr std::size_t MostPolygons = 1'000'000;

    /// \param mostPolygons of more than these, the patches with the most polygons go first
    SurfaceData(const CaseView& view, const CaseSurface& surface,
                std::size_t mostPolygons = MostPolygons);

    const QJsonObject& head() const { return head_; }

    /// \brief Three 32-bit floating-point numbers for each vertex, little-endian.
    const QByteArray& positions() const { return positions_; }

    /// \brief Unsigned 32-bit numbers, little-endian, each as its difference from the one before,
    /// which leaves little of them when they are compressed.
    const QByteArray& indices() const { return indices_; }

private:
    QJsonObject head_;
    QByteArray positions_;
    QByteArray indices_;
};

} // namespace Ovra::GeoTool
