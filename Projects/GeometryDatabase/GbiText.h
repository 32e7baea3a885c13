#pragma once

#include "ElementFaceData.h"
#include "LinkData.h"
#include "Vector.h"

#include <QList>
#include <QMap>
#include <QTextStream>

/// \file
/// \brief The pieces of text that several sections of the solver input share.
///
/// For GbiWriter alone; nothing here is exported.

namespace Ovra::Geo
{

class MeshEntity;
class TextBlock;

namespace GbiText
{

/// \brief The terminator of a section of nodes, elements, surfaces or shells.
inline constexpr char EndOfSection[] = "-1\n";

/// \brief The real number precision of coordinates and normals.
inline constexpr int CoordinatePrecision = 15;

/// \brief The real number precision of weights.
inline constexpr int WeightPrecision = 6;

/// \brief A manipulator that ends a line: newLine or Qt::endl.
using LineEnd = QTextStream& (*)(QTextStream&);

/// \brief Ends a line with a line feed and, unlike Qt::endl, without flushing the stream.
QTextStream& newLine(QTextStream& stream);

/// \brief Sets a stream's real number precision and puts the old one back when it goes.
class RealPrecision
{
public:
    RealPrecision(QTextStream& stream, int precision); ///< of a stream that outlives this
    ~RealPrecision();

    RealPrecision(const RealPrecision&) = delete;
    RealPrecision& operator=(const RealPrecision&) = delete;

private:
    QTextStream& stream_;
    int previous_;
};

/// \brief The columns of an element line that follow from its shape; 0 and 0 for an unknown one.
struct ElementShape
{
    int typeCode = 0;  ///< the code of the kind
    int nodeCount = 0; ///< the number of its nodes
};

/// \brief The shape of an element by its dimension and its number of vertices.
/// \param element       an element
/// \param quadrilateral the number of vertices that makes an element of a dimension other than 3 a
///                      quadrilateral
ElementShape shapeOf(const MeshEntity& element, int quadrilateral);

/// \brief The first five columns of an element line: id, type code, node count, material and
///        region id.
void writeElementColumns(TextBlock& stream, const MeshEntity& element, ElementShape shape,
                         int material, int regionId);

/// \brief The last columns of an element line, each vertex id with a blank ahead, and the
///        line feed.
void writeElementVertices(TextBlock& stream, const MeshEntity& element);

/// \brief x, y and z, one blank apart.
/// \param stream,vector the first a QTextStream or a TextBlock
template <typename Stream>
void writeVector(Stream& stream, const Vector& vector)
{
    stream << vector.x() << ' ' << vector.y() << ' ' << vector.z();
}

/// \brief A list of ids, \p idsPerLine in a line.
///
/// A full line has no blank at its end, a short last line has one, and an empty list writes
/// nothing.
void writeIds(QTextStream& stream, const QList<int>& ids, int idsPerLine, LineEnd lineEnd);

/// \brief A number of records, with the end of its line.
void writeCount(QTextStream& stream, qsizetype count, LineEnd lineEnd);

/// \brief Element id and local face number, without the end of the line.
void writeFace(QTextStream& stream, const ElementFaceData& face);

/// \brief A line "element id, local face" for each face.
void writeFaces(QTextStream& stream, const QList<ElementFaceData>& faces, LineEnd lineEnd);

/// \brief The number of \p faces, then a line "element id, local face" for each.
void writeCountedFaces(QTextStream& stream, const QList<ElementFaceData>& faces, LineEnd lineEnd);

/// \brief The number of links and the link ids of a stencil, each with a blank behind it.
void writeLinkIds(QTextStream& stream, const LinkData& stencil);

/// \brief The weights of a stencil, each with a blank behind it.
void writeLinkWeights(QTextStream& stream, const LinkData& stencil);

/// \brief A line "node id, link count, link ids, weights" for each stencil, with a blank at
///        its end.
void writeStencils(QTextStream& stream, const QList<LinkData>& stencils, LineEnd lineEnd);

/// \brief The size of a map, then a line "key value" for each entry, ascending by key.
void writeCountedMap(QTextStream& stream, const QMap<int, int>& map, LineEnd lineEnd);

} // namespace GbiText
} // namespace Ovra::Geo
