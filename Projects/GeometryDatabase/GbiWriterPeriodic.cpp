#include "GbiQueries.h"
#include "GbiText.h"
#include "GbiWriter.h"
#include "Matrix.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <QVariant>

#include <algorithm>

namespace Ovra::Geo
{

namespace
{

const int NodesPerLine = 20;
const int SideA = 1;

int nodeIdOf(int value)
{
    return value;
}

int nodeIdOf(const LinkData& value)
{
    return value.nodeId_;
}

// Keeps the first of each run. As the walk starts from the value 0, a first run of zeros goes as a
// whole; ids of 0 do not occur.
template <typename T>
void keepFirstOfRuns(QList<T>& values)
{
    int previous = 0;
    auto kept = values.begin();
    for (auto value = values.begin(); value != values.end(); ++value) {
        const int key = nodeIdOf(*value);
        if (key != previous) {
            *kept++ = *value;
        }
        previous = key;
    }
    values.erase(kept, values.end());
}

template <typename T>
void sort(QList<T>& values)
{
    std::sort(values.begin(), values.end());
}

// Unsigned, so that the bit number wraps for any pair and side.
int statusBit(int pair, int side)
{
    const unsigned number = 2U * static_cast<unsigned>(pair) - 3U + static_cast<unsigned>(side);
    return static_cast<int>(1U << (number % 32U));
}

// The tables of one side of the periodic boundary.
struct Side
{
    QList<ElementFaceData>& faces;
    QList<int>& nodes;
    QList<LinkData>& links;
};

void appendNodes(const Mesh& mesh, const ModelEntity& face, int bit, QMap<int, int>& status,
                 Side& side)
{
    static const GbiQueries::LinkAttributes names{AttributeType::PeriodicEntityType,
                                                  AttributeType::PeriodicEntityId,
                                                  AttributeType::PeriodicWeights};
    for (MeshEntity* vertex : Utility::getMeshVerticesOnModelEntity(&face)) {
        status[vertex->id()] |= bit;
        side.nodes.append(vertex->id());
        side.links.append(GbiQueries::stencilOf(mesh, *vertex, names));
    }
}

void appendFaces(const ModelEntity& face, QList<ElementFaceData>& faces)
{
    for (auto walk = face.childIterator(); walk.hasNext();) {
        walk.next();
        GbiQueries::appendElementFaces(*walk.value(), faces);
    }
}

void writeStatusStencils(QTextStream& stream, const QList<LinkData>& stencils,
                         const QMap<int, int>& status)
{
    GbiText::writeCount(stream, stencils.size(), GbiText::newLine);
    for (const LinkData& stencil : stencils) {
        stream << stencil.nodeId_ << ' ' << status.value(stencil.nodeId_) << ' ';
        GbiText::writeLinkIds(stream, stencil);
        GbiText::writeLinkWeights(stream, stencil);
        stream << '\n';
    }
}

void writeLabelledNodes(QTextStream& stream, const char* label, const QList<int>& nodes)
{
    stream << label << Qt::endl;
    GbiText::writeCount(stream, nodes.size(), Qt::endl);
    GbiText::writeIds(stream, nodes, NodesPerLine, Qt::endl);
}

void writeLabelledFaces(QTextStream& stream, const char* label, const QList<ElementFaceData>& faces)
{
    stream << label << Qt::endl;
    GbiText::writeCountedFaces(stream, faces, Qt::endl);
}

void writeLabelledStencils(QTextStream& stream, const char* label, const QList<LinkData>& stencils)
{
    stream << label << Qt::endl;
    GbiText::writeCount(stream, stencils.size(), Qt::endl);
    GbiText::writeStencils(stream, stencils, Qt::endl);
}

void writeNeighbourLimits(QTextStream& stream, bool is3d)
{
    const int limit = is3d ? 4 : 2;
    stream << "--- nMaxANabors ---" << Qt::endl << limit << Qt::endl;
    stream << "--- nMaxBNabors ---" << Qt::endl << limit << Qt::endl;
}

Vector vectorAttribute(const AttributeMap& attributes, const AttributeType& type)
{
    return attributes.value(type, QVariant()).value<Vector>();
}

void writeNine(QTextStream& stream, const Vector& first, const Vector& second, const Vector& third)
{
    GbiText::writeVector(stream, first);
    stream << ' ';
    GbiText::writeVector(stream, second);
    stream << ' ';
    GbiText::writeVector(stream, third);
    stream << Qt::endl;
}

Vector rowOf(const Matrix& matrix, int row)
{
    return Vector(matrix(row, 0), matrix(row, 1), matrix(row, 2));
}

} // namespace

void GbiWriter::writePeriodicFaceList(QTextStream& stream) const
{
    GbiText::writeCountedFaces(stream, periodicAFaces_, GbiText::newLine);
    GbiText::writeCountedFaces(stream, periodicBFaces_, GbiText::newLine);
}

void GbiWriter::writePeriodicNodalData(QTextStream& stream) const
{
    requirePeriodicData();
    const GbiText::RealPrecision precision(stream, GbiText::WeightPrecision);
    writeStatusStencils(stream, periodicALinks_, nodePeriodicStatus_);
    writeStatusStencils(stream, periodicBLinks_, nodePeriodicStatus_);
}

void GbiWriter::writePeriodicTransform(QTextStream& stream) const
{
    const AttributeMap& attributes = model_->attributes();
    const double factor =
        attributes.value(AttributeType::VisualScaleFactor, QVariant(1.0)).toDouble();
    GbiText::writeVector(stream,
                         vectorAttribute(attributes, AttributeType::PeriodicTranslation) * factor);
    stream << Qt::endl;
    GbiText::writeVector(stream, vectorAttribute(attributes, AttributeType::PeriodicOrigin));
    stream << Qt::endl;
    writeNine(stream, vectorAttribute(attributes, AttributeType::PeriodicXAxis),
              vectorAttribute(attributes, AttributeType::PeriodicYAxis),
              vectorAttribute(attributes, AttributeType::PeriodicZAxis));
    const auto matrix = attributes.value(AttributeType::PeriodicMatrix, QVariant()).value<Matrix>();
    writeNine(stream, rowOf(matrix, 0), rowOf(matrix, 1), rowOf(matrix, 2));
}

void GbiWriter::writeGmPeriodicData(QTextStream& stream) const
{
    requirePeriodicData();
    stream << "--- nPeriodic ---" << Qt::endl << periodicFaceCount_ << Qt::endl;
    stream << "--- node_per_status ---" << Qt::endl;
    GbiText::writeCountedMap(stream, nodePeriodicStatus_, Qt::endl);
    writeLabelledFaces(stream, "--- AFaceList ---", periodicAFaces_);
    writeLabelledFaces(stream, "--- BFaceList ---", periodicBFaces_);
    writeLabelledNodes(stream, "--- ANodeList ---", periodicANodes_);
    writeLabelledNodes(stream, "--- BNodeList ---", periodicBNodes_);
    writeNeighbourLimits(stream, model_->is3d());
    writeLabelledStencils(stream, "--- ALinksCon and ALinksWht ---", periodicALinks_);
    writeLabelledStencils(stream, "--- BLinksCon and BLinksWht ---", periodicBLinks_);
    stream << "--- Transform ---" << Qt::endl << periodicFaceCount_ / 2 << Qt::endl;
    writePeriodicTransform(stream);
}

void GbiWriter::requirePeriodicData() const
{
    if (periodicFaceCount_ == 0) {
        getPeriodicData();
    }
}

void GbiWriter::getPeriodicData() const
{
    clearPeriodicData();
    Side sideA{periodicAFaces_, periodicANodes_, periodicALinks_};
    Side sideB{periodicBFaces_, periodicBNodes_, periodicBLinks_};
    for (auto walk = model_->iterator(model_->faceDimension()); walk.hasNext();) {
        walk.next();
        const ModelEntity& face = *walk.value();
        const int pair = GbiQueries::intAttribute(face.attributes(), AttributeType::PeriodicPairId);
        if (pair != 0) {
            const int number =
                GbiQueries::intAttribute(face.attributes(), AttributeType::PeriodicSideId);
            Side& side = number == SideA ? sideA : sideB;
            ++periodicFaceCount_;
            appendNodes(*mesh_, face, statusBit(pair, number), nodePeriodicStatus_, side);
            appendFaces(face, side.faces);
        }
    }
    sortPeriodicData();
}

// The links stay: sorting and the removal of repeats take care of what an earlier gathering left.
void GbiWriter::clearPeriodicData() const
{
    periodicFaceCount_ = 0;
    nodePeriodicStatus_.clear();
    periodicAFaces_.clear();
    periodicBFaces_.clear();
    periodicANodes_.clear();
    periodicBNodes_.clear();
}

void GbiWriter::sortPeriodicData() const
{
    sort(periodicAFaces_);
    sort(periodicBFaces_);
    sort(periodicANodes_);
    sort(periodicBNodes_);
    sort(periodicALinks_);
    sort(periodicBLinks_);
    removeDuplicates(periodicANodes_);
    removeDuplicates(periodicBNodes_);
    removeDuplicates(periodicALinks_);
    removeDuplicates(periodicBLinks_);
}

void GbiWriter::removeDuplicates(QList<int>& values) const
{
    keepFirstOfRuns(values);
}

void GbiWriter::removeDuplicates(QList<LinkData>& values) const
{
    keepFirstOfRuns(values);
}

} // namespace Ovra::Geo
