#pragma once

#include <QLibrary>
#include <QString>

namespace Ovra::GeoTool
{

/// \brief A part of the host that is loaded when it is wanted, since what it is linked to takes longer
/// to load than most commands run.
class HostModule
{
public:
    /// \brief Loads it from beside this program, or from where it is installed.
    ///
    /// Throws ToolError Usage where there is none, or it cannot be loaded.
    /// \param fileName "ovrageo-picture.so"
    /// \param purpose  "draws pictures"
    HostModule(const QString& fileName, const QString& purpose);

    /// \brief A function of the module; throws ToolError Usage if it has none of that name.
    QFunctionPointer resolve(const char* name);

private:
    QLibrary library_;
};

} // namespace Ovra::GeoTool
