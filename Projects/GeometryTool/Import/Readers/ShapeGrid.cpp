#include "ShapeGrid.h"

#include <gmsh.h>

namespace Ovra::GeoTool
{

namespace
{

std::vector<double> parameterGrid(int dimension, int tag)
{
    constexpr int steps = 4;
    std::vector<double> low;
    std::vector<double> high;
    gmsh::model::getParametrizationBounds(dimension, tag, low, high);
    std::vector<double> parameters;
    for (int i = 0; i <= steps; ++i) {
        const double u = low.at(0) + (high.at(0) - low.at(0)) * i / steps;
        if (dimension == 1) {
            parameters.push_back(u);
        }
        for (int j = 0; dimension == 2 && j <= steps; ++j) {
            parameters.insert(parameters.end(),
                              {u, low.at(1) + (high.at(1) - low.at(1)) * j / steps});
        }
    }
    return parameters;
}

} // namespace

std::vector<Geo::Vector> shapeGrid(int dimension, int tag)
{
    std::vector<double> c;
    try {
        gmsh::model::getValue(dimension, tag, parameterGrid(dimension, tag), c);
    } catch (...) {
        return {};
    }
    std::vector<Geo::Vector> points;
    for (std::size_t i = 0; i + 2 < c.size(); i += 3) {
        points.emplace_back(c[i], c[i + 1], c[i + 2]);
    }
    return points;
}

} // namespace Ovra::GeoTool
