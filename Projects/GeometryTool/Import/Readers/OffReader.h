#pragma once

#include "PolygonSurface.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

/// \brief Reads an object file (OFF) into Gmsh's current model; Gmsh itself takes it for a script.
///
/// | Line | Content |
/// |---|---|
/// | header | OFF, or with N, C, ST in front; the counts may stand behind it |
/// | counts | of vertices, faces and edges; the last is not used |
/// | vertex | x y z; normals, colours and texture coordinates behind them are passed over |
/// | face | number of corners, positions of vertices from 0; a colour behind them is passed over |
///
/// Comments from # to the end of the line count as nothing. A face of more than three corners is
/// cut into triangles that share its first one.
class OffReader
{
public:
    explicit OffReader(const QString& path);

    /// \brief Makes nodes, one surface and its triangles in Gmsh; see PolygonSurface.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError InputDamaged with the line that is wrong: unknown headers, fewer lines than
    /// the counts call for, positions that are none, faces that are not convex.
    QStringList read();

private:
    void readHeader();
    void readVertex();
    void readFace();
    bool nextLine();
    void requireLine(const QString& what, qint64 found, qint64 wanted);
    qint64 count(qsizetype field) const;
    [[noreturn]] void fail(const QString& what) const;

    QFile file_;
    PolygonSurface surface_;
    int line_ = 0;
    QList<QByteArray> fields_;
    qint64 vertexCount_ = 0;
    qint64 faceCount_ = 0;
};

} // namespace Ovra::GeoTool
