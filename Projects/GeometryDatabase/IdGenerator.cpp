#include "IdGenerator.h"

namespace Ovra::Geo
{

int IdGenerator::getId()
{
    return freeIds_.isEmpty() ? ++maxId_ : freeIds_.takeFirst();
}

void IdGenerator::returnId(int id)
{
    freeIds_.append(id);
}

int IdGenerator::count() const
{
    return maxId_ - static_cast<int>(freeIds_.size());
}

void IdGenerator::reset()
{
    maxId_ = 0;
    freeIds_.clear();
}

} // namespace Ovra::Geo
