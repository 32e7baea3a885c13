#pragma once

#include "SecondName.h"

#include <QString>

#include <optional>
#include <string>

namespace Ovra::GeoTool
{

/// \brief A name under which Gmsh reads a file and nothing else.
///
/// A file whose suffix Gmsh does not know in the way it is written, "Unv" for instance, would be run
/// as a script, and so would one beside the input whose name goes on in ".opt". So every file but a
/// script gets a second name, for the life of this object.
class KnownSuffix
{
public:
    /// \brief Throws ToolError OutputFailed if the second name cannot be made.
    explicit KnownSuffix(const QString& path);

    /// \brief The name, as the file system has it.
    std::string encodedPath() const;

private:
    QString path_;
    std::optional<SecondName> second_;
};

} // namespace Ovra::GeoTool
