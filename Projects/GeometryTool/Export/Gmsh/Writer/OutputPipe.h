#pragma once

#include "Descriptor.h"

#include <QString>

class QFile;

namespace Ovra::GeoTool
{

/// \brief A pipe through which another process writes a file by a name.
///
/// Gmsh does not look whether what it writes gets onto the disk; a pipe takes all.
class OutputPipe
{
public:
    /// \brief Throws ToolError InternalError if there is none to be had.
    OutputPipe();

    /// \brief The name by which this process, or a copy of it, opens the end to write to.
    QString path() const;

    /// \brief Puts all that comes into \p file, until no other process has the end to write to; this
    /// one gives it up. Throws ToolError if the pipe breaks; what the file does not take is the
    /// file's to tell.
    void drainInto(QFile& file);

private:
    Descriptor reading_;
    Descriptor writing_;
};

} // namespace Ovra::GeoTool
