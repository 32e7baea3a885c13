#pragma once

#include "QualityHistogram.h"
#include "Vector.h"

#include <QHash>
#include <QVarLengthArray>

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
struct ElementTopology;
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
/// - The measure is the length of a line, the area of a face (the fan of triangles about the first
///   vertex, by magnitude), and the signed volume of a solid: the sum, over its sides with the
///   normal outward, of the pyramids between the sides and the first vertex, a side of four
///   vertices being split into four triangles about its mean point. A tetrahedron has (p1 - p0) x
///   (p2 - p0) . (p3 - p0) / 6.
/// - An element is degenerate if the magnitude of its measure is at most 1e-12 of its longest edge
/// to
///   the power of its dimension, or if it names one vertex twice.
/// - A solid is inverted if its volume is negative and it is not degenerate. It is twisted if its
///   volume is positive and the three edges at one of its corners, in their order, span a volume
///   that is not; the apex of a pyramid, where four edges meet, is not looked at. A quadrilateral
///   is twisted if its sides cross: both diagonals split it into triangles that face opposite ways.
/// - The aspect is the longest edge over the radius 3 V / A of a solid, A being the area of its
/// sides,
///   or 2 A / P of a face, P being its perimeter, divided by that figure for the regular element
///   with all edges alike: 1 is best. Degenerate and inverted elements have none, nor have lines.
/// - An element with a number of vertices that makes no kind is counted as unknown and not looked
/// at.
class MeshQuality
{
public:
    /// \brief The points of one element. On the stack: there are a million of them to judge.
    using Points = QVarLengthArray<Geo::Vector, 8>;

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

    /// \brief Signed volume of a solid, area of a face, length of a line.
    /// \pre ElementTopology knows the kind of \p element
    static double measureOf(const Ovra::Geo::MeshEntity& element);

private:
    double judge(int id, const ElementTopology& topology, const Points& points, bool repeatsVertex);

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
