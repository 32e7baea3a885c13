#pragma once

#include "ExitCode.h"

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
    /// \brief What is said when the copy ends without coming to the end of its work.
    struct Messages
    {
        QString onCrash; ///< how it ended is added
        QString onExit;  ///< the work called for a proper end of the process
        ExitCode exitCode = ExitCode::InputDamaged;
    };

    /// \brief Runs \p work in a copy of this process and waits for it.
    ///
    /// A ToolError that \p work throws is thrown here again, another exception as an InternalError.
    /// When the copy ends without coming to the end of \p work, throws a ToolError with one of
    /// \p messages. Nothing that \p work changes in memory reaches the caller.
    /// \param meanwhile runs in the caller once the copy has started, to take what it sends through
    ///        a pipe for instance; if it throws, the copy is killed
    static void run(const Messages& messages, const std::function<void()>& work,
                    const std::function<void()>& meanwhile = {});
};

} // namespace Ovra::GeoTool
