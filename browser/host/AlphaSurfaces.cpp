// Cure: plug-in surfaces with an alpha channel.
//
// Qt WebKit gives windowless plug-ins pixmaps of the depth that XDefaultDepth names, asked once in the process; on a
// desktop that is 24, and what a plug-in makes transparent comes out black. This function stands before the one of
// libX11 and answers 32 to Qt WebKit alone: anyone else who believed in 32 would fail to create windows.
#include <X11/Xlib.h>

#include "browser/host/Caller.h"

extern "C" __attribute__((visibility("default"))) int XDefaultDepth(Display* display, int screen) {
    constexpr int kDepthWithAlpha = 32;
    return browser::CalledByWebKit(__builtin_return_address(0)) ? kDepthWithAlpha : DefaultDepth(display, screen);
}
