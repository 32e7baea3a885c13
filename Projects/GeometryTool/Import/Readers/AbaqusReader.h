#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads the mesh of an Abaqus input file into Gmsh's current model.
///
/// Gmsh of this generation writes the format but does not read it. What is read: *NODE, *ELEMENT
/// with TYPE and ELSET, *ELSET with or without GENERATE, by element numbers or names of other sets;
/// any other keyword is passed over with its data. Every set becomes a physical group, the sets of
/// *ELSET numbered ahead of those of *ELEMENT, and the elements of one dimension that are in the
/// same sets become one discrete entity.
class AbaqusReader
{
public:
    explicit AbaqusReader(const QString& path);

    /// \brief Makes nodes, entities, elements and groups in Gmsh.
    ///
    /// Throws ToolError: InputDamaged with the line that is wrong, Unsuitable with the number of
    /// elements of each type that has no counterpart.
    void read();

private:
    struct Element
    {
        std::size_t number = 0;
        int gmshType = 0;
        int dimension = 0;
        QList<QByteArray> sets;
        std::vector<std::size_t> nodes;
    };

    /// Tags of the entities of a set, by dimension and name.
    using Groups = std::map<std::pair<int, QByteArray>, std::vector<int>>;

    void parse();
    void beginKeyword(const QByteArray& line);
    void beginElements();
    void beginSet();
    void takeData(const QByteArray& line);
    void takeNode(const QList<QByteArray>& fields);
    void takeElement(const QList<QByteArray>& fields);
    void takeSetMembers(const QList<QByteArray>& fields);
    void putEndsFirst();
    void requireWholeElement() const;
    std::size_t number(const QByteArray& field) const;
    double real(const QByteArray& field) const;
    [[noreturn]] void fail(const QString& what) const;
    void requireKnownTypes() const;
    void requireKnownNodes() const;
    void enterSets();
    void makeEntities() const;
    static void addElements(int entity, const std::vector<const Element*>& elements);
    void makeGroups(const Groups& groups) const;

    QString path_;
    int line_ = 0;
    QByteArray keyword_;
    QHash<QByteArray, QByteArray> parameters_;
    std::size_t nodesOfType_ = 0; ///< of the present *ELEMENT; 0 for a type without counterpart
    Element pattern_;             ///< what the elements of the present *ELEMENT share
    QMap<QByteArray, int> unknownTypes_;
    std::vector<std::size_t> nodeNumbers_;
    std::vector<double> coordinates_;
    std::vector<Element> elements_;
    QHash<std::size_t, std::size_t> positions_; ///< in elements_, by element number
    QList<QByteArray> setNames_;                ///< of *ELSET, in order of appearance
    QHash<QByteArray, QList<std::size_t>> setMembers_;
    QList<QByteArray> elementSetNames_; ///< of *ELEMENT, in order of appearance
};

} // namespace Ovra::GeoTool
