#pragma once

#include "GmshFormat.h"

#include <QSet>
#include <QString>

#include <map>
#include <utility>
#include <vector>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief The groups that a case is written in: one for each name of its model entities and one for
/// each entity without a name, and one for each material.
///
/// Where the format has no place for a name, as for one with a blank, its group gets another that no
/// other has.
class GroupNames
{
public:
    struct Group
    {
        int dimension = 0;
        int number = 0; ///< the lowest id of its entities; that of a material is above all ids
        QString name;   ///< as it is written; empty if it has none
        std::vector<int> entities; ///< ids, ascending
    };

    GroupNames(const CaseView& view, const GmshFormat& format);

    /// \brief By dimension and number.
    const std::vector<Group>& all() const { return groups_; }

    /// \brief The name that the group of an entity is written with; empty if it has none.
    QString of(const Geo::ModelEntity& entity) const;

private:
    using Key = std::pair<int, QString>; ///< dimension and name

    void addNames(const CaseView& view, int dimension);
    void addMaterials(const CaseView& view);
    QString uniqueName(int dimension, const QString& name);
    QString allowedName(const QString& name) const;
    bool take(int dimension, const QString& name);

    const GmshFormat& format_;
    std::vector<Group> groups_;
    std::map<Key, QString> written_;
    QSet<QString> taken_;
};

} // namespace Ovra::GeoTool
