#pragma once

#include "NastranCards.h"
#include "NastranSystems.h"
#include "NumberedMesh.h"
#include "UnknownKinds.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads the mesh of a Nastran file into Gmsh's current model.
///
/// | Entry | Content |
/// |---|---|
/// | GRID | place |
/// | CORD2R, CORD2C | systems of places |
/// | CTETRA, CPYRAM, CPENTA, CHEXA | solids |
/// | CTRIA3, CTRIA6, CTRIAR, CQUAD4, CQUAD8, CQUADR, CQUAD, CSHEAR | shells and planes |
/// | CBAR, CBEAM, CBEND, CONROD, CROD, CTUBE | lines |
///
/// The property is the reference. Elements of other kinds are refused, as are INCLUDE and places in
/// coordinate systems of other kinds; all other entries are passed over.
class NastranReader
{
public:
    explicit NastranReader(const QString& path);

    /// \brief Makes nodes, entities and elements in Gmsh; see NumberedMesh.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError: InputDamaged with the line that is wrong, Unsuitable for what is not read.
    QStringList read();

private:
    void take(const NastranCard& card);
    void takeGrid(const NastranCard& card);
    void takeElement(const NastranCard& card);
    std::vector<qint64> nodesOf(const NastranCard& card, qsizetype first, std::size_t corners,
                                std::size_t most);
    void takeSystem(const NastranCard& card);
    void requireNoDefault(const NastranCard& card) const;
    void placeGrids();
    Geo::Vector vector(const NastranCard& card, qsizetype field) const;
    void requireEnd();
    qint64 whole(const NastranCard& card, qsizetype field, qint64 blank) const;
    double real(const NastranCard& card, qsizetype field) const;
    [[noreturn]] void fail(const NastranCard& card, const QString& what) const;
    [[noreturn]] void unsuitable(int line, const QString& what) const;

    /// \brief A place in a system that may come later.
    struct Grid
    {
        qint64 number = 0;
        qint64 system = 0;
        Geo::Vector place;
        int line = 0;
    };

    QString path_;
    NastranCards cards_;
    NumberedMesh mesh_;
    NastranSystems systems_;
    std::vector<Grid> grids_;
    UnknownKinds unknownKinds_;
    qint64 halfCurved_ = 0; ///< elements that lack some of the nodes between their corners
    QStringList remarks_;
};

} // namespace Ovra::GeoTool
