#include "Handles.h"

#include <array>

namespace Ovra::GeoPython
{

std::string entityText(const char* side, int dimension, int id)
{
    static constexpr std::array<const char*, 4> nouns = {"vertex", "edge", "face", "region"};
    return std::string(side) + ' ' + nouns.at(static_cast<std::size_t>(dimension)) + ' ' +
           std::to_string(id);
}

} // namespace Ovra::GeoPython
