#pragma once

#include <QString>

namespace Ovra::GeoTool
{

/// \brief What to say of an element that names a node which its file does not have.
class UnknownNode
{
public:
    /// \brief The words for it.
    /// \param element the element, "element 7"
    /// \param owner what its nodes belong to
    static QString text(const QString& element, qint64 node,
                        const QString& owner = QStringLiteral("the file"));

    /// \brief \p remark with Gmsh's bare words about a node number replaced by file, line, section and
    /// what to do; as it is if it holds no such words.
    /// \param path the file, where a text file tells the line
    static QString explained(const QString& remark, const QString& path);
};

} // namespace Ovra::GeoTool
