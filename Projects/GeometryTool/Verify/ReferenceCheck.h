#pragma once

#include <QString>

namespace Ovra::Geo
{
class AttributeType;
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

struct AttributeRule;
class CaseView;
class FindingSink;

/// \brief Looks whether the entities that attributes name by id are there, and whether the links
/// that come in twos answer each other.
class ReferenceCheck
{
public:
    /// \param view, sink not owned; must outlive this object
    ReferenceCheck(const CaseView& view, FindingSink& sink);

    void run();

    /// \brief The check of one attribute of a model entity, if it has it.
    void checkReference(const Geo::ModelEntity& entity, const Geo::AttributeType& type);

    /// \brief The check of one attribute of a mesh vertex, if it has it.
    void checkReference(Geo::MeshEntity& vertex, const Geo::AttributeType& type);

private:
    template <typename Entity, typename Container>
    void checkIds(Entity& entity, const AttributeRule& rule, const QString& owner, int dimension,
                  const Container& container);
    void checkFaceAnswers(const Geo::ModelEntity& face);
    void checkRegionAnswers(const Geo::ModelEntity& region);
    void checkVertexAnswers(Geo::MeshEntity& vertex);

    const CaseView& view_;
    FindingSink& sink_;
};

} // namespace Ovra::GeoTool
