#include "LastingCase.h"

#include "FreedMemory.h"

#include <memory>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

CaseDatabase& lastingDatabase()
{
    static auto& all = *new std::vector<std::unique_ptr<CaseDatabase>>;
    return *all.emplace_back(std::make_unique<CaseDatabase>());
}

} // namespace

CaseDatabase& loadLastingly(CaseFiles& files, Progress& progress, CaseFiles::UpwardLists lists)
{
    keepFreedMemory();
    CaseDatabase& database = lastingDatabase();
    files.load(database, progress, lists);
    return database;
}

} // namespace Ovra::GeoTool
