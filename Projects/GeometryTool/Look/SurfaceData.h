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
/// `triangles` and `quadrilaterals`, and those `leftOut`, where there are any of the former;
/// `polygonsLeftOut`, the number of those in other patches; `lines`, each with `dimension`, `id`,
/// the number of `segments` and the ids of its `faces`, where there are segments;
/// `segmentsLeftOut`, the number of those that are not there. The indices stand patch by patch, triangles
/// before quadrilaterals, then line by line.
///
/// Within a patch the polygons stand along a Morton curve through their middles, and vertices have
/// their numbers in the order of their first use. Both blocks hold the lowest bytes of all their
/// numbers, then the next ones, and so on. So they shrink to a third when they are compressed, for
/// a mesh whose neighbours lie far apart in its lists.
class SurfaceData
{
public:
    /// \param mostCorners of polygons, and ends of lines; of more, the largest patches are cut off, and
    /// the longest lines where these have more than a quarter
    SurfaceData(const CaseView& view, const CaseSurface& surface, std::size_t mostCorners);

    const QJsonObject& head() const { return head_; }

    /// \brief Three 32-bit floating-point numbers for each vertex.
    const QByteArray& positions() const { return positions_; }

    /// \brief Unsigned 32-bit numbers, each twice its difference from the one before, less one and
    /// without its sign where that is negative.
    const QByteArray& indices() const { return indices_; }

private:
    QJsonObject head_;
    QByteArray positions_;
    QByteArray indices_;
};

} // namespace Ovra::GeoTool
