#pragma once

#include <QString>
#include <QTemporaryDir>

#include <optional>
#include <string>

namespace Ovra::GeoTool
{

/// \brief A name under which Gmsh knows the format of a file.
///
/// Gmsh knows most suffixes in one or two ways to write them; any other, "Unv" for instance, makes
/// it run the file as a script. Such a file gets a second name, for the life of this object, in the
/// directory for temporary files.
class KnownSuffix
{
public:
    /// \brief Throws ToolError OutputFailed if a second name is needed and cannot be made.
    explicit KnownSuffix(const QString& path);

    /// \brief The name, as the file system has it.
    std::string encodedPath() const;

private:
    QString path_;
    std::optional<QTemporaryDir> directory_;
};

} // namespace Ovra::GeoTool
