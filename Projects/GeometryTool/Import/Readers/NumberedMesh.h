#pragma once

#include "DiscreteMesh.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <map>
#include <span>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief A mesh whose file numbers nodes and elements and lists elements in named groups.
///
/// The elements of one dimension with the same reference and the same groups become one entity. Of
/// those with the same reference, the first keep it as the number of their entity; the entities of
/// the others are numbered on behind the highest one.
class NumberedMesh
{
public:
    struct Kind
    {
        int dimension = 0;
        int gmshType = 0;
    };

    /// \brief Highest reference and number of a node that can be told apart.
    static constexpr qint64 HighestNumber = 1000000000;

    /// \brief Adds a node.
    /// \param number from 1 to HighestNumber
    /// \return false if the number is taken by a node at another place
    bool addNode(qint64 number, const std::array<double, 3>& point);

    /// \param number may come again; groups then hold all of that number
    /// \param line where it stands in the file
    /// \param reference 0 for none, HighestNumber at most
    /// \param nodes their numbers, in the order of Gmsh
    void addElement(qint64 number, int line, const Kind& kind, int reference,
                    std::span<const qint64> nodes);

    bool hasElements() const { return !elements_.empty(); }

    /// \brief Puts an element, which may come later, into the group of a name.
    void addToGroup(const QString& name, qint64 element);

    /// \brief Which line names which node that is not there, of the first such; empty if none does.
    QString unknownNode() const;

    /// \brief Makes nodes, entities, elements and physical groups in Gmsh. \pre hasElements(), and
    /// unknownNode() is empty
    /// \return names of the groups that hold none of the elements
    QStringList load() const;

private:
    using Groups = std::vector<int>; ///< positions in names_, ascending

    struct Element
    {
        qint64 number = 0;
        int line = 0;
        Kind kind;
        int reference = 0;
        std::size_t firstNode = 0;
        std::size_t nodeCount = 0;
    };

    struct EntityKey
    {
        int dimension = 0;
        int reference = 0;
        Groups groups;

        auto operator<=>(const EntityKey&) const = default; // NOLINT(modernize-use-nullptr)
    };

    EntityKey keyOf(const Element& element) const;
    std::map<EntityKey, int> numberedEntities() const;
    QStringList loadGroups(const std::map<EntityKey, int>& entities) const;

    std::map<qint64, std::array<double, 3>> nodes_;
    std::vector<Element> elements_;
    std::vector<qint64> elementNodes_;
    QStringList names_;
    std::map<QString, int> groupByName_;
    std::map<qint64, Groups> groupsOf_; ///< by number of the element
};

} // namespace Ovra::GeoTool
