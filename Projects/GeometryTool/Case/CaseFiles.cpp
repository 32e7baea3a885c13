#include "CaseFiles.h"

#include "Counted.h"
#include "InputFile.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "ToolError.h"

#include <QDataStream>
#include <QFileInfo>

#include <array>
#include <functional>
#include <memory>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

const QString modelSuffix = QStringLiteral(".geo_model");
const QString meshSuffix = QStringLiteral(".geo_mesh");

constexpr int oldestHeaderVersion = 10;
constexpr int latestHeaderVersion = 14;
constexpr int headerSize = 16;
constexpr int oldHeaderSize = 12; // without the format
constexpr int streamVersion = 12;

QString withoutSuffix(const QString& name)
{
    for (const QString& suffix : {modelSuffix, meshSuffix}) {
        if (name.endsWith(suffix)) {
            return name.chopped(suffix.size());
        }
    }
    return name;
}

QString fileName(const QString& path)
{
    return QFileInfo(path).fileName();
}

ToolError damage(const QString& path, const QString& what)
{
    return ToolError(ExitCode::InputDamaged, QStringLiteral("%1 %2").arg(path, what));
}

/// "after 4 model vertices and 2 model edges", from what the container holds when its reader stops.
template <typename Container>
QString whereabouts(const Container& container, const QString& kind)
{
    static const std::array<const char*, 4> names = {"vertex", "edge", "face", "region"};
    QStringList parts;
    for (int dimension = 0; dimension < 4; ++dimension) {
        const int count = container.count(dimension);
        if (count > 0) {
            parts += counted(count, kind + QLatin1Char(' ') +
                                        QLatin1String(names[static_cast<std::size_t>(dimension)]));
        }
    }
    if (parts.isEmpty()) {
        return QStringLiteral("before the first %1 vertex was complete").arg(kind);
    }
    return QStringLiteral("after ") + parts.join(QStringLiteral(", "));
}

void requireKnownFormat(const FileFacts& facts, const QString& kind, int formatCount)
{
    if (facts.format >= 1 && facts.format <= formatCount) {
        return;
    }
    throw damage(
        facts.path,
        QStringLiteral("is no %1 file: at byte 0 stands %2, where a format number from 1 to "
                       "%3 or a version from %4 to %5 is expected")
            .arg(kind)
            .arg(facts.format)
            .arg(formatCount)
            .arg(oldestHeaderVersion)
            .arg(latestHeaderVersion));
}

FileFacts readHeader(InputFile& file, const QString& kind, int formatCount)
{
    FileFacts facts;
    facts.path = file.path();
    facts.size = file.size();
    const QByteArray header = file.peek(headerSize);
    QDataStream stream(header);
    qint32 first = 0;
    qint32 second = 0;
    qint32 third = 0;
    qint32 fourth = 0;
    stream >> first >> second >> third >> fourth;
    facts.oldHeader = first >= oldestHeaderVersion && first <= latestHeaderVersion;
    facts.headerSize = facts.oldHeader ? oldHeaderSize : headerSize;
    facts.format = facts.oldHeader ? 1 : first;
    facts.version =
        facts.oldHeader ? Version(first, second, third) : Version(second, third, fourth);
    if (stream.status() != QDataStream::Ok) {
        throw damage(
            facts.path,
            QStringLiteral("is truncated: it ends at byte %1, inside the header").arg(facts.size));
    }
    requireKnownFormat(facts, kind, formatCount);
    return facts;
}

void requireSound(const QDataStream& stream, const FileFacts& facts, const QString& whereabouts)
{
    if (stream.status() == QDataStream::ReadPastEnd) {
        throw damage(facts.path, QStringLiteral("is truncated: it ends at byte %1, %2")
                                     .arg(facts.size)
                                     .arg(whereabouts));
    }
    if (stream.status() != QDataStream::Ok) {
        throw damage(facts.path, QStringLiteral("is damaged at or just before byte %1 of %2, %3")
                                     .arg(stream.device()->pos())
                                     .arg(facts.size)
                                     .arg(whereabouts));
    }
}

template <typename Container>
bool isEmpty(const Container& container)
{
    int count = 0;
    for (int dimension = 0; dimension < 4; ++dimension) {
        count += container.count(dimension);
    }
    return count == 0;
}

/// The first bytes of many files of another kind pass for a header with nothing behind it.
template <typename Container>
void settleTrailingBytes(const Container& container, const FileFacts& facts, const QString& kind,
                         Progress& progress)
{
    if (facts.trailingBytes == 0) {
        return;
    }
    if (isEmpty(container)) {
        throw damage(facts.path,
                     QStringLiteral("holds no %1 entities but %2; is it a %1 file?")
                         .arg(kind, counted(facts.trailingBytes, QStringLiteral("more byte"))));
    }
    progress.warning(QStringLiteral("%1 goes on for %2 behind the end of the %3, at byte %4")
                         .arg(facts.path, counted(facts.trailingBytes, QStringLiteral("byte")),
                              kind, QString::number(facts.size - facts.trailingBytes)));
}

