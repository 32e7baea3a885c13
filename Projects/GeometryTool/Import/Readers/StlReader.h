#pragma once

#include "TriangleSurface.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads an STL file into Gmsh's current model.
///
/// Each "solid" of a text becomes a patch of its name; a binary file is one patch. Gmsh takes a
/// binary file for text when its header begins with "solid", and knows the words of a text in one
/// case only.
class StlReader
{
public:
    explicit StlReader(const QString& path);

    /// \brief Makes nodes, surfaces, triangles and groups in Gmsh; see TriangleSurface.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError InputDamaged with the line, or the number of the triangle, that is wrong.
    QStringList read();

private:
    void readBinary();
    void readText();
    void takeLine(const QByteArray& line);
    void takeVertex(const QByteArray& line);
    void endFacet();
    [[noreturn]] void fail(const QString& what) const;

    QFile file_;
    TriangleSurface surface_;
    bool inSolid_ = false;
    bool inFacet_ = false;
    int line_ = 0;
    long long triangles_ = 0;
    std::vector<Geo::Vector> corners_;
};

} // namespace Ovra::GeoTool
