#include "Assertion.h"
#include "GbiQueries.h"
#include "GbiText.h"
#include "GbiWriter.h"
#include "IdOrder.h"
#include "MaterialKind.h"
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

constexpr char SourcePath[] = "Projects/GeometryDatabase/GbiWriter";

using NodePairs = QList<std::pair<int, int>>;

bool isReplica(const ModelEntity& region)
{
    return region.attributes().contains(AttributeType::MotionType) &&
           region.attributes().contains(AttributeType::OriginalMotionRegion);
}

// The n-th child of the one region goes with the n-th of the other; the walks' order decides.
void mapElements(const ModelEntity& replica, const ModelEntity& original, QMap<int, int>& elements)
{
    auto copies = replica.childIterator();
    auto originals = original.childIterator();
    while (copies.hasNext() && originals.hasNext()) {
        copies.next();
        originals.next();
        elements[originals.value()->id()] = copies.value()->id();
    }
}

void mapNodes(const ModelEntity& replica, QMap<int, int>& nodes)
{
    for (MeshEntity* vertex : inIdOrder(Utility::getMeshVerticesOnModelEntity(&replica))) {
        const int original =
            GbiQueries::intAttribute(vertex->attributes(), AttributeType::OriginalMotionVertex);
        nodes[original] = vertex->id();
    }
}

void writeMaterials(QTextStream& stream, const QList<int>& materials)
{
    GbiText::writeCount(stream, materials.size(), Qt::endl);
    for (const int material : materials) {
        stream << material << Qt::endl;
    }
}

bool isRotating(const ModelEntity& region)
{
    return materialKind(&region) == QLatin1String("rotating_device") &&
           !GbiQueries::boolAttribute(region.attributes(), AttributeType::IsSuppressed);
}

// The tables of one rotating region.
struct RotatingRegion
{
    NodePairs nodes;
    QList<ElementFaceData> rotor;
    QList<ElementFaceData> stator;
};

void appendNodePairs(const ModelEntity& rotorFace, NodePairs& pairs)
{
    for (MeshEntity* vertex : Utility::getMeshVerticesOnModelEntity(&rotorFace)) {
        const int statorVertexId =
            GbiQueries::intAttribute(vertex->attributes(), AttributeType::StatorVertex);
        OVRA_GEO_ASSERT(statorVertexId != 0, "statorVertexId != InvalidId", SourcePath);
        pairs.append({vertex->id(), statorVertexId});
    }
}

void appendOneSidedFaces(const ModelEntity& face, QList<ElementFaceData>& faces)
{
    for (auto walk = face.childIterator(); walk.hasNext();) {
        walk.next();
        MeshEntity* meshFace = walk.value();
        OVRA_GEO_ASSERT(meshFace->adjacencyCount(meshFace->dimension() + 1) == 1,
                        "meshFace->adjacencyCount( meshFace->dimension() + 1 ) == 1", SourcePath);
        GbiQueries::appendElementFaces(*meshFace, faces);
    }
}

void collectSides(const Model& model, const ModelEntity& region, RotatingRegion& tables)
{
    for (auto faces = region.adjacencyIterator(region.dimension() - 1); faces.hasNext();) {
        const ModelEntity* rotorFace = faces.next();
        const int statorId =
            GbiQueries::intAttribute(rotorFace->attributes(), AttributeType::StatorFace);
        if (statorId != 0) {
            appendNodePairs(*rotorFace, tables.nodes);
            appendOneSidedFaces(*rotorFace, tables.rotor);
            appendOneSidedFaces(*model.entity(model.faceDimension(), statorId), tables.stator);
        }
    }
}

void sortTables(RotatingRegion& tables)
{
    NodePairs& nodes = tables.nodes;
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    std::sort(tables.rotor.begin(), tables.rotor.end());
    std::sort(tables.stator.begin(), tables.stator.end());
}

void writeCountedPairs(QTextStream& stream, const NodePairs& pairs)
{
    GbiText::writeCount(stream, pairs.size(), Qt::endl);
    for (const auto& [rotor, stator] : pairs) {
        stream << rotor << ' ' << stator << Qt::endl;
    }
}

void writeIndexLine(QTextStream& stream, qsizetype index)
{
    stream << "--- " << static_cast<int>(index) << " ---" << Qt::endl;
}

void writeLabelledPairs(QTextStream& stream, const char* label, const QList<NodePairs>& regions)
{
    stream << label << Qt::endl;
    for (qsizetype i = 0; i < regions.size(); ++i) {
        writeIndexLine(stream, i);
        writeCountedPairs(stream, regions.at(i));
    }
}

