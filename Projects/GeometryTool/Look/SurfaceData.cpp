#include "SurfaceData.h"

#include "Box.h"
#include "CaseView.h"
#include "ModelEntity.h"

#include <QJsonArray>
#include <QtEndian>

#include <algorithm>
#include <numeric>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Numbers the vertices that are used anew, in the order of their first use, so that neighbours
/// have like numbers.
class Numbering
{
public:
    explicit Numbering(std::size_t count)
        : numbers_(count, -1)
    {
    }

    quint32 operator[](int vertex)
    {
        int& number = numbers_[static_cast<std::size_t>(vertex)];
        if (number < 0) {
            number = static_cast<int>(used_.size());
            used_.push_back(vertex);
        }
        return static_cast<quint32>(number);
    }

    /// The vertices that have a number, by it.
    const std::vector<int>& used() const { return used_; }

private:
    std::vector<int> numbers_;
    std::vector<int> used_;
};

template <typename Number>
void append(QByteArray& bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof(little));
}

/// Appends indices as differences.
class IndexWriter
{
public:
    IndexWriter(QByteArray& bytes, Numbering& numbering)
        : bytes_(bytes)
        , numbering_(numbering)
    {
    }

    void write(const std::vector<int>& vertices)
    {
        for (const int vertex : vertices) {
            const quint32 index = numbering_[vertex];
            append(bytes_, index - last_);
            last_ = index;
        }
    }

private:
    QByteArray& bytes_;
    Numbering& numbering_;
    quint32 last_ = 0;
};

QJsonObject entityJson(const ModelEntity* entity)
{
    return {{"dimension", entity ? QJsonValue(entity->dimension()) : QJsonValue::Null},
            {"id", entity ? QJsonValue(entity->id()) : QJsonValue::Null}};
}

/// Whether each patch is shown: the largest stay away until the rest has room.
std::vector<bool> shownPatches(const std::vector<CaseSurface::Patch>& patches, std::size_t most)
{
    std::vector<std::size_t> bySize(patches.size());
    std::iota(bySize.begin(), bySize.end(), std::size_t(0));
    std::stable_sort(bySize.begin(), bySize.end(), [&](std::size_t a, std::size_t b) {
        return patches[a].polygonCount() < patches[b].polygonCount();
    });
    std::vector<bool> shown(patches.size(), false);
    std::size_t count = 0;
    for (const std::size_t patch : bySize) {
        count += patches[patch].polygonCount();
        shown[patch] = count <= most;
    }
    return shown;
}

QJsonObject patchJson(const CaseSurface::Patch& patch, bool isShown)
{
    const auto count = [](bool counts, std::size_t number) {
        return counts ? static_cast<qint64>(number) : 0;
    };
    QJsonObject json = entityJson(patch.entity);
    json.insert("triangles", count(isShown, patch.triangles.size() / 3));
    json.insert("quadrilaterals", count(isShown, patch.quadrilaterals.size() / 4));
    json.insert("leftOut", count(!isShown, patch.polygonCount()));
    return json;
}

QJsonArray writePatches(const std::vector<CaseSurface::Patch>& patches, std::size_t most,
                        IndexWriter& writer)
{
    const std::vector<bool> shown = shownPatches(patches, most);
    QJsonArray json;
    for (std::size_t i = 0; i < patches.size(); ++i) {
        json.append(patchJson(patches[i], shown[i]));
        if (shown[i]) {
            writer.write(patches[i].triangles);
            writer.write(patches[i].quadrilaterals);
        }
    }
    return json;
}

QJsonArray writeLines(const std::vector<CaseSurface::Line>& lines, IndexWriter& writer)
{
    QJsonArray array;
    for (const CaseSurface::Line& line : lines) {
        QJsonObject json = entityJson(line.entity);
        json.insert("segments", static_cast<qint64>(line.ends.size() / 2));
        array.append(json);
        writer.write(line.ends);
    }
    return array;
}

QByteArray floatsOf(const std::vector<int>& vertices, const std::vector<Vector>& points,
                    const Vector& origin)
{
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(12 * vertices.size()));
    for (const int vertex : vertices) {
        const Vector offset = points[static_cast<std::size_t>(vertex)] - origin;
        append(bytes, static_cast<float>(offset.x()));
        append(bytes, static_cast<float>(offset.y()));
        append(bytes, static_cast<float>(offset.z()));
    }
    return bytes;
}

Vector originOf(const std::vector<int>& vertices, const std::vector<Vector>& points)
{
    Box box;
    for (const int vertex : vertices) {
        box += points[static_cast<std::size_t>(vertex)];
    }
    return vertices.empty() ? Vector() : box.minimum();
}

} // namespace

SurfaceData::SurfaceData(const CaseView& view, const CaseSurface& surface, std::size_t mostPolygons)
{
    Numbering numbering(view.points().size());
    IndexWriter writer(indices_, numbering);
    head_.insert("patches", writePatches(surface.patches(), mostPolygons, writer));
    head_.insert("lines", writeLines(surface.lines(), writer));
    head_.insert("vertices", static_cast<qint64>(numbering.used().size()));
    const Vector origin = originOf(numbering.used(), view.points());
    head_.insert("origin", QJsonArray{origin.x(), origin.y(), origin.z()});
    positions_ = floatsOf(numbering.used(), view.points(), origin);
}

} // namespace Ovra::GeoTool
