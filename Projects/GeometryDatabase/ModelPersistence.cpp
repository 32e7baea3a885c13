#include "Model.h"
#include "ModelSerializer.h"
#include "StreamHeader.h"
#include "StreamReading.h"

#include <QDataStream>
#include <QFile>
#include <QTextStream>

#include <memory>

namespace Ovra::Geo
{

namespace
{

std::unique_ptr<ModelSerializer> makeSerializer(int format, Model* model)
{
    const auto number = static_cast<ModelSerializer::Format>(format);
    return std::unique_ptr<ModelSerializer>(ModelSerializer::create(number, model));
}

} // namespace

void Model::read(QDataStream& stream)
{
    StreamHeader header;
    if (!StreamHeader::read(header, stream)) {
        return;
    }
    version_ = header.version;
    const auto serializer = makeSerializer(header.format, this);
    if (serializer) {
        serializer->read(stream);
    } else {
        stream.setStatus(QDataStream::ReadCorruptData);
    }
}

void Model::read(const wchar_t* path)
{
    readFile(path, [this](QDataStream& stream) { read(stream); });
}

void Model::write(QDataStream& stream)
{
    stream.setVersion(StreamHeader::StreamVersion);
    makeSerializer(ModelSerializer::Format2013, this)->write(stream);
}

void Model::write(QTextStream& stream)
{
    makeSerializer(ModelSerializer::Format2013, this)->write(stream);
}

void Model::write(const char* directory, const char* name, bool text)
{
    const QString path = QString::fromUtf8(directory) + "/" + QString::fromUtf8(name);
    if (text) {
        QFile file(path + ".geo_model.txt");
        if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
            QTextStream stream(&file);
            write(stream);
        }
    } else {
        QFile file(path + ".geo_model");
        if (file.open(QIODevice::WriteOnly)) {
            QDataStream stream(&file);
            write(stream);
        }
    }
}

} // namespace Ovra::Geo
