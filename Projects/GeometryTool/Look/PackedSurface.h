#pragma once

#include "SurfaceData.h"

namespace Ovra::GeoTool
{

/// \brief The surfaces of a case as they stand in the report's page, compressed and as text, of which
/// as much is cut off as the page has no room for.
class PackedSurface
{
public:
    /// \brief As many corners as a browser turns about at ease: those of 1.2 million triangles.
    static constexpr std::size_t MostCorners = 3'600'000;

    /// \param room in bytes, for all that follows together; an empty head, of some 100, is there in any case
    PackedSurface(const CaseView& view, const CaseSurface& surface, qsizetype room);

    const QJsonObject& head() const { return head_; }

    /// \brief The blocks of SurfaceData, each as base64 of a zlib stream, which a browser knows as
    /// "deflate".
    const QByteArray& positions() const { return positions_; }
    const QByteArray& indices() const { return indices_; }

    /// \brief What it takes of a page.
    qsizetype size() const { return size_; }

private:
    void take(const SurfaceData& data);

    QJsonObject head_;
    QByteArray positions_;
    QByteArray indices_;
    qsizetype size_ = 0;
};

} // namespace Ovra::GeoTool
