#pragma once

#include <EGL/egl.h>
#include <vtkGenericOpenGLRenderWindow.h>

namespace Ovra::GeoTool
{

/// \brief An OpenGL context of Mesa that needs neither display nor X server; current while it lives.
///
/// Mesa's own state stays with the process, which ends after a picture.
class OffscreenContext
{
public:
    /// \brief Throws std::runtime_error where there is no such context to be had.
    OffscreenContext();
    ~OffscreenContext();
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;

private:
    EGLDisplay display_ = EGL_NO_DISPLAY;
    EGLContext context_ = EGL_NO_CONTEXT;
};

/// \brief A window of VTK's that draws into memory, in whatever context is current.
///
/// Debian builds VTK with windows of X alone; its window for foreign contexts needs none.
class OffscreenWindow : public vtkGenericOpenGLRenderWindow
{
public:
    /// \brief As VTK makes its objects; the caller owns it.
    static OffscreenWindow* New();

protected:
    OffscreenWindow();
#ifdef OVRAGEO_VTK_HAS_GLEW
    void OpenGLInitContext() override;
#endif
};

} // namespace Ovra::GeoTool
