#include "GbiQueries.h"
#include "GbiText.h"
#include "GbiWriter.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace Ovra::Geo
{

namespace
{

const int FacesPerLine = 20;
const int NodesPerLine = 5;

void writePartIds(QTextStream& stream, const ModelEntity& region, int faceDimension)
{
    QList<int> ids;
    for (auto faces = region.adjacencyIterator(faceDimension); faces.hasNext();) {
        ids.append(faces.next()->id());
    }
    std::sort(ids.begin(), ids.end());
    GbiText::writeIds(stream, ids, FacesPerLine, GbiText::newLine);
}

void writePart(QTextStream& stream, const ModelEntity& region, int faceDimension, double scale)
{
    stream << region.id() << ' ' << region.adjacencyCount(faceDimension) << ' ' << region.name()
           << '\n';
    GbiText::writeVector(stream, region.centroid() * scale);
    stream << '\n';
    writePartIds(stream, region, faceDimension);
}

// The elements on the two sides of a mesh face, and its vertices as each side has them. The second
// element is negative where it lies across a shell; only then the second vertices count.
struct Sides
{
    std::array<int, 2> elements{};
    std::array<QVarLengthArray<int, 8>, 2> vertices;
};

// The number of elements; their ids with the smaller one first, if there are two.
int collectElements(const MeshEntity& face, std::array<int, 2>& elements)
{
    const int dimension = face.dimension() + 1;
    const int count = std::min(face.adjacencyCount(dimension), 2);
    for (int i = 0; i < count; ++i) {
        elements[static_cast<std::size_t>(i)] = face.adjacencyAt(dimension, i)->id();
    }
    if (count == 2 && elements[0] > elements[1]) {
        std::swap(elements[0], elements[1]);
    }
    return count;
}

bool hasShellVertex(const MeshEntity& face)
{
    for (auto vertices = face.adjacencyIterator(0); vertices.hasNext();) {
        if (vertices.next()->attributes().contains(AttributeType::ShellVertex)) {
            return true;
        }
    }
    return false;
}

QList<MeshEntity*> shellPartners(const Mesh& mesh, const MeshEntity& face)
{
    QList<MeshEntity*> partners;
    for (auto vertices = face.adjacencyIterator(0); vertices.hasNext();) {
        MeshEntity* vertex = vertices.next();
        const AttributeMap& attributes = vertex->attributes();
        const bool hasPartner = attributes.contains(AttributeType::ShellVertex);
        partners.append(hasPartner ? mesh.entity(0, GbiQueries::intAttribute(
                                                        attributes, AttributeType::ShellVertex))
                                   : vertex);
    }
    return partners;
}

// Puts the partners of the vertices on the side that has no element, and the one element that holds
// them all, if there is just one.
void lookAcrossShell(const Mesh& mesh, const MeshEntity& face, std::size_t emptySide, Sides& sides)
{
    const QList<MeshEntity*> partners = shellPartners(mesh, face);
    sides.vertices[emptySide].clear();
    for (const MeshEntity* partner : partners) {
        sides.vertices[emptySide].append(partner->id());
    }
    const QList<MeshEntity*> elements =
        MeshEntity::getUpwardAdjacencies(partners, face.dimension() + 1).values();
    if (elements.size() == 1) {
        const int id = elements.first()->id();
        sides.elements[emptySide] = emptySide == 0 ? id : -id;
    }
}

Sides sidesOf(const Mesh& mesh, const MeshEntity& face, bool isShell)
{
    Sides sides;
    const int count = collectElements(face, sides.elements);
    for (auto vertices = face.adjacencyIterator(0); vertices.hasNext();) {
        sides.vertices[0].append(vertices.next()->id());
    }
    if (count < 2 && !isShell && hasShellVertex(face)) {
        lookAcrossShell(mesh, face, static_cast<std::size_t>(count), sides);
    }
    return sides;
}

void appendNumber(QString& line, int number)
{
    std::array<char, 12> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    line.append(QLatin1String(digits.data(), static_cast<qsizetype>(end - digits.data())));
}

void appendVertices(QString& line, const QVarLengthArray<int, 8>& vertices)
{
    for (const int vertex : vertices) {
        appendNumber(line, vertex);
        line.append(u' ');
    }
}

// Made without the host's stream, as the line follows none of its settings.
QString connectivityLine(const Sides& sides)
{
    QString line;
    appendNumber(line, sides.elements[0]);
    line.append(u' ');
    appendVertices(line, sides.vertices[0]);
    appendNumber(line, sides.elements[1]);
    if (sides.elements[1] < 0) {
        line.append(u' ');
        appendVertices(line, sides.vertices[1]);
    }
    return line;
}

using KeyedLine = std::pair<int, QString>;

bool hasLowerKey(const KeyedLine& a, const KeyedLine& b)
{
    return a.first < b.first;
}

QList<KeyedLine> connectivityLines(const Mesh& mesh, const ModelEntity& face)
{
    const bool isShell = GbiQueries::boolAttribute(face.attributes(), AttributeType::IsShell);
    QList<KeyedLine> lines;
    lines.reserve(face.childCount());
    for (auto walk = face.childIterator(); walk.hasNext();) {
        walk.next();
        const Sides sides = sidesOf(mesh, *walk.value(), isShell);
        lines.append({sides.elements[0], connectivityLine(sides)});
    }
    return lines;
}

void writeConnectivity(QTextStream& stream, const Mesh& mesh, const ModelEntity& face)
{
    QList<KeyedLine> lines = connectivityLines(mesh, face);
    // The solver's format has, of the lines of one element, the one found last first.
    std::reverse(lines.begin(), lines.end());
    std::stable_sort(lines.begin(), lines.end(), hasLowerKey);
    for (const KeyedLine& line : std::as_const(lines)) {
        stream << line.second << '\n';
    }
}

QList<int> nodeIds(const ModelEntity& face)
{
    const QList<MeshEntity*> nodes = inIdOrder(Utility::getMeshVerticesOnModelEntity(&face));
    QList<int> ids;
    ids.reserve(nodes.size());
    for (const MeshEntity* node : nodes) {
        ids.append(node->id());
    }
    return ids;
}

// A face made by extrusion goes under the name and geometry of the face that it was made from.
const ModelEntity& describedFace(const Model& model, const ModelEntity& face)
{
    const int id = GbiQueries::intAttribute(face.attributes(), AttributeType::NonExtrudedFace);
    return id == 0 ? face : *model.entity(model.faceDimension(), id);
}

void writeDescription(QTextStream& stream, const ModelEntity& face, double scale)
{
    stream << face.name() << '\n';
    GbiText::writeVector(stream, face.centroid() * scale);
    stream << ' ';
    GbiText::writeVector(stream, face.normal());
    stream << '\n';
}

void writeSurface(QTextStream& stream, const Model& model, const ModelEntity& face, double scale)
{
    const QList<int> nodes = nodeIds(face);
    const ModelEntity* region = face.adjacencyAt(model.faceDimension() + 1, 0);
    stream << face.id() << ' ' << region->id() << ' ' << face.childCount() << ' '
           << static_cast<int>(nodes.size()) << ' ';
    writeDescription(stream, describedFace(model, face), scale);
    GbiText::writeIds(stream, nodes, NodesPerLine, GbiText::newLine);
}

} // namespace

void GbiWriter::writePartSurfaces(QTextStream& stream, double scale) const
{
    const int faceDimension = model_->faceDimension();
    {
        const GbiText::RealPrecision precision(stream, GbiText::CoordinatePrecision);
        for (auto walk = model_->iterator(faceDimension + 1); walk.hasNext();) {
            walk.next();
            writePart(stream, *walk.value(), faceDimension, scale);
        }
    }
    stream << GbiText::EndOfSection;
}

void GbiWriter::writeSurfaceConnectivity(QTextStream& stream, double scale) const
{
    const int faceDimension = model_->faceDimension();
    {
        const GbiText::RealPrecision precision(stream, GbiText::CoordinatePrecision);
        for (auto walk = model_->iterator(faceDimension); walk.hasNext();) {
            walk.next();
            const ModelEntity* face = walk.value();
            if (face->adjacencyCount(faceDimension + 1) > 0) {
                writeSurface(stream, *model_, *face, scale);
                writeConnectivity(stream, *mesh_, *face);
            }
        }
    }
    stream << GbiText::EndOfSection;
}

} // namespace Ovra::Geo
