#include "CoincidentFaces.h"

#include "AttributeRule.h"
#include "IdOrder.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelEntity.h"
#include "ModelFace.h"

#include <QVariant>

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Pair = CoincidentFaces::Pair;

constexpr double closeness = 1e-5;    ///< of centroids and measures, by the size of the face
constexpr double boxCloseness = 1e-2; ///< kernels bound curved shapes loosely

struct Candidate
{
    const ModelEntity* face;
    Box box;
    Vector centroid;
    double size;
    double measure; ///< length of an edge, root of the area of a face
    double key;     ///< where the centroid lies along a direction that no plane of a grid is across
};

double measureOf(const ModelEntity& face)
{
    if (const auto* edge = dynamic_cast<const ModelEdge*>(&face)) {
        return edge->length();
    }
    const auto* surface = dynamic_cast<const ModelFace*>(&face);
    return surface == nullptr ? 0 : std::sqrt(std::abs(surface->area()));
}

std::vector<Candidate> candidatesOf(const Model& model)
{
    static const Vector direction(0.8017, 0.5231, 0.2893);
    const int dimension = model.faceDimension();
    std::vector<Candidate> candidates;
    for (const ModelEntity* face : inIdOrder(model.iterator(dimension))) {
        const Box box = face->boundingBox();
        const bool unbounded = box.isValid();
        if (face->adjacencyCount(dimension + 1) == 1 && !unbounded) {
            candidates.push_back({face, box, face->centroid(), box.extent().length(),
                                  measureOf(*face), face->centroid() * direction});
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.key < b.key; });
    return candidates;
}

bool names(const ModelEntity& face, const ModelEntity& other)
{
    const auto& rules = AttributeRule::naming();
    return std::any_of(rules.begin(), rules.end(), [&](const AttributeRule& rule) {
        return rule.names == AttributeRule::Names::ModelFace &&
               face.attributes().contains(rule.type) &&
               face.attributes().value(rule.type, QVariant()).toInt() == other.id();
    });
}

bool coincide(const Candidate& a, const Candidate& b)
{
    const double limit = closeness * std::max(a.size, b.size);
    const int bodies = a.face->dimension() + 1;
    return a.face->adjacencyAt(bodies, 0) != b.face->adjacencyAt(bodies, 0) &&
           (a.centroid - b.centroid).length() <= limit &&
           std::abs(a.measure - b.measure) <= limit && a.box.matches(b.box, boxCloseness) &&
           !CoincidentFaces::areTied(*a.face, *b.face);
}

Pair ordered(const Candidate& a, const Candidate& b)
{
    const double size = a.face->dimension() == 2 ? a.measure * a.measure : a.measure;
    return a.face->id() < b.face->id() ? Pair{a.face, b.face, size} : Pair{b.face, a.face, size};
}

} // namespace

std::vector<Pair> CoincidentFaces::in(const Model& model)
{
    const std::vector<Candidate> candidates = candidatesOf(model);
    std::vector<Pair> pairs;
    for (auto a = candidates.begin(); a != candidates.end(); ++a) {
        const double reach = a->key + 2 * closeness * a->size;
        for (auto b = a + 1; b != candidates.end() && b->key <= reach; ++b) {
            if (coincide(*a, *b)) {
                pairs.push_back(ordered(*a, *b));
            }
        }
    }
    std::sort(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) {
        return a.first->id() != b.first->id() ? a.first->id() < b.first->id()
                                              : a.second->id() < b.second->id();
    });
    return pairs;
}

bool CoincidentFaces::areTied(const ModelEntity& face, const ModelEntity& other)
{
    return names(face, other) || names(other, face);
}

} // namespace Ovra::GeoTool
