#pragma once

#include "ModuleLoading.h"

#include <QLibrary>
#include <QString>

namespace Ovra::GeoTool
{

/// \brief A part of the host that is loaded when it is wanted, since what it is linked to takes longer
/// to load than most commands run.
class HostModule
{
public:
    /// \brief Finds it beside this program, or where it is installed; it is loaded when the first of
    /// its functions is asked for.
    ///
    /// Throws ToolError Usage where there is none.
    /// \param fileName "ovrageo-picture.so"
    /// \param purpose  "draws pictures"
    /// \param option   of the build, by which there is one, "OVRA_WITH_VTK"
    HostModule(const QString& fileName, const QString& purpose, const QString& option);

    /// \brief Begins to load it, beside whatever is done meanwhile.
    ModuleLoading load();

    /// \brief A function of the module, which stays loaded to the end of the program; throws
    /// ToolError Usage if it has none of that name.
    template <typename Signature>
    Signature* function(const char* name)
    {
        return reinterpret_cast<Signature*>(resolve(name));
    }

private:
    QFunctionPointer resolve(const char* name);

    QLibrary library_;
    std::shared_future<void> loading_; ///< invalid while load() has not been called
};

} // namespace Ovra::GeoTool
