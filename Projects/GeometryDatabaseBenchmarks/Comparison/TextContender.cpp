// The lines of nodes and elements of flat arrays, made by std::to_chars into one buffer.
// For meshes of tetrahedra whose vertices are numbered from 1 without gaps, and without attributes.

#include "AttributeType.h"
#include "Contender.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "StoredCase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QVariant>

#include <array>
#include <charconv>
#include <vector>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

constexpr std::size_t nodeLine = 96;
constexpr std::size_t tetrahedronLine = 72;

using Columns = std::array<int, 10>; // of an element's line

struct Arrays
{
    std::vector<double> coordinates;
    std::vector<Columns> tetrahedra;
};

Columns columnsOf(const MeshEntity& element)
{
    const int region = element.parent()->id();
    const QVariant material =
        element.parent()->attributes().value(AttributeType::MaterialId, QVariant(0));
    Columns columns{element.id(), 4, 4, material.toInt(), region, 0, 0, 0, 0, 0};
    for (int i = 0; i < 4; ++i) {
        columns[size_t(6 + i)] = element.adjacencyAt(0, i)->id();
    }
    return columns;
}

Arrays arraysOf(Mesh& mesh)
{
    Arrays arrays;
    for (auto walk = mesh.iterator(0); walk.hasNext();) {
        const Vector point = walk.next().value()->centroid();
        arrays.coordinates.insert(arrays.coordinates.end(), {point.x(), point.y(), point.z()});
    }
    for (auto walk = mesh.iterator(3); walk.hasNext();) {
        arrays.tetrahedra.push_back(columnsOf(*walk.next().value()));
    }
    return arrays;
}

class Lines
{
public:
    explicit Lines(std::size_t size)
        : text_(size)
        , end_(text_.data())
    {
    }

    template <typename... Format>
    void put(char behind, Format... format)
    {
        end_ = std::to_chars(end_, text_.data() + text_.size(), format...).ptr;
        *end_++ = behind;
    }

    void putEnd()
    {
        for (const char c : {'-', '1', '\n'}) {
            *end_++ = c;
        }
    }

    void writeTo(QIODevice& device) const { device.write(text_.data(), end_ - text_.data()); }

private:
    std::vector<char> text_;
    char* end_;
};

void putNodes(Lines& lines, const std::vector<double>& coordinates)
{
    constexpr double scale = 0.001;
    for (std::size_t i = 0; i < coordinates.size(); i += 3) {
        lines.put(' ', static_cast<int>(i / 3 + 1));
        for (std::size_t axis = 0; axis < 3; ++axis) {
            lines.put(axis == 2 ? '\n' : ' ', coordinates[i + axis] * scale,
                      std::chars_format::general, 15);
        }
    }
}

void putTetrahedra(Lines& lines, const std::vector<Columns>& tetrahedra)
{
    for (const Columns& columns : tetrahedra) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            lines.put(i + 1 < columns.size() ? ' ' : '\n', columns[i]);
        }
    }
}

std::size_t sizeFor(const Arrays& arrays)
{
    constexpr std::size_t rest = 64;
    return arrays.coordinates.size() / 3 * nodeLine + arrays.tetrahedra.size() * tetrahedronLine +
           rest;
}

void writeText(benchmark::State& state, const QString& base)
{
    const Arrays arrays = arraysOf(*StoredCase::read(base)->mesh());
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("file")));
    Lines lines(sizeFor(arrays));
    for (auto _ : state) {
        putNodes(lines, arrays.coordinates);
        lines.putEnd();
        putTetrahedra(lines, arrays.tetrahedra);
        lines.putEnd();
        if (!file.open(QIODevice::WriteOnly)) {
            state.SkipWithError("the file could not be opened");
        }
        lines.writeTo(file);
        file.close();
    }
    state.counters["bytes"] = static_cast<double>(file.size());
}

const ContenderRegistration registration([](const QString& base) {
    addRoad("Text", base, "to_chars", [base](benchmark::State& state) { writeText(state, base); });
});

} // namespace

} // namespace Benchmarks
