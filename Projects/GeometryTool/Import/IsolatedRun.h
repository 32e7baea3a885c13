#pragma once

#include <QString>

#include <functional>

namespace Ovra::GeoTool
{

/// \brief Runs work that may bring the process down in a process of its own.
///
/// A geometry kernel that is fed a damaged file may crash, and a Gmsh script may call for exit; the
/// tool itself lives on and says so.
class IsolatedRun
{
public:
    /// \brief Runs \p work in a copy of this process and waits for it.
    ///
    /// A ToolError that \p work throws is thrown here again, another exception as an InternalError.
    /// When the copy ends without coming to the end of \p work, throws ToolError InputDamaged: with
    /// \p onExit if \p work called for a proper end of the process, otherwise with \p onCrash and
    /// how it ended. Nothing that \p work changes in memory reaches the caller.
    static void run(const QString& onCrash, const QString& onExit,
                    const std::function<void()>& work);
};

} // namespace Ovra::GeoTool
