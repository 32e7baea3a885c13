#include "LastingCase.h"

#include "CaseFiles.h"
#include "LargePages.h"

#include <QFileInfo>

#include <memory>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

/// What commands have been seen to need at most for each byte of a mesh file.
constexpr qint64 heapOfByte = 12;

CaseDatabase& lastingDatabase()
{
    static auto& all = *new std::vector<std::unique_ptr<CaseDatabase>>;
    return *all.emplace_back(std::make_unique<CaseDatabase>());
}

} // namespace

CaseDatabase& loadLastingly(CaseFiles& files, Progress& progress)
{
    useLargePages(heapOfByte * QFileInfo(files.meshPath()).size());
    CaseDatabase& database = lastingDatabase();
    files.load(database, progress);
    return database;
}

} // namespace Ovra::GeoTool
