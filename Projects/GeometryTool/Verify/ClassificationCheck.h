#pragma once

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;

/// \brief Looks whether mesh edges, faces and regions stand on model entities of their dimension.
///
/// A vertex may stand on any model entity, and those that the solver preparation makes stand on
/// none.
class ClassificationCheck
{
public:
    static void run(const CaseView& view, FindingSink& sink);

    /// \brief The check of one mesh edge, face or region.
    static void checkEntity(const Geo::MeshEntity& entity, FindingSink& sink);
};

} // namespace Ovra::GeoTool
