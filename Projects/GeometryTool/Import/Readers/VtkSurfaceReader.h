#pragma once

#include "PolygonFile.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

/// \brief Reads the POLYGONS of a legacy VTK file of DATASET POLYDATA into Gmsh's current model.
///
/// Text and binary of versions below 5. Vertices, lines and values are passed over.
class VtkSurfaceReader
{
public:
    explicit VtkSurfaceReader(const QString& path);

    /// \brief Makes nodes, one surface and its triangles in Gmsh; see PolygonSurface.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError: InputDamaged for what is not whole, Unsuitable for what is not read.
    QStringList read();

private:
    void readHeader();
    QList<QByteArray> findSection();
    void readPoints(const QList<QByteArray>& words);
    void readPolygons(const QList<QByteArray>& words);
    void passOver(const QList<QByteArray>& words);
    qint64 countIn(const QList<QByteArray>& words, qsizetype index) const;

    PolygonFile file_;
};

} // namespace Ovra::GeoTool
