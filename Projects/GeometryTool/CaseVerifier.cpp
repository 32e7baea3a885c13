#include "CaseVerifier.h"

#include "CaseView.h"
#include "PointerCheck.h"
#include "Progress.h"

namespace Ovra::GeoTool
{

CaseVerifier::CaseVerifier(const Geo::Database& database)
    : database_(database)
{
}

CaseFindings CaseVerifier::verify(Progress& progress, Topics topics, int limit) const
{
    CaseFindings findings(limit);
    progress.phase(QStringLiteral("verifying"));
    const CaseView view(database_);
    if (topics.testFlag(Pointers) && !PointerCheck::run(view, findings))
        return findings;
    progress.finish();
    return findings;
}

} // namespace Ovra::GeoTool
