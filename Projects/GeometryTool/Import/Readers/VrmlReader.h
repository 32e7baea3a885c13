#pragma once

#include "TriangleSurface.h"
#include "VrmlTokens.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads the IndexedFaceSet nodes of a VRML 1.0 or 2.0 file into Gmsh's current model.
///
/// Gmsh of this generation reads 1.0 only, and does not come to an end over others. Lines, points,
/// looks, lights and cameras are passed over. What would be lost or stand in a wrong place is
/// refused: solids such as Box, shapes that are used again, and nodes that move what is in them.
class VrmlReader
{
public:
    explicit VrmlReader(const QString& path);

    /// \brief Makes nodes, a surface for each set of faces and its triangles in Gmsh; see
    /// TriangleSurface.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError: InputDamaged with the line that is wrong, Unsuitable with that of what is
    /// not read.
    QStringList read();

private:
    /// \brief A node whose brace is open.
    struct Node
    {
        QByteArray type;
        std::vector<Geo::Vector> points; ///< of a Separator: those in force ahead of it
        std::vector<qint64> corners;     ///< of an IndexedFaceSet, with -1 behind each face
        int line = 0;
    };

    void readHeader();
    void take(const QByteArray& word);
    void requireKnown(const QByteArray& word) const;
    void open();
    void close();
    void takePoints();
    void takeCorners();
    QByteArray numberIn(const QByteArray& field);
    void addFaces(const Node& node);
    [[noreturn]] void fail(int line, const QString& what) const;

    QString path_;
    VrmlTokens tokens_;
    QByteArray last_; ///< the word ahead of the present one
    std::vector<Node> nodes_;
    std::vector<Geo::Vector> points_; ///< of the last Coordinate or Coordinate3
    TriangleSurface surface_;
    bool hasFaces_ = false;
};

} // namespace Ovra::GeoTool
