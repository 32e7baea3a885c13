#include "MeshComparison.h"

#include "AttributeComparison.h"
#include "EntityNames.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Progress.h"
#include "ValueChanges.h"
#include "ValueText.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Owner = EntityName::Owner;

QString verticesText(const ComparedCase& oneCase, std::span<const int> vertices)
{
    std::vector<int> ids;
    for (const int vertex : vertices) {
        ids.push_back(oneCase.id(Owner::Mesh, 0, vertex));
    }
    return ValueText::ofIds(ids);
}

QString parentText(const ComparedCase& oneCase, const EntityPosition& parent)
{
    if (parent.isNone()) {
        return QStringLiteral("none");
    }
    const int id = oneCase.id(Owner::Model, parent.dimension, parent.position);
    return EntityName(Owner::Model, parent.dimension, id).text();
}

} // namespace

MeshComparison::MeshComparison(const CasePair& pair, CaseDifferences& differences,
                               Progress& progress)
    : pair_(pair)
    , differences_(differences)
    , progress_(progress)
{
}

void MeshComparison::run()
{
    compareWhole();
    for (int dimension = 0; dimension < 4; ++dimension) {
        progress_.phase(QStringLiteral("comparing the ") +
                        partName(partOf(Owner::Mesh, dimension)));
        compareEntities(dimension);
    }
}

bool MeshComparison::hasOtherVertices(int dimension, int inA) const
{
    const std::vector<char>& marks = haveOtherVertices_[static_cast<std::size_t>(dimension)];
    return !marks.empty() && marks[static_cast<std::size_t>(inA)] != 0;
}

void MeshComparison::compareWhole() const
{
    Mesh& a = pair_.a.view().mesh();
    Mesh& b = pair_.b.view().mesh();
    ValueChanges versions(pair_.closeness);
    versions.compare(QStringLiteral("version"), a.version(), b.version());
    if (!versions.areNone()) {
        differences_.add(DifferenceKind::Version, ComparedPart::Mesh, [&] {
            return pair_.difference(Owner::Mesh, EntityName::Whole, -1, -1, versions.changes());
        });
    }
    AttributeComparison(pair_, Owner::Mesh, EntityName::Whole, differences_)
        .compare(a.attributes(), b.attributes(), -1, -1);
}

void MeshComparison::compareEntities(int dimension)
{
    const EntityMatch& match = pair_.match.of(Owner::Mesh, dimension);
    const AttributeComparison attributes(pair_, Owner::Mesh, dimension, differences_);
    const int count = static_cast<int>(match.countInA());
    for (int i = 0; i < count; ++i) {
        const int j = match.inB(i);
        if (j < 0) {
            continue;
        }
        if (dimension == 0) {
            comparePoints(i, j);
        } else {
            compareVertices(dimension, i, j);
        }
        compareParents(dimension, i, j);
        attributes.compare(pair_.a.attributes(Owner::Mesh, dimension, i),
                           pair_.b.attributes(Owner::Mesh, dimension, j), i, j);
        progress_.update(i, count);
    }
}

void MeshComparison::comparePoints(int inA, int inB) const
{
    const Vector& a = pair_.a.view().points()[static_cast<std::size_t>(inA)];
    const Vector& b = pair_.b.view().points()[static_cast<std::size_t>(inB)];
    if (!pair_.closeness.areClose(a, b)) {
        differences_.add(DifferenceKind::Place, ComparedPart::MeshVertices, [&] {
            ValueChanges changes(pair_.closeness);
            changes.compare(QStringLiteral("point"), a, b);
            return pair_.difference(Owner::Mesh, 0, inA, inB, changes.changes());
        });
    }
}

void MeshComparison::compareVertices(int dimension, int inA, int inB)
{
    const std::span<const int> a = pair_.a.vertices(dimension, inA);
    const std::span<const int> b = pair_.b.vertices(dimension, inB);
    if (areVerticesMatched(a, b)) {
        return;
    }
    std::vector<char>& marks = haveOtherVertices_[static_cast<std::size_t>(dimension)];
    marks.resize(pair_.a.count(Owner::Mesh, dimension), 0);
    marks[static_cast<std::size_t>(inA)] = 1;
    differences_.add(DifferenceKind::Vertices, partOf(Owner::Mesh, dimension), [&] {
        return pair_.difference(
            Owner::Mesh, dimension, inA, inB,
            {{QStringLiteral("vertices"), verticesText(pair_.a, a), verticesText(pair_.b, b)}});
    });
}

bool MeshComparison::areVerticesMatched(std::span<const int> a, std::span<const int> b) const
{
    const EntityMatch& match = pair_.match.of(Owner::Mesh, 0);
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&match](int inA, int inB) { return match.inB(inA) == inB; });
}

void MeshComparison::compareParents(int dimension, int inA, int inB) const
{
    const EntityPosition& a = pair_.a.parents(dimension)[static_cast<std::size_t>(inA)];
    const EntityPosition& b = pair_.b.parents(dimension)[static_cast<std::size_t>(inB)];
    if (!pair_.match.areMatched(Owner::Model, a, b)) {
        differences_.add(DifferenceKind::Classification, partOf(Owner::Mesh, dimension), [&] {
            return pair_.difference(
                Owner::Mesh, dimension, inA, inB,
                {{QStringLiteral("parent"), parentText(pair_.a, a), parentText(pair_.b, b)}});
        });
    }
}

} // namespace Ovra::GeoTool
