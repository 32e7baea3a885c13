#pragma once

#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

/// \brief Finds out, before Gmsh reads a file, what Gmsh would pass over without a word.
///
/// Several of Gmsh's readers take what they can get of a file that was cut off, or make an empty
/// model of one that is missing or of another kind. What shows that a file is whole is told by its
/// suffix; the check of a format stands in a class of its own:
///
/// | Suffix | Whole when |
/// |---|---|
/// | msh | every section "$Name" is closed by "$EndName" |
/// | step, stp | it begins with "ISO-10303-21" and ends with "END-ISO-10303-21" |
/// | iges, igs | the first line is of section S, the last of section T |
/// | unv | the delimiters "    -1" come in pairs |
/// | stl | text: "endsolid" at the end; binary: the size that the count of triangles calls for |
/// | vtk | there are as many types of cells as announced |
/// | inp | the last line is ended |
///
/// Of others their readers judge, see BrepReader, MeditReader and NastranReader for instance.
class InputFileCheck
{
public:
    /// \brief Throws ToolError: InputMissing for a file that is missing or unreadable, Usage for one
    /// of a case, InputDamaged for one that is empty, cut off, of a kind that Gmsh is known to
    /// misread, or of an unknown suffix, which Gmsh would run as a script.
    static void check(const QString& path);

    /// \brief The suffix of \p path in lower case, "msh" for instance.
    static QString suffix(const QString& path);

    /// \brief All suffixes that can be imported, sorted; of some nothing is checked here.
    static QStringList knownSuffixes();

    /// \brief Whether \p path is a Gmsh script by its suffix; no other file may run anything.
    static bool isScript(const QString& path);
};

} // namespace Ovra::GeoTool
