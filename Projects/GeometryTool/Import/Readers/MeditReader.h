#pragma once

#include "DiscreteMesh.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <string_view>
#include <vector>

namespace Ovra::GeoTool
{

class MeditTokens;

/// \brief Reads a Medit mesh file (text) into Gmsh's current model.
///
/// | Section | Entry |
/// |---|---|
/// | Vertices | 2 or 3 coordinates, as Dimension has it, and a reference |
/// | Edges, Triangles, Quadrilaterals, Tetrahedra, Prisms, Pyramids, Hexahedra | nodes and a
/// reference |
/// | the same with P2, Q2, P3 behind the name | the same of higher order, corners first |
///
/// Keyword, count and entries may be on lines of their own or not. Any other section, such as Corners
/// or Normals, is passed over. References number the entities, and 0 or below means none, see
/// DiscreteMesh.
///
/// Gmsh of this generation loses pyramids, comments and what shares a line with a keyword, and takes
/// the wrong nodes of elements of second order.
class MeditReader
{
public:
    explicit MeditReader(const QString& path);

    /// \brief Makes nodes, entities and elements in Gmsh.
    /// \return what is odd about the file, without its name
    ///
    /// Throws ToolError: InputDamaged with the line that is wrong, Unsuitable for binary files and
    /// elements that have no counterpart.
    QStringList read();

private:
    /// \brief A section with a count of its entries.
    struct Section
    {
        QString name;
        qint64 count = 0;
        qint64 width = 0; ///< numbers in an entry
        int line = 0;
        bool isLast = false;
    };

    /// \brief Who names the node with the highest number.
    struct Highest
    {
        qint64 node = 0;
        qint64 entry = 0;
        int line = 0;
        QString section;
    };

    void parse(MeditTokens& tokens);
    void takeKeyword(const QString& keyword, MeditTokens& tokens);
    void takeDimension(MeditTokens& tokens);
    Section begin(const QString& keyword, MeditTokens& tokens) const;
    void skip(const QString& keyword, MeditTokens& tokens) const;
    void requireFit(const Section& section, qint64 numbers) const;
    void takeVertices(const Section& section, MeditTokens& tokens);
    void takeElements(const Section& section, MeditTokens& tokens);
    void takeElement(const Section& section, qint64 entry, std::vector<std::size_t>& nodes,
                     MeditTokens& tokens);
    int reference(MeditTokens& tokens) const;
    void requireNodes() const;
    void warnOfEnd(const QByteArray& text);
    qint64 integer(MeditTokens& tokens) const;
    double real(MeditTokens& tokens) const;
    [[noreturn]] void fail(int line, const QString& what) const;
    [[noreturn]] void failSection(const Section& section, const QString& what) const;
    [[noreturn]] void failWidth(const Section& section, int wanted, const char* parts) const;

    QString path_;
    int dimension_ = 3;
    bool ended_ = false;
    DiscreteMesh mesh_;
    Highest highest_;
    QStringList remarks_;
};

} // namespace Ovra::GeoTool
