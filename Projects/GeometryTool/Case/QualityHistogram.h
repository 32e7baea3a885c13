#pragma once

#include <array>
#include <map>

namespace Ovra::GeoTool
{

/// \brief How many elements of a mesh are how good, and how large.
class QualityHistogram
{
public:
    /// \brief Where the bins of aspects begin; each ends where the next begins, the last nowhere.
    static constexpr std::array<double, 12> AspectBounds = {1, 1.25, 1.5, 2,  2.5, 3,
                                                            4, 6,    10,  20, 50,  100};

    /// \brief Takes the aspect of one element in; one that rounding brings below 1 counts as 1.
    void addAspect(double aspect);

    /// \brief Takes the measure of one element in, whatever its sign; 0 and what is not finite go
    /// into no bin.
    void addMeasure(double measure);

    /// \brief The number of elements in each bin of AspectBounds.
    const std::array<int, AspectBounds.size()>& aspects() const { return aspects_; }

    /// \brief The number of elements whose measure is from 2 to the power of the key to below twice
    /// that.
    const std::map<int, int>& measures() const { return measures_; }

private:
    std::array<int, AspectBounds.size()> aspects_ = {};
    std::map<int, int> measures_;
};

} // namespace Ovra::GeoTool
