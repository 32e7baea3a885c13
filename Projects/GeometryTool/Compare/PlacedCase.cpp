#include "PlacedCase.h"

#include "PlaceNumbers.h"

namespace Ovra::GeoTool
{

namespace
{

using Owner = EntityName::Owner;

PlacedCase::Places placesOf(const ComparedCase& oneCase, int dimension,
                            const PlacedCase::Places& ofVertices)
{
    PlacedCase::Places places;
    const std::size_t count = oneCase.count(Owner::Mesh, dimension);
    places.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::span<const int> vertices = oneCase.vertices(dimension, static_cast<int>(i));
        Signature sum = vertices.size();
        for (const int vertex : vertices) {
            sum += mixed(ofVertices[static_cast<std::size_t>(vertex)]);
        }
        places.push_back(mixed(sum));
    }
    return places;
}

} // namespace

PlacedCase::PlacedCase(const ComparedCase& oneCase, Places vertices)
    : oneCase_(&oneCase)
{
    places_[0] = std::move(vertices);
    for (int dimension = 1; dimension < 4; ++dimension) {
        places_[static_cast<std::size_t>(dimension)] = placesOf(oneCase, dimension, places_[0]);
    }
}

std::pair<PlacedCase, PlacedCase> PlacedCase::both(const ComparedCase& a, const ComparedCase& b,
                                                   double tolerance)
{
    PlaceNumbers numbers = PlaceNumbers::of(a.view().points(), b.view().points(), tolerance);
    return {PlacedCase(a, std::move(numbers.inA)), PlacedCase(b, std::move(numbers.inB))};
}

} // namespace Ovra::GeoTool
