// The nearest vertex by nanoflann, between the two faces of the periodic interpolation.

#include "FacePair.h"

#include <array>
#include <benchmark/benchmark.h>
#include <nanoflann.hpp>
#include <vector>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

using Point = std::array<double, 3>;

struct Cloud
{
    std::vector<Point> points;

    // As nanoflann asks for them.
    std::size_t kdtree_get_point_count() const { return points.size(); }
    double kdtree_get_pt(std::size_t index, std::size_t axis) const { return points[index][axis]; }
    template <typename Box>
    bool kdtree_get_bbox(Box&) const
    {
        return false;
    }
};

using Tree =
    nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Cloud>, Cloud, 3>;

Cloud cloudOf(const Mesh& mesh, const ModelEntity* face)
{
    Cloud cloud;
    for (auto walk = mesh.iterator(0); walk.hasNext();) {
        const MeshEntity* vertex = walk.next().value();
        if (vertex->parent() == face) {
            const Vector point = vertex->centroid();
            cloud.points.push_back({point.x(), point.y(), point.z()});
        }
    }
    return cloud;
}

void findNearest(const Cloud& cloud, const Cloud& others)
{
    const Tree tree(3, cloud);
    for (const Point& point : others.points) {
        std::size_t index = 0;
        double squaredDistance = 0;
        nanoflann::KNNResultSet<double> nearest(1);
        nearest.init(&index, &squaredDistance);
        tree.findNeighbors(nearest, point.data(), nanoflann::SearchParams());
        benchmark::DoNotOptimize(index);
    }
}

void BM_NearestByNanoflann(benchmark::State& state)
{
    FacePair pair(static_cast<int>(state.range(0)), 1.0);
    const Cloud a = cloudOf(pair.mesh(), pair.model().entity(2, 1));
    Cloud b = cloudOf(pair.mesh(), pair.model().entity(2, 2));
    for (Point& point : b.points) {
        point[2] = 0; // by the translation between the faces
    }
    for (auto _ : state) {
        findNearest(a, b);
        findNearest(b, a);
    }
}
BENCHMARK(BM_NearestByNanoflann)
    ->Arg(10'000)
    ->Arg(30'000)
    ->Arg(100'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Benchmarks
