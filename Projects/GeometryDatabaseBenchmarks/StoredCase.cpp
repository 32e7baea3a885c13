#include "StoredCase.h"

#include "Mesh.h"
#include "Model.h"

#include <QFile>

using namespace Ovra::Geo;

namespace Benchmarks::StoredCase
{

namespace
{

bool writeFile(const QString& path, const std::function<void(QDataStream&)>& write)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    QDataStream stream(&file);
    write(stream);
    return stream.status() == QDataStream::Ok && file.flush();
}

bool readFile(const QString& path, const std::function<void(QDataStream&)>& read)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    QDataStream stream(&file);
    read(stream);
    return stream.status() == QDataStream::Ok;
}

} // namespace

QString path(const QString& base, const char* suffix)
{
    return base + QString::fromLatin1(suffix);
}

bool exists(const QString& base, const char* suffix)
{
    return QFile::exists(path(base, suffix));
}

std::unique_ptr<Database> readModel(const QString& base)
{
    auto database = std::make_unique<Database>();
    readFile(path(base, ".geo_model"),
             [&](QDataStream& stream) { database->model()->read(stream); });
    return database;
}

bool readMesh(const QString& base, const std::function<void(QDataStream&)>& read)
{
    return readFile(path(base, ".geo_mesh"), read);
}

std::unique_ptr<Database> read(const QString& base)
{
    auto database = readModel(base);
    readMesh(base, [&](QDataStream& stream) { database->mesh()->read(stream); });
    return database;
}

bool write(const QString& base, Database& database)
{
    return writeFile(path(base, ".geo_model"),
                     [&](QDataStream& stream) { database.model()->write(stream); }) &&
           writeFile(path(base, ".geo_mesh"),
                     [&](QDataStream& stream) { database.mesh()->write(stream); });
}

} // namespace Benchmarks::StoredCase
