#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshSerializer.h"
#include "StreamHeader.h"
#include "StreamReading.h"

#include <QDataStream>
#include <QTextStream>

#include <memory>

namespace Ovra::Geo
{

namespace
{

std::unique_ptr<MeshSerializer> makeSerializer(int format, Model* model, Mesh* mesh)
{
    const auto number = static_cast<MeshSerializer::Format>(format);
    return std::unique_ptr<MeshSerializer>(MeshSerializer::create(number, model, mesh));
}

void clearAtVertices(const MeshEntity* element)
{
    auto vertices = element->adjacencyIterator(0);
    while (vertices.hasNext()) {
        vertices.next()->clearUpwardAdjacencies();
    }
}

// Elements may stand on vertices that are no longer in the mesh, as the stream has taken their ids.
void clearAtReplacedVertices(const Mesh& mesh)
{
    for (int dimension = 1; dimension <= 3; ++dimension) {
        auto elements = mesh.iterator(dimension);
        while (elements.hasNext()) {
            elements.next();
            clearAtVertices(elements.value());
        }
    }
}

} // namespace

void Mesh::read(QDataStream& stream)
{
    StreamHeader header;
    if (!StreamHeader::read(header, stream)) {
        return;
    }
    version_ = header.version;
    const auto serializer = makeSerializer(header.format, model_, this);
    if (!serializer) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    serializer->read(stream);
    if (isOk(stream) && setUpwardAdjacencies(Limit::ByVertexLists)) {
        return;
    }
    stream.setStatus(QDataStream::ReadCorruptData); // which leaves a failure before as it is
    // The host may go on with the mesh that it had, whose lists must not hold everything twice.
    clearUpwardAdjacencies();
    clearAtReplacedVertices(*this);
    setUpwardAdjacencies(Limit::ByVertexLists);
}

void Mesh::read(const wchar_t* fileName)
{
    readFile(fileName, [this](QDataStream& stream) { read(stream); });
}

void Mesh::write(QTextStream& stream)
{
    makeSerializer(MeshSerializer::Format2013, model_, this)->write(stream);
}

void Mesh::write(QDataStream& stream)
{
    stream.setVersion(StreamHeader::StreamVersion);
    makeSerializer(MeshSerializer::Format2014a, model_, this)->write(stream);
}

} // namespace Ovra::Geo