void writeLabelledFaces(QTextStream& stream, const char* label,
                        const QList<QList<ElementFaceData>>& regions)
{
    stream << label << Qt::endl;
    for (qsizetype i = 0; i < regions.size(); ++i) {
        writeIndexLine(stream, i);
        GbiText::writeCountedFaces(stream, regions.at(i), Qt::endl);
    }
}

} // namespace

void GbiWriter::writeMovingRegionData(QTextStream& stream) const
{
    requireMovingRegionData();
    writeMaterials(stream, replicaMaterials_);
    if (!replicaMaterials_.isEmpty()) {
        GbiText::writeCountedMap(stream, replicaElements_, Qt::endl);
        GbiText::writeCountedMap(stream, replicaNodes_, Qt::endl);
    }
}

void GbiWriter::writeGmMovingRegionData(QTextStream& stream) const
{
    requireMovingRegionData();
    stream << "--- nReplicate ---" << Qt::endl;
    writeMaterials(stream, replicaMaterials_);
    stream << "--- RepElems ---" << Qt::endl;
    GbiText::writeCountedMap(stream, replicaElements_, Qt::endl);
    stream << "--- RepNodes ---" << Qt::endl;
    GbiText::writeCountedMap(stream, replicaNodes_, Qt::endl);
}

void GbiWriter::writeRotatingRegionData(QTextStream& stream) const
{
    requireRotatingRegionData();
    stream << static_cast<int>(rotatingSystems_.size()) << ' ' << faceCount(rotorFaces_) << ' '
           << faceCount(statorFaces_) << Qt::endl;
    for (qsizetype i = 0; i < rotatingSystems_.size(); ++i) {
        const int id = rotatingSystems_.at(i);
        const ModelEntity* region = model_->entity(model_->faceDimension() + 1, id);
        stream << id << ' '
               << GbiQueries::intAttribute(region->attributes(), AttributeType::MaterialId)
               << Qt::endl;
        writeCountedPairs(stream, rotatingNodes_.at(i));
        GbiText::writeCountedFaces(stream, rotorFaces_.at(i), Qt::endl);
        GbiText::writeCountedFaces(stream, statorFaces_.at(i), Qt::endl);
    }
}

void GbiWriter::writeGmRotatingRegionData(QTextStream& stream) const
{
    requireRotatingRegionData();
    stream << "--- nRotSystems ---" << Qt::endl;
    GbiText::writeCount(stream, rotatingSystems_.size(), Qt::endl);
    writeLabelledPairs(stream, "--- RotatingNodeList ---", rotatingNodes_);
    writeLabelledFaces(stream, "--- RotorFaceList ---", rotorFaces_);
    writeLabelledFaces(stream, "--- StatorFaceList ---", statorFaces_);
}

void GbiWriter::requireMovingRegionData() const
{
    if (replicaMaterials_.isEmpty()) {
        getMovingRegionData();
    }
}

void GbiWriter::getMovingRegionData() const
{
    replicaMaterials_.clear();
    replicaElements_.clear();
    replicaNodes_.clear();
    for (auto walk = model_->iterator(model_->faceDimension() + 1); walk.hasNext();) {
        walk.next();
        const ModelEntity& replica = *walk.value();
        if (isReplica(replica)) {
            replicaMaterials_.append(GbiQueries::solverMaterial(*model_, replica));
            const int originalId =
                GbiQueries::intAttribute(replica.attributes(), AttributeType::OriginalMotionRegion);
            mapElements(replica, *model_->entity(replica.dimension(), originalId),
                        replicaElements_);
            mapNodes(replica, replicaNodes_);
        }
    }
}

void GbiWriter::requireRotatingRegionData() const
{
    if (rotatingSystems_.isEmpty()) {
        getRotatingRegionData();
    }
}

void GbiWriter::getRotatingRegionData() const
{
    rotatingSystems_.clear();
    rotorFaces_.clear();
    statorFaces_.clear();
    rotatingNodes_.clear();
    for (auto walk = model_->iterator(model_->faceDimension() + 1); walk.hasNext();) {
        walk.next();
        if (isRotating(*walk.value())) {
            RotatingRegion tables;
            collectSides(*model_, *walk.value(), tables);
            sortTables(tables);
            rotatingSystems_.append(walk.value()->id());
            rotatingNodes_.append(tables.nodes);
            rotorFaces_.append(tables.rotor);
            statorFaces_.append(tables.stator);
        }
    }
}

} // namespace Ovra::Geo