/// A process that is killed between the two renames of a case leaves a new model beside an old mesh.
void requireOneCase(const CaseFiles& files)
{
    const QString mesh = OutputFiles::unfinished(files.modelPath(), files.meshPath());
    if (!mesh.isEmpty()) {
        throw damage(files.meshPath(),
                     QStringLiteral("is older than %1: the run that wrote both was killed in "
                                    "between; rename %2 to %3, or write the case again")
                         .arg(files.modelPath(), mesh, files.meshPath()));
    }
}

/// What Mesh::read() does behind the header, but for the upward lists, which it makes in the end.
void readWithoutUpwardLists(Database& database, QDataStream& stream, const FileFacts& facts)
{
    stream.skipRawData(facts.headerSize);
    stream.setVersion(streamVersion);
    const auto format = static_cast<MeshSerializer::Format>(facts.format);
    const std::unique_ptr<MeshSerializer> serializer(
        MeshSerializer::create(format, database.model(), database.mesh()));
    serializer->read(stream);
}

/// Reads a Model or a Mesh behind the checks that both kinds of file share.
template <typename Container, typename Read>
FileFacts readInto(Container& container, InputFile& file, const QString& kind, int formatCount,
                   Progress& progress, Read read)
{
    progress.phase(QStringLiteral("reading ") + fileName(file.path()));
    FileFacts facts = readHeader(file, kind, formatCount);
    QDataStream stream(&file);
    read(stream, facts);
    requireSound(stream, facts, whereabouts(container, kind));
    facts.trailingBytes = facts.size - file.pos();
    settleTrailingBytes(container, facts, kind, progress);
    progress.finish();
    return facts;
}

bool losesParent(const MeshEntity& entity)
{
    return entity.parent() && entity.parent()->dimension() != entity.dimension();
}

void forEachLosing(const Database& database, const std::function<void(MeshEntity&)>& action)
{
    for (int dimension = 1; dimension < 4; ++dimension) {
        auto entities = database.mesh()->iterator(dimension);
        while (entities.hasNext()) {
            entities.next();
            if (losesParent(*entities.value())) {
                action(*entities.value());
            }
        }
    }
}

void dropUnkeptParents(const Database& database)
{
    forEachLosing(database, [](MeshEntity& entity) { entity.parent()->removeChild(&entity); });
}

void settleUnkeptParents(const Database& database, Progress& progress, bool dropParents)
{
    const int count = CaseFiles::unkeptParentCount(database);
    if (count == 0) {
        return;
    }
    const QString text = QStringLiteral("%1 on a model entity of another dimension, "
                                        "which mesh formats 2014 and 2014a cannot hold; ")
                             .arg(counted(count, QStringLiteral("mesh entity stands"),
                                          QStringLiteral("mesh entities stand")));
    if (!dropParents) {
        throw ToolError(ExitCode::Unsuitable, text + QStringLiteral("format 2013 can"));
    }
    progress.warning(text + QStringLiteral("written without a parent"));
    dropUnkeptParents(database);
}

void writeMesh(Database& database, QDataStream& stream, MeshSerializer::Format format)
{
    stream.setVersion(streamVersion);
    const std::unique_ptr<MeshSerializer> serializer(
        MeshSerializer::create(format, database.model(), database.mesh()));
    serializer->write(stream);
}

} // namespace

CaseDatabase::~CaseDatabase()
{
    model()->clearRefinementRegions();
}

CaseFiles::CaseFiles(const QString& name)
    : name_(withoutSuffix(name))
{
}

QString CaseFiles::modelPath() const
{
    return name_ + modelSuffix;
}

QString CaseFiles::meshPath() const
{
    return name_ + meshSuffix;
}

void CaseFiles::load(Database& database, Progress& progress, UpwardLists lists)
{
    requireOneCase(*this);
    InputFile modelFile(modelPath(), progress);
    InputFile meshFile(meshPath(), progress);
    modelFile.openOrThrow(); // both before the first is read, which may take long
    meshFile.openOrThrow();
    modelFacts_ = readInto(
        *database.model(), modelFile, QStringLiteral("model"), 1, progress,
        [&database](QDataStream& stream, const FileFacts&) { database.model()->read(stream); });
    meshFacts_ =
        readInto(*database.mesh(), meshFile, QStringLiteral("mesh"), LatestMeshFormat, progress,
                 [&database, lists](QDataStream& stream, const FileFacts& facts) {
                     if (lists == UpwardLists::Made) {
                         database.mesh()->read(stream);
                     } else {
                         readWithoutUpwardLists(database, stream, facts);
                     }
                 });
}

void CaseFiles::save(Database& database, Progress& progress, MeshSerializer::Format meshFormat,
                     bool dropParents) const
{
    if (meshFormat != MeshSerializer::Format2013) {
        settleUnkeptParents(database, progress, dropParents);
    }
    OutputFiles files;
    QDataStream modelStream(&files.add(modelPath()));
    QDataStream meshStream(&files.add(meshPath()));
    progress.phase(QStringLiteral("writing ") + fileName(modelPath()));
    database.model()->write(modelStream);
    progress.phase(QStringLiteral("writing ") + fileName(meshPath()));
    writeMesh(database, meshStream, meshFormat);
    files.commit();
    progress.finish();
}

int CaseFiles::unkeptParentCount(const Database& database)
{
    int count = 0;
    forEachLosing(database, [&count](MeshEntity&) { ++count; });
    return count;
}

} // namespace Ovra::GeoTool
