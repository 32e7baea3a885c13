#include "OffscreenWindow.h"

#ifdef OVRAGEO_VTK_HAS_GLEW
#include <GL/glew.h>
#endif
#include <EGL/eglext.h>
#include <array>
#include <stdexcept>

namespace Ovra::GeoTool
{

namespace
{

EGLDisplay surfacelessDisplay()
{
    const auto getDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return getDisplay ? getDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr)
                      : EGL_NO_DISPLAY;
}

EGLConfig configOf(EGLDisplay display)
{
    constexpr std::array<EGLint, 5> wanted = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                                              EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(display, wanted.data(), &config, 1, &count);
    return count > 0 ? config : nullptr;
}

EGLContext contextOf(EGLDisplay display)
{
    constexpr std::array<EGLint, 7> wanted = {EGL_CONTEXT_MAJOR_VERSION,
                                              3,
                                              EGL_CONTEXT_MINOR_VERSION,
                                              2,
                                              EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                              EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                              EGL_NONE};
    eglBindAPI(EGL_OPENGL_API);
    return eglCreateContext(display, configOf(display), EGL_NO_CONTEXT, wanted.data());
}

} // namespace

OffscreenContext::OffscreenContext()
    : display_(surfacelessDisplay())
{
    if (display_ == EGL_NO_DISPLAY || !eglInitialize(display_, nullptr, nullptr)) {
        throw std::runtime_error("Mesa has no drawing without a display (EGL, surfaceless)");
    }
    context_ = contextOf(display_);
    if (context_ == EGL_NO_CONTEXT ||
        !eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_)) {
        eglTerminate(display_);
        throw std::runtime_error("Mesa has no context of OpenGL 3.2");
    }
}

OffscreenContext::~OffscreenContext()
{
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display_, context_);
}

OffscreenWindow* OffscreenWindow::New()
{
    auto* const window = new OffscreenWindow;
    window->InitializeObjectBase();
    return window;
}

OffscreenWindow::OffscreenWindow()
{
    SetReadyForRendering(true);
    SetIsCurrent(true);
#ifndef OVRAGEO_VTK_HAS_GLEW
    SetOpenGLSymbolLoader([](void*, const char* name) { return eglGetProcAddress(name); }, nullptr);
#endif
}

#ifdef OVRAGEO_VTK_HAS_GLEW
// VTK's own takes a missing X server for a failure, when all functions of OpenGL have been found.
void OffscreenWindow::OpenGLInitContext()
{
    if (!Initialized) {
        const GLenum result = glewInit();
        GlewInitValid = result == GLEW_OK || result == GLEW_ERROR_NO_GLX_DISPLAY;
        Initialized = true;
    }
}
#endif

} // namespace Ovra::GeoTool
