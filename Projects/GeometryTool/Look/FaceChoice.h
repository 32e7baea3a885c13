#pragma once

#include <QSet>
#include <QStringList>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Which faces a user has asked for by their names.
class FaceChoice
{
public:
    /// \param names of faces, or of regions for all of their faces, with * and ?; none asks for all.
    /// Throws ToolError Unsuitable for one that no face or region has
    FaceChoice(const CaseView& view, const QStringList& names);

    bool includes(const Geo::ModelEntity* entity) const
    {
        return takesAll_ || chosen_.contains(entity);
    }

private:
    void choose(const CaseView& view, const QString& name);
    void add(const Geo::ModelEntity& entity, int faceDimension);

    bool takesAll_;
    QSet<const Geo::ModelEntity*> chosen_;
};

} // namespace Ovra::GeoTool
