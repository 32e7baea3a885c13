#include "CaseComparison.h"

#include "CasePair.h"
#include "MeshComparison.h"
#include "MeshMatching.h"
#include "ModelComparison.h"
#include "ModelMatching.h"
#include "NeighbourComparison.h"
#include "PlacedCase.h"
#include "Progress.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Owner = EntityName::Owner;

CaseMatch matchedByPlace(const ComparedCase& a, const ComparedCase& b, double tolerance)
{
    CaseMatch match(a, b);
    match.isByPlace = true;
    const auto [placedA, placedB] = PlacedCase::both(a, b, tolerance);
    ModelMatching(placedA, placedB, tolerance, match).run();
    MeshMatching(placedA, placedB, tolerance, match).run();
    return match;
}

void tellOfUnmatched(const CasePair& pair, Owner owner, int dimension, CaseDifferences& differences)
{
    const EntityMatch& match = pair.match.of(owner, dimension);
    const ComparedPart part = partOf(owner, dimension);
    for (int i = 0; i < static_cast<int>(match.countInA()); ++i) {
        if (match.inB(i) < 0) {
            differences.add(DifferenceKind::OnlyInA, part,
                            [&] { return pair.difference(owner, dimension, i, -1); });
        }
    }
    for (int j = 0; j < static_cast<int>(match.countInB()); ++j) {
        if (match.inA(j) < 0) {
            differences.add(DifferenceKind::OnlyInB, part,
                            [&] { return pair.difference(owner, dimension, -1, j); });
        }
    }
}

} // namespace

CaseDifferences CaseComparison::compare(const Database& a, const Database& b,
                                        const Options& options, Progress& progress)
{
    progress.phase(QStringLiteral("matching the entities"));
    const ComparedCase caseA(a);
    const ComparedCase caseB(b);
    const CaseMatch match = options.byPlace ? matchedByPlace(caseA, caseB, options.tolerance)
                                            : CaseMatch::byId(caseA, caseB);
    const CasePair pair{caseA, caseB, match, Closeness(options.tolerance)};
    CaseDifferences differences(options.limit);
    for (const Owner owner : {Owner::Model, Owner::Mesh}) {
        for (int dimension = 0; dimension < 4; ++dimension) {
            tellOfUnmatched(pair, owner, dimension, differences);
        }
    }
    progress.phase(QStringLiteral("comparing the models"));
    ModelComparison(pair, differences).run();
    MeshComparison mesh(pair, differences, progress);
    mesh.run();
    progress.phase(QStringLiteral("comparing the neighbours"));
    NeighbourComparison(pair, mesh, differences).run();
    progress.finish();
    return differences;
}

CaseDifferences CaseComparison::compareModels(const Database& a, const Database& b, int limit)
{
    const ComparedCase caseA(a, CaseView::Part::Model);
    const ComparedCase caseB(b, CaseView::Part::Model);
    const CaseMatch match = CaseMatch::byId(caseA, caseB);
    const CasePair pair{caseA, caseB, match, Closeness(0.0)};
    CaseDifferences differences(limit);
    ModelComparison(pair, differences).run();
    return differences;
}

} // namespace Ovra::GeoTool
