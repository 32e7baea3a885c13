#pragma once

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;

/// \brief Finds pointers to entities that are in neither model nor mesh, without following them,
/// and tables of children that do not agree with their parents.
class PointerCheck
{
public:
    /// \brief Reports to \p sink; true if every pointer can be followed.
    static bool run(const CaseView& view, FindingSink& sink);
};

} // namespace Ovra::GeoTool
