#include "PlaceNumbers.h"

#include "PlaceTree.h"

#include <cmath>
#include <cstring>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// One of all the bits that stand for the same number.
Signature bitsOf(double number)
{
    const double one = std::isnan(number) ? std::nan("") : number + 0.0; // no negative zero
    Signature bits = 0;
    std::memcpy(&bits, &one, sizeof one);
    return bits;
}

std::vector<Signature> signaturesOf(const std::vector<Vector>& points)
{
    std::vector<Signature> signatures;
    signatures.reserve(points.size());
    for (const Vector& point : points) {
        const Signature place =
            joined(joined(bitsOf(point.x()), bitsOf(point.y())), bitsOf(point.z()));
        signatures.push_back(place == 0 ? 1 : place);
    }
    return signatures;
}

const Vector& pointOf(const std::vector<Vector>& points, const Signed& each)
{
    return points[static_cast<std::size_t>(each.position)];
}

/// Places that one case alone has: the first point at each, and what numbers all of them.
struct Alone
{
    std::vector<Vector> points;
    std::vector<std::span<const Signed>> members;

    void add(const std::vector<Vector>& all, std::span<const Signed> like)
    {
        points.push_back(pointOf(all, like[0]));
        members.push_back(like);
    }
};

} // namespace

PlaceNumbers PlaceNumbers::of(const std::vector<Vector>& a, const std::vector<Vector>& b,
                              double tolerance)
{
    PlaceNumbers numbers{signaturesOf(a), signaturesOf(b)};
    if (!(tolerance > 0)) {
        return numbers;
    }
    const std::vector<Signed> inA = inOrder(numbers.inA);
    const std::vector<Signed> inB = inOrder(numbers.inB);
    Alone onlyInA;
    Alone onlyInB;
    forEachLike(inA, inB, [&](std::span<const Signed> likeInA, std::span<const Signed> likeInB) {
        if (likeInB.empty()) {
            onlyInA.add(a, likeInA);
        } else if (likeInA.empty()) {
            onlyInB.add(b, likeInB);
        }
    });
    const PlaceTree tree(onlyInB.points);
    for (std::size_t i = 0; i < onlyInA.points.size(); ++i) {
        const int nearest = tree.nearest(onlyInA.points[i], tolerance);
        for (const Signed& each : onlyInA.members[i]) {
            if (nearest >= 0) {
                numbers.inA[static_cast<std::size_t>(each.position)] =
                    onlyInB.members[static_cast<std::size_t>(nearest)][0].signature;
            }
        }
    }
    return numbers;
}

} // namespace Ovra::GeoTool
