#include "AxisNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace Ovra::GeoTool
{

namespace
{

constexpr int wantedSteps = 4;
constexpr double slack = 1e-6; // of a step

/// Of the power of ten below a number, and of that number itself.
int exponentOf(double number)
{
    return static_cast<int>(std::floor(std::log10(number) + 1e-9));
}

/// 1, 2 or 5 times a power of ten.
double roundStep(double length)
{
    const double rough = length / wantedSteps;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (rough <= factor * power * 1.0001) {
            return factor * power;
        }
    }
    return 10.0 * power;
}

std::string numberText(double number, int digits)
{
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), "%.*g", digits, number);
    return text.data();
}

} // namespace

std::vector<PictureData::AxisNumber> axisNumbers(double low, double high)
{
    const double step = low < high ? roundStep(high - low) : 0.0;
    if (!std::isnormal(step)) {
        return {};
    }
    const double farthest = std::max(std::abs(low), std::abs(high));
    const int digits = exponentOf(farthest) - exponentOf(step) + 1;
    if (digits > std::numeric_limits<double>::digits10) {
        return {};
    }
    const double first = std::ceil(low / step - slack);
    const int count = static_cast<int>(std::floor(high / step + slack) - first) + 1;
    std::vector<PictureData::AxisNumber> numbers;
    for (int i = 0; i < count; ++i) {
        const double at = (first + i) * step + 0.0; // nowhere a zero below zero
        numbers.push_back({at, numberText(at, std::max(digits, 4))});
    }
    return numbers;
}

} // namespace Ovra::GeoTool
