#include "DoublingAftercare.h"

#include "AttributeType.h"
#include "Database.h"
#include "IdOrder.h"
#include "IntAttribute.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"
#include "VertexCopies.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QList<MeshEntity*> withCopy(MeshEntity* vertex, const VertexCopies& copies)
{
    MeshEntity* const copy = copies.copyOf(vertex);
    return copy ? QList<MeshEntity*>{vertex, copy} : QList<MeshEntity*>{vertex};
}

void setVertex(MeshEntity& edge, MeshEntity* from, MeshEntity* to)
{
    if (from != to) {
        Utility::replaceAdjacencies(&edge, from, to);
    }
}

bool touches(const MeshEntity& vertex, const ModelEntity* region)
{
    for (auto elements = vertex.adjacencyIterator(region->dimension()); elements.hasNext();) {
        if (elements.next()->parent() == region) {
            return true;
        }
    }
    return false;
}

} // namespace

DoublingAftercare::DoublingAftercare(Database& database, const VertexCopies& copies)
    : database_(database)
    , copies_(copies)
    , faceDimension_(database.model()->faceDimension())
    , shellFaces_(shellFaces())
{
}

void DoublingAftercare::run() const
{
    if (copies_.isEmpty()) {
        return;
    }
    if (faceDimension_ == 2) { // the mesh edges of a planar case are its mesh faces
        carryEdges();
    }
    if (!shellFaces_.isEmpty()) {
        carryShellLinks();
    }
    carryReplicaLinks();
}

void DoublingAftercare::carryEdges() const
{
    for (MeshEntity* edge : inIdOrder(database_.mesh()->iterator(1))) {
        if (edge->adjacencyCount(2) == 0) {
            carryEdge(*edge);
        }
    }
}

// An edge between two vertices of which one or both moved: where is a face that has it?
void DoublingAftercare::carryEdge(MeshEntity& edge) const
{
    MeshEntity* const first = edge.adjacencyAt(0, 0);
    MeshEntity* const second = edge.adjacencyAt(0, 1);
    for (MeshEntity* newFirst : withCopy(first, copies_)) {
        for (MeshEntity* newSecond : withCopy(second, copies_)) {
            if (MeshEntity::getUpwardAdjacencies({newFirst, newSecond}, 2).isEmpty()) {
                continue;
            }
            setVertex(edge, first, newFirst);
            setVertex(edge, second, newSecond);
            edge.clearUpwardAdjacencies();
            edge.setUpwardAdjacencies();
            return;
        }
    }
}

QSet<const ModelEntity*> DoublingAftercare::shellFaces() const
{
    QSet<const ModelEntity*> faces;
    for (const ModelEntity* face : inIdOrder(database_.model()->iterator(faceDimension_))) {
        const int twinId = intOf(face->attributes(), AttributeType::NewShellFace);
        if (twinId == 0) {
            continue;
        }
        faces.insert(face);
        faces.insert(database_.model()->entity(faceDimension_, twinId));
    }
    return faces;
}

bool DoublingAftercare::liesOnShell(const MeshEntity& vertex) const
{
    for (auto meshFaces = vertex.adjacencyIterator(faceDimension_); meshFaces.hasNext();) {
        if (shellFaces_.contains(meshFaces.next()->parent())) {
            return true;
        }
    }
    return false;
}

void DoublingAftercare::carryShellLinks() const
{
    for (MeshEntity* vertex : copies_.originals()) {
        if (vertex->attributes().contains(AttributeType::ShellVertex)) {
            moveShellLink(*vertex, *copies_.copyOf(vertex));
        }
    }
    for (MeshEntity* vertex : inIdOrder(database_.mesh()->iterator(0))) {
        if (vertex->attributes().contains(AttributeType::ShellVertex)) {
            vertex->attributes().insert(AttributeType::ShellVertex, shellPartner(*vertex, false));
        }
    }
}

void DoublingAftercare::moveShellLink(MeshEntity& vertex, MeshEntity& copy) const
{
    if (!liesOnShell(copy)) {
        return;
    }
    copy.attributes().insert(AttributeType::ShellVertex, shellPartner(vertex, true));
    if (!liesOnShell(vertex)) {
        vertex.attributes().remove(AttributeType::ShellVertex);
    }
}

/// Of the vertex that the link names and its copy, the one that the shell's surface uses now.
int DoublingAftercare::shellPartner(MeshEntity& vertex, bool copyFirst) const
{
    const int id = intOf(vertex.attributes(), AttributeType::ShellVertex);
    MeshEntity* const partner = database_.mesh()->entity(0, id);
    MeshEntity* const copy = partner ? copies_.copyOf(partner) : nullptr;
    if (!copy || !liesOnShell(*copy)) {
        return id;
    }
    return copyFirst || !liesOnShell(*partner) ? copy->id() : id;
}

// Only the side that stays in place is doubled: elements of what has been replicated may move to
// the copies, and their replica has to follow.
void DoublingAftercare::carryReplicaLinks() const
{
    for (MeshEntity* vertex : inIdOrder(database_.mesh()->iterator(0))) {
        if (vertex->attributes().contains(AttributeType::OriginalMotionVertex)) {
            moveReplicaLink(*vertex);
        }
    }
}

void DoublingAftercare::moveReplicaLink(MeshEntity& replica) const
{
    MeshEntity* const original = database_.mesh()->entity(
        0, intOf(replica.attributes(), AttributeType::OriginalMotionVertex));
    MeshEntity* const copy = original ? copies_.copyOf(original) : nullptr;
    if (!copy || replica.adjacencyCount(faceDimension_ + 1) == 0) {
        return;
    }
    const ModelEntity* const region = replica.adjacencyAt(faceDimension_ + 1, 0)->parent();
    const int originId = intOf(region->attributes(), AttributeType::OriginalMotionRegion);
    const ModelEntity* const origin = database_.model()->entity(faceDimension_ + 1, originId);
    if (!origin || touches(*original, origin) || !touches(*copy, origin)) {
        return;
    }
    replica.attributes().insert(AttributeType::OriginalMotionVertex, copy->id());
    if (intOf(original->attributes(), AttributeType::NewMotionVertex) == replica.id()) {
        original->attributes().remove(AttributeType::NewMotionVertex);
    }
    copy->attributes().insert(AttributeType::NewMotionVertex, replica.id());
}

} // namespace Ovra::GeoTool
