#include "GbiText.h"

#include "MeshEntity.h"
#include "TextBlock.h"

#include <QVarLengthArray>

namespace Ovra::Geo::GbiText
{

QTextStream& newLine(QTextStream& stream)
{
    return stream << '\n';
}

RealPrecision::RealPrecision(QTextStream& stream, int precision)
    : stream_(stream)
    , previous_(stream.realNumberPrecision())
{
    stream_.setRealNumberPrecision(precision);
}

RealPrecision::~RealPrecision()
{
    stream_.setRealNumberPrecision(previous_);
}

namespace
{

ElementShape solidShape(int vertices)
{
    switch (vertices) {
    case 4:
        return {4, 4};
    case 5:
        return {6, 5};
    case 6:
        return {5, 6};
    case 8:
        return {3, 8};
    default:
        return {};
    }
}

} // namespace

ElementShape shapeOf(const MeshEntity& element, int quadrilateral)
{
    const int vertices = element.adjacencyCount(0);
    if (element.dimension() == 3) {
        return solidShape(vertices);
    }
    if (vertices == 3) {
        return {1, 3};
    }
    return vertices == quadrilateral ? ElementShape{2, 4} : ElementShape{};
}

void writeElementColumns(TextBlock& stream, const MeshEntity& element, ElementShape shape,
                         int material, int regionId)
{
    stream << element.id() << ' ' << shape.typeCode << ' ' << shape.nodeCount << ' ' << material
           << ' ' << regionId;
}

void writeElementVertices(TextBlock& stream, const MeshEntity& element)
{
    // All ids ahead of any text, so that the processor fetches the scattered vertices side by side;
    // that nearly halves the time of the elements section.
    QVarLengthArray<int, 8> ids;
    for (int i = 0, count = element.adjacencyCount(0); i < count; ++i) {
        ids.append(element.adjacencyAt(0, i)->id());
    }
    for (const int id : ids) {
        stream << ' ' << id;
    }
    stream << '\n';
}

void writeIds(QTextStream& stream, const QList<int>& ids, int idsPerLine, LineEnd lineEnd)
{
    int onLine = 0;
    for (const int id : ids) {
        stream << id;
        if (++onLine < idsPerLine) {
            stream << ' ';
        } else {
            stream << lineEnd;
            onLine = 0;
        }
    }
    if (onLine > 0) {
        stream << lineEnd;
    }
}

void writeCount(QTextStream& stream, qsizetype count, LineEnd lineEnd)
{
    stream << static_cast<int>(count) << lineEnd;
}

void writeFace(QTextStream& stream, const ElementFaceData& face)
{
    stream << face.elementId_ << ' ' << face.localFace_;
}

void writeFaces(QTextStream& stream, const QList<ElementFaceData>& faces, LineEnd lineEnd)
{
    for (const ElementFaceData& face : faces) {
        writeFace(stream, face);
        stream << lineEnd;
    }
}

void writeCountedFaces(QTextStream& stream, const QList<ElementFaceData>& faces, LineEnd lineEnd)
{
    writeCount(stream, faces.size(), lineEnd);
    writeFaces(stream, faces, lineEnd);
}

void writeCountedMap(QTextStream& stream, const QMap<int, int>& map, LineEnd lineEnd)
{
    writeCount(stream, map.size(), lineEnd);
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        stream << entry.key() << ' ' << entry.value() << lineEnd;
    }
}

namespace
{

template <typename Values>
void writeFirst(QTextStream& stream, const Values& values, int count)
{
    for (auto value = values.begin(), end = value + count; value != end; ++value) {
        stream << *value << ' ';
    }
}

} // namespace

void writeLinkIds(QTextStream& stream, const LinkData& stencil)
{
    stream << stencil.linkCount_ << ' ';
    writeFirst(stream, stencil.linkIds_, stencil.linkCount_);
}

void writeLinkWeights(QTextStream& stream, const LinkData& stencil)
{
    writeFirst(stream, stencil.linkWeights_, stencil.linkCount_);
}

void writeStencils(QTextStream& stream, const QList<LinkData>& stencils, LineEnd lineEnd)
{
    for (const LinkData& stencil : stencils) {
        stream << stencil.nodeId_ << ' ';
        writeLinkIds(stream, stencil);
        writeLinkWeights(stream, stencil);
        stream << lineEnd;
    }
}

} // namespace Ovra::Geo::GbiText
