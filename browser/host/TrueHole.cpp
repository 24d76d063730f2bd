// Cure: a plug-in's transparent pixels are a hole in everything below the object.
//
// Qt WebKit reads a plug-in's surface with XGetImage and blends it over the page with the QPainter::drawImage that
// follows, so a page with a background would cover the video. On a television the object replaces what lies below it.
// Both functions stand before the libraries' own: the first notes that a surface was read, the second then draws that
// one image with the Source operator.
#include <dlfcn.h>

#include <QImage>
#include <QPainter>
#include <utility>

#include "browser/host/Caller.h"

// Last: its macros take words that Qt uses.
#include <X11/Xutil.h>

namespace {

thread_local bool s_surfaceWasRead = false;

template <class Function>
Function NextDefinition(const char* symbol) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) XImage* XGetImage(Display* display, Drawable drawable, int x, int y,
                                                                    unsigned int width, unsigned int height,
                                                                    unsigned long planes, int format) {
    static const auto next = NextDefinition<decltype(&XGetImage)>("XGetImage");
    s_surfaceWasRead = browser::CalledByWebKit(__builtin_return_address(0));
    return next(display, drawable, x, y, width, height, planes, format);
}

__attribute__((visibility("default"))) void QPainter::drawImage(const QPointF& position, const QImage& image) {
    using DrawImage = void (*)(QPainter*, const QPointF&, const QImage&);
    static const auto next = NextDefinition<DrawImage>("_ZN8QPainter9drawImageERK7QPointFRK6QImage");
    const bool isSurface = std::exchange(s_surfaceWasRead, false);
    if (!isSurface || image.format() != QImage::Format_ARGB32_Premultiplied) {
        return next(this, position, image);
    }
    const CompositionMode mode = compositionMode();
    setCompositionMode(CompositionMode_Source);
    next(this, position, image);
    setCompositionMode(mode);
}
