#pragma once

#include "FindingKind.h"
#include "LinkCheck.h"

namespace Ovra::GeoTool
{

/// \brief Looks whether periodic and extruded faces have the partner that they need, and, if the
/// case has been interpolated, whether all their vertices are tied to it.
class PairCheck
{
public:
    /// \param view, sink not owned; must outlive this object
    PairCheck(const CaseView& view, FindingSink& sink);

    void run();

private:
    LinkCheck::Pairs periodicPairs();
    LinkCheck::Pairs extrudedPairs();
    void checkMeshes(FindingKind kind, const LinkCheck::Pairs& pairs);

    const CaseView& view_;
    FindingSink& sink_;
};

} // namespace Ovra::GeoTool
