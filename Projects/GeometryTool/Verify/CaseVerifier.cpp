#include "CaseVerifier.h"

#include "AttributeCheck.h"
#include "CaseView.h"
#include "ClassificationCheck.h"
#include "ElementCheck.h"
#include "ModelLinkCheck.h"
#include "MotionCheck.h"
#include "PairCheck.h"
#include "PointerCheck.h"
#include "Progress.h"
#include "ReferenceCheck.h"
#include "SideCheck.h"

#include <functional>
#include <utility>

namespace Ovra::GeoTool
{

CaseVerifier::CaseVerifier(const Geo::Database& database)
    : database_(database)
{
}

CaseFindings CaseVerifier::verify(Progress& progress, Topics topics, int limit) const
{
    return verify(CaseView(database_), progress, topics, limit);
}

CaseFindings CaseVerifier::verify(const CaseView& view, Progress& progress, Topics topics,
                                  int limit)
{
    CaseFindings findings(limit);
    if (topics.testFlag(Pointers) && !PointerCheck::run(view, findings)) {
        return findings;
    }
    const std::initializer_list<std::pair<Topic, std::function<void()>>> checks = {
        {Elements, [&] { ElementCheck(view, findings).run(progress); }},
        {Classification, [&] { ClassificationCheck::run(view, findings); }},
        {ModelLinks, [&] { ModelLinkCheck::run(view, findings); }},
        {Surfaces, [&] { SideCheck(view, findings).run(progress); }},
        {Attributes,
         [&] {
             AttributeCheck::run(view, findings);
             ReferenceCheck(view, findings).run();
         }},
        {Pairs, [&] {
             PairCheck(view, findings).run();
             MotionCheck(view, findings).run();
         }}};
    int done = 0;
    for (const auto& [topic, check] : checks) {
        progress.phase(QStringLiteral("verifying, step %1 of %2").arg(++done).arg(checks.size()));
        if (topics.testFlag(topic)) {
            check();
        }
    }
    progress.finish();
    return findings;
}

} // namespace Ovra::GeoTool
