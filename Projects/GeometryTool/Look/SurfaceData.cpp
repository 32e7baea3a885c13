#include "SurfaceData.h"

#include "AdjacentIds.h"
#include "Box.h"
#include "CaseView.h"
#include "ModelEntity.h"
#include "MortonOrder.h"

#include <QJsonArray>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>
#include <span>

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

/// The bytes of all numbers, those of the same rank together.
template <typename Number>
QByteArray planesOf(const std::vector<Number>& numbers)
{
    const auto count = static_cast<qsizetype>(numbers.size());
    QByteArray bytes(static_cast<qsizetype>(sizeof(Number)) * count, Qt::Uninitialized);
    for (qsizetype i = 0; i < count; ++i) {
        std::array<char, sizeof(Number)> some = {};
        qToLittleEndian(numbers[static_cast<std::size_t>(i)], some.data());
        for (std::size_t rank = 0; rank < some.size(); ++rank) {
            bytes[static_cast<qsizetype>(rank) * count + i] = some.at(rank);
        }
    }
    return bytes;
}

/// Takes indices as differences, small ones of either sign as small numbers.
class IndexWriter
{
public:
    explicit IndexWriter(Numbering& numbering)
        : numbering_(numbering)
    {
    }

    void write(std::span<const int> vertices)
    {
        for (const int vertex : vertices) {
            const auto index = static_cast<qint32>(numbering_[vertex]);
            const qint32 step = index - last_;
            numbers_.push_back((static_cast<quint32>(step) << 1U) ^
                               static_cast<quint32>(step >> 31));
            last_ = index;
        }
    }

    const std::vector<quint32>& numbers() const { return numbers_; }

private:
    Numbering& numbering_;
    std::vector<quint32> numbers_;
    qint32 last_ = 0;
};

QJsonObject entityJson(const ModelEntity* entity)
{
    return {{"dimension", entity ? QJsonValue(entity->dimension()) : QJsonValue::Null},
            {"id", entity ? QJsonValue(entity->id()) : QJsonValue::Null}};
}

std::size_t cornersOf(const CaseSurface::Patch& patch)
{
    return patch.triangles.size() + patch.quadrilaterals.size();
}

std::size_t endsOf(const CaseSurface::Line& line)
{
    return line.ends.size();
}

template <typename Part, typename Size>
std::vector<std::size_t> sizesOf(const std::vector<Part>& parts, Size sizeOf)
{
    std::vector<std::size_t> sizes;
    sizes.reserve(parts.size());
    std::transform(parts.begin(), parts.end(), std::back_inserter(sizes), sizeOf);
    return sizes;
}

std::size_t sumOf(const std::vector<std::size_t>& numbers)
{
    return std::accumulate(numbers.begin(), numbers.end(), std::size_t(0));
}

/// How much of each part is shown: the largest have to do with what the others leave.
std::vector<std::size_t> roomsOf(std::vector<std::size_t> sizes, std::size_t most)
{
    std::vector<std::size_t> bySize(sizes.size());
    std::iota(bySize.begin(), bySize.end(), std::size_t(0));
    std::stable_sort(bySize.begin(), bySize.end(),
                     [&](std::size_t a, std::size_t b) { return sizes[a] < sizes[b]; });
    for (const std::size_t part : bySize) {
        sizes[part] = std::min(most, sizes[part]);
        most -= sizes[part];
    }
    return sizes;
}

/// As many polygons, or pieces of lines, as there is room for.
std::span<const int> fitting(const std::vector<int>& polygons, std::size_t corners,
                             std::size_t room)
{
    const std::size_t count = std::min(polygons.size(), room) / corners;
    return std::span(polygons).first(corners * count);
}

