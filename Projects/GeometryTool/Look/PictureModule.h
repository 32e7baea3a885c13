#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

struct PictureData;

/// \brief The library that draws pictures, with VTK; it is loaded when the first one is wanted.
class PictureModule
{
public:
    /// \brief Loads it from beside this program, or from where it is installed; throws ToolError
    /// Usage where there is none.
    PictureModule();

    /// \brief The bytes of a PNG file; throws ToolError InternalError where drawing does not work.
    QByteArray draw(const PictureData& data) const;

private:
    void (*draw_)() = nullptr;
};

} // namespace Ovra::GeoTool
