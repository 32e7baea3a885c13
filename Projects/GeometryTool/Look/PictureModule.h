#pragma once

#include "HostModule.h"

#include <QByteArray>

namespace Ovra::GeoTool
{

struct PictureData;

/// \brief The library that draws pictures, with VTK; it is loaded beside what is done before the
/// first one is wanted.
class PictureModule
{
public:
    /// \brief Begins to load it from beside this program, or from where it is installed; throws ToolError
    /// Usage where there is none.
    PictureModule();

    /// \brief The bytes of a PNG file; throws ToolError InternalError where drawing does not work, and
    /// Usage where the library cannot be loaded.
    QByteArray draw(const PictureData& data);

private:
    HostModule module_;
    ModuleLoading loading_;
};

} // namespace Ovra::GeoTool