QJsonObject writePatch(const CaseSurface::Patch& patch, std::size_t room, const MortonOrder& order,
                       IndexWriter& writer)
{
    const std::vector<int> triangles = order.sorted(patch.triangles, 3);
    const std::vector<int> quadrilaterals = order.sorted(patch.quadrilaterals, 4);
    const auto shownTriangles = fitting(triangles, 3, room);
    const auto shownOthers = fitting(quadrilaterals, 4, room - shownTriangles.size());
    writer.write(shownTriangles);
    writer.write(shownOthers);
    const std::size_t shown = shownTriangles.size() / 3 + shownOthers.size() / 4;
    QJsonObject json = entityJson(patch.entity);
    json.insert("triangles", static_cast<qint64>(shownTriangles.size() / 3));
    json.insert("quadrilaterals", static_cast<qint64>(shownOthers.size() / 4));
    json.insert("leftOut", static_cast<qint64>(patch.polygonCount() - shown));
    return json;
}

/// Those of which nothing is shown may be a million; they only count.
void writePatches(const std::vector<CaseSurface::Patch>& patches,
                  const std::vector<std::size_t>& rooms, const MortonOrder& order,
                  IndexWriter& writer, QJsonObject& head)
{
    QJsonArray array;
    std::size_t leftOut = 0;
    for (std::size_t i = 0; i < patches.size(); ++i) {
        const std::size_t fewest = patches[i].triangles.empty() ? 4 : 3;
        if (rooms[i] < fewest) {
            leftOut += patches[i].polygonCount();
        } else {
            array.append(writePatch(patches[i], rooms[i], order, writer));
        }
    }
    head.insert("patches", array);
    head.insert("polygonsLeftOut", static_cast<qint64>(leftOut));
}

QJsonObject writeLine(const CaseSurface::Line& line, std::span<const int> ends, IndexWriter& writer)
{
    QJsonObject json = entityJson(line.entity);
    json.insert("segments", static_cast<qint64>(ends.size() / 2));
    json.insert("faces", adjacentIdsJson(*line.entity, 2));
    writer.write(ends);
    return json;
}

/// As writePatches() does.
void writeLines(const std::vector<CaseSurface::Line>& lines, const std::vector<std::size_t>& rooms,
                IndexWriter& writer, QJsonObject& head)
{
    QJsonArray array;
    std::size_t leftOut = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::span<const int> ends = fitting(lines[i].ends, 2, rooms[i]);
        leftOut += (lines[i].ends.size() - ends.size()) / 2;
        if (!ends.empty()) {
            array.append(writeLine(lines[i], ends, writer));
        }
    }
    head.insert("lines", array);
    head.insert("segmentsLeftOut", static_cast<qint64>(leftOut));
}

QByteArray floatsOf(const std::vector<int>& vertices, const std::vector<Vector>& points,
                    const Vector& origin)
{
    std::vector<float> numbers;
    numbers.reserve(3 * vertices.size());
    for (const int vertex : vertices) {
        const Vector offset = points[static_cast<std::size_t>(vertex)] - origin;
        numbers.push_back(static_cast<float>(offset.x()));
        numbers.push_back(static_cast<float>(offset.y()));
        numbers.push_back(static_cast<float>(offset.z()));
    }
    return planesOf(numbers);
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

SurfaceData::SurfaceData(const CaseView& view, const CaseSurface& surface, std::size_t mostCorners)
{
    Numbering numbering(view.points().size());
    IndexWriter writer(numbering);
    const MortonOrder order(view.points());
    const std::vector<std::size_t> corners = sizesOf(surface.patches(), cornersOf);
    const std::size_t left = mostCorners - std::min(mostCorners, sumOf(corners));
    // A million small lines are not to take the place of the faces.
    const std::vector<std::size_t> ofLines =
        roomsOf(sizesOf(surface.lines(), endsOf), std::max(mostCorners / 4, left));
    const std::vector<std::size_t> ofPatches = roomsOf(corners, mostCorners - sumOf(ofLines));
    writePatches(surface.patches(), ofPatches, order, writer, head_);
    writeLines(surface.lines(), ofLines, writer, head_);
    head_.insert("vertices", static_cast<qint64>(numbering.used().size()));
    const Vector origin = originOf(numbering.used(), view.points());
    head_.insert("origin", QJsonArray{origin.x(), origin.y(), origin.z()});
    positions_ = floatsOf(numbering.used(), view.points(), origin);
    indices_ = planesOf(writer.numbers());
}

} // namespace Ovra::GeoTool
