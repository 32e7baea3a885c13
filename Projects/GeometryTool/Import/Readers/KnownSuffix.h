#pragma once

#include <QString>
#include <QTemporaryDir>

#include <optional>
#include <string>

namespace Ovra::GeoTool
{

/// \brief A name under which Gmsh reads a file and nothing else.
///
/// Gmsh knows most suffixes in one or two ways to write them; any other, "Unv" for instance, makes
/// it run the file as a script. And it runs a file beside the input whose name goes on in ".opt". So
/// every file but a script gets a second name, for the life of this object, in a directory of its
/// own among those for temporary files.
class KnownSuffix
{
public:
    /// \brief Throws ToolError OutputFailed if the second name cannot be made.
    explicit KnownSuffix(const QString& path);

    /// \brief The name, as the file system has it.
    std::string encodedPath() const;

    /// \brief What Gmsh says of a file by its second name, said of the input.
    static QString saidOfInput(const QString& message);

private:
    QString path_;
    std::optional<QTemporaryDir> directory_;
};

} // namespace Ovra::GeoTool
