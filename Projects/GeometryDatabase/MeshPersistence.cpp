#include "Mesh.h"
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
    if (stream.status() != QDataStream::Ok) {
        // The host may go on with the mesh that it had, whose lists must not hold everything twice.
        clearUpwardAdjacencies();
    }
    setUpwardAdjacencies();
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
