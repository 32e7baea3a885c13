#pragma once

#include <QString>

namespace Ovra::GeoTool
{

/// \brief What to say of an element that names a node which its file does not have.
class UnknownNode
{
public:
    /// \brief \p text with Gmsh's bare remark about a node number replaced by file, line, section and
    /// what to do; as it is if it holds no such remark.
    /// \param path the file, where a text file tells the line
    static QString explained(const QString& text, const QString& path);
};

} // namespace Ovra::GeoTool
