#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshSerializer.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "StreamTesting.h"
#include "TestMesh.h"

#include <memory>

/// \file
/// \brief A small mesh and the ways to put it through its stream forms.

namespace StreamTesting
{

using Ovra::Geo::AttributeType;
using Ovra::Geo::MeshSerializer;

/// \brief What the serializer of \p format writes, at version 12.
inline QByteArray written(TestMesh& mesh, MeshSerializer::Format format)
{
    return binary([&](QDataStream& stream) {
        const std::unique_ptr<MeshSerializer> serializer(
            MeshSerializer::create(format, &mesh.model(), &mesh.mesh()));
        serializer->write(stream);
    });
}

/// \brief The text that the serializer of \p format writes.
inline QString printed(TestMesh& mesh, MeshSerializer::Format format)
{
    return text([&](QTextStream& stream) {
        const std::unique_ptr<MeshSerializer> serializer(
            MeshSerializer::create(format, &mesh.model(), &mesh.mesh()));
        serializer->write(stream);
    });
}

/// \brief Mesh::read() from \p bytes.
inline QDataStream::Status readInto(TestMesh& mesh, const QByteArray& bytes)
{
    return readFrom(bytes, [&](QDataStream& stream) { mesh.mesh().read(stream); });
}

/// \brief A model entity of each dimension, 11 to 14, for meshes to be classified on.
inline void addModel(TestMesh& mesh)
{
    mesh.addModelVertex({0, 0, 0}, 11);
    mesh.addModelEdge(12);
    mesh.addModelFace(13);
    mesh.addModelRegion(14);
}

/// \brief Three vertices, an edge and a triangle: version 14.1.2, gaps in the ids, parents of the
///        own and of other dimensions and none, attributes of mesh, vertex and face.
inline void fillTriangle(TestMesh& mesh)
{
    addModel(mesh);
    mesh.mesh().setVersion({14, 1, 2});
    mesh.mesh().attributes().insert(AttributeType::Side, 3);
    auto* a = mesh.addVertex({0, 0, 0}, 1, mesh.model().entity(0, 11));
    auto* b = mesh.addVertex({1, 0, 0}, 2, mesh.model().entity(2, 13));
    auto* c = mesh.addVertex({0, 0.5, 0}, 7);
    b->attributes().insert(AttributeType::InBL, true);
    mesh.addElement(1, {b, a}, mesh.model().entity(1, 12), 4);
    auto* face = mesh.addElement(2, {a, b, c}, nullptr, 5);
    face->attributes().insert(AttributeType::Side, 1);
    face->attributes().insert(AttributeType::MaterialId, 6);
    mesh.mesh().setUpwardAdjacencies();
}

/// \brief fillTriangle() and a tetrahedron with another vertex.
inline void fillTetrahedron(TestMesh& mesh)
{
    fillTriangle(mesh);
    mesh.mesh().clearUpwardAdjacencies();
    auto* top = mesh.addVertex({0, 0, 2}, 8, mesh.model().entity(3, 14));
    const auto vertex = [&](int id) {
        return static_cast<Ovra::Geo::MeshVertex*>(mesh.mesh().entity(0, id));
    };
    auto* region =
        mesh.addElement(3, {vertex(1), vertex(2), vertex(7), top}, mesh.model().entity(3, 14), 3);
    region->attributes().insert(AttributeType::PeriodicWeights, QVariantList{0.5, 0.5});
    mesh.mesh().setUpwardAdjacencies();
}

/// \brief The vocabulary as the dictionary of format 2014a has it, end mark included.
inline QByteArray dictionaryBytes()
{
    QByteArray bytes;
    const QList<QString> tags = AttributeType::tags();
    for (qsizetype i = 0; i < tags.size(); ++i) {
        const QByteArray tag = tags[i].toLatin1();
        bytes.append('\0').append(char(i + 1));
        bytes.append(3, '\0').append(char(tag.size())).append(tag);
    }
    return bytes + hex("FFFF");
}

/// \brief The 16-bit dictionary number of \p type in a stream of our own.
inline QByteArray dictionaryNumber(const AttributeType& type)
{
    const auto number = static_cast<char>(AttributeType::tags().indexOf(type.toString()) + 1);
    return QByteArray(1, '\0').append(number);
}

} // namespace StreamTesting
