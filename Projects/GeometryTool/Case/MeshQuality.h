#pragma once

#include "ElementQuality.h"
#include "QualityHistogram.h"

#include <QHash>

#include <limits>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;
class Progress;

/// \brief Smallest and largest of a quantity over the elements of a mesh, and where they are.
struct Extremes
{
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();
    int smallestId = 0; ///< 0 while nothing has been seen
    int largestId = 0;

    /// \brief Takes one more value in; of equal values the one with the lowest id counts.
    void add(double value, int id);

    bool isEmpty() const { return smallestId == 0; }
};

/// \brief How good the elements of one dimension of a mesh are.
///
/// What is said of each stands in ElementQuality; an element with a number of vertices that makes no
/// kind is counted as unknown and not looked at.
class MeshQuality
{
public:
    /// \brief Judges all elements of \p dimension, 1 to 3, in the mesh of \p view.
    MeshQuality(const CaseView& view, int dimension, Progress& progress);

    const Extremes& measure() const { return measure_; }
    const Extremes& aspect() const { return aspect_; }

    /// \brief Sum of the measures.
    double total() const { return total_; }

    /// \brief The same of the elements that stand on \p entity.
    double totalOn(const Geo::ModelEntity* entity) const { return totals_.value(entity); }

    /// \brief How the aspects and the magnitudes of the measures are spread.
    const QualityHistogram& histogram() const { return histogram_; }

    /// \brief Ids in ascending order.
    const std::vector<int>& inverted() const { return inverted_; }
    const std::vector<int>& twisted() const { return twisted_; }
    const std::vector<int>& degenerate() const { return degenerate_; }
    const std::vector<int>& unknown() const { return unknown_; }

private:
    void add(const Geo::MeshEntity& element, const ElementQuality& quality, double& onOwner);
    std::vector<int>* listOf(ElementQuality::State state);

    Extremes measure_;
    Extremes aspect_;
    double total_ = 0.0;
    QHash<const Geo::ModelEntity*, double> totals_;
    QualityHistogram histogram_;
    std::vector<int> inverted_;
    std::vector<int> twisted_;
    std::vector<int> degenerate_;
    std::vector<int> unknown_;
};

} // namespace Ovra::GeoTool
