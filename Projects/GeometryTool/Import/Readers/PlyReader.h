#pragma once

#include "PlyHeader.h"
#include "PolygonFile.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads a polygon file (PLY), text or binary of either byte order, into Gmsh's current model.
///
/// Gmsh itself takes the first three corners of each face and leaves out the others. Read are x, y
/// and z of the element "vertex" and the list vertex_indices, or vertex_index, of the element "face";
/// all other properties and elements are passed over, but for strips of triangles.
class PlyReader
{
public:
    explicit PlyReader(const QString& path);

    /// \brief Makes nodes, one surface and its triangles in Gmsh; see PolygonSurface.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError: InputDamaged with the element that is wrong, Unsuitable for a file without
    /// faces.
    QStringList read();

private:
    void requireFaces() const;
    void readElement(const PlyHeader::Element& element, qint64 position);
    std::vector<double> values(const PlyHeader::Property& property, const QString& owner);

    PolygonFile file_;
    PlyHeader header_;
};

} // namespace Ovra::GeoTool
