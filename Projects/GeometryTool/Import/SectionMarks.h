#pragma once

#include <QByteArray>

class QFile;

namespace Ovra::GeoTool
{

/// \brief The lines of a Gmsh mesh file that begin with a dollar sign: "$Nodes" and the like.
///
/// What stands between them may be binary and is most of the file, in which every 256th byte looks
/// like the end of a line. It is searched in blocks for dollar signs alone; to read such a file line
/// by line takes as long as Gmsh takes to load it.
class SectionMarks
{
public:
    /// \param file open, at the start of a line; must outlive this object
    explicit SectionMarks(QFile& file);

    /// \brief The next of these lines, of which the first 200 bytes count, without space around it;
    /// empty if there is none.
    QByteArray next();

    /// \brief Puts the file behind the line that next() gave last.
    void goBehind();

private:
    bool readBlock();
    bool beginsLine(qsizetype position) const;

    QFile& file_;
    QByteArray block_; ///< begins with a line, or within one that is far longer than a mark
    qint64 start_ = 0; ///< of the block in the file
    qsizetype position_ = 0;
};

} // namespace Ovra::GeoTool
