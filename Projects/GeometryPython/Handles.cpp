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

void requireDimension(int dimension)
{
    if (dimension < 0 || dimension > 3) {
        throw pybind11::value_error("a dimension is 0, 1, 2 or 3");
    }
}

} // namespace Ovra::GeoPython
