// Where the video appears: the object's rectangle, full screen, the hole, and the volume.
#include <cairo/cairo-xlib.h>

#include "debug/Log.h"
#include "javascript/Variants.h"
#include "platform/CAppScreen.h"
#include "platform/CDAEBrowserAPI.h"
#include "platform/CTaskManager.h"
#include "platform/IBroadcastPlayer.h"
#include "videobroadcast/CEventArguments.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

constexpr TPTRect kGraphicsPlane{0, 0, 1280, 720};
constexpr int kDynamicContrast = 24;

// Replaces everything by transparent pixels: the video plane lies behind.
void PaintHole(const XGraphicsExposeEvent& event, Visual* visual) {
    cairo_surface_t* surface =
        cairo_xlib_surface_create(event.display, event.drawable, visual, event.width, event.height);
    cairo_t* context = cairo_create(surface);
    cairo_set_source_rgba(context, 1.0, 1.0, 1.0, 0.0);
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    cairo_paint(context);
    cairo_destroy(context);
    cairo_surface_destroy(surface);
}

}  // namespace

void COipfVideoBroadcast::SetWindow(NPWindow* window) {
    if (!m_npp) {
        LOG_WARNING("%s m_npp is NULL!", "SetWindow");
        return;
    }
    if (!window) return;
    const auto width = static_cast<std::int32_t>(window->width);
    const auto height = static_cast<std::int32_t>(window->height);
    if (window->x == m_x && window->y == m_y && width == m_width && height == m_height) return;
    // A rectangle without the window's information is not taken: the next complete call must not count as "the same".
    if (!window->ws_info) return;
    m_x = window->x;
    m_y = window->y;
    m_width = width;
    m_height = height;
    m_visual = static_cast<NPSetWindowCallbackStruct*>(window->ws_info)->visual;
    UpdateLayout();
    if (!m_pNPNFuncs->forceredraw) return;
    LOG_TRACE("Force redraw...");
    m_pNPNFuncs->forceredraw(m_npp);
}

std::int16_t COipfVideoBroadcast::HandleEvent(void* event) {
    const auto* xEvent = static_cast<const XEvent*>(event);
    if (!xEvent || xEvent->type != GraphicsExpose || !m_visual) return 0;
    PaintHole(xEvent->xgraphicsexpose, m_visual);
    return 1;
}

void COipfVideoBroadcast::m_UpdateLayout() {
    DTV_APPLICATION active = DTV_APPLICATION_NONE;
    if (g_pTaskManager) g_pTaskManager->GetActiveApplication(&active);
    LOG_TRACE("COipfVideoBroadcast::updateLayout called x: %i, y: %i, width: %i, height: %i", m_x, m_y, m_width,
              m_height);
    if (t_IsMediaPlaybackMode()) {
        LOG_TRACE("COipfVideoBroadcast::m_UpdateLayout skipped - channel is suspended");
        return;
    }
    if (!m_bcPlayer || m_playState != E_STATE_PRESENTING) {
        LOG_TRACE("COipfVideoBroadcast::updateLayout() - failed, m_bcPlayer:%p, m_playState:%d",
                  static_cast<void*>(m_bcPlayer), m_playState);
        return;
    }
    if (m_fullScreen) {
        LOG_TRACE("COipfVideoBroadcast::m_Fullscreen - App isnt EPG and HOMEPANEL");
        m_bcPlayer->SetFullScreenVideo();
        return;
    }
    t_PlaceVideo();
}

void COipfVideoBroadcast::t_PlaceVideo() {
    CDAEBrowserAPI* api = CDAEBrowserAPI::Instance();
    if (!api) return;
    TPTRect corrected{};
    api->CorrectVideoAspectRatio(static_cast<unsigned int>(m_x), static_cast<unsigned int>(m_y),
                                 static_cast<unsigned int>(m_width), static_cast<unsigned int>(m_height), corrected);
    LOG_TRACE("updateLayout corrected for aspect ratio x: %i, y: %i, width: %i, height: %i", corrected.x, corrected.y,
              corrected.width, corrected.height);
    TPTRect plane = kGraphicsPlane;
    TPTRect video{};
    if (api->ConvertGraphicsToVideo(corrected, plane, video)) LOG_TRACE("ConvertGraphicsToVideo returns true");
    m_bcPlayer->SetVideoWindow(video);
    int panelWidth = 1920;
    int panelHeight = 1080;
    api->GetPanelResolution(panelWidth, panelHeight);
    t_SetDynamicContrast(video.y == 0 && video.height >= panelHeight ? 0 : 1);
}

// 0 for video of the panel's full height, 1 for any other. The numbers in the lines are part of their text.
void COipfVideoBroadcast::t_SetDynamicContrast(int value) {
    LOG_TRACE("Dynamic Contrast ++++ %s(%d)", "void OipfVideoBroadcast::COipfVideoBroadcast::m_UpdateLayout()",
              value == 0 ? 3146 : 3151);
    if (g_pAppScreen) g_pAppScreen->SetDynamicContrast(kDynamicContrast, value);
}

bool COipfVideoBroadcast::m_GetWidth(NPVariant* result) {
    LOG_TRACE("COipfVideoBroadcast::m_GetWidth()");
    *result = Int32Variant(m_width);
    return true;
}

bool COipfVideoBroadcast::m_GetHeight(NPVariant* result) {
    LOG_TRACE("COipfVideoBroadcast::m_GetHeight()");
    *result = Int32Variant(m_height);
    return true;
}

bool COipfVideoBroadcast::m_SetWidth(const NPVariant* value) {
    return t_SetSize(*value, m_width, "COipfVideoBroadcast::m_SetWidth()",
                     " COipfVideoBroadcast:: width is readonly in fullscreen mode",
                     "width is readonly in fullscreen mode");
}

bool COipfVideoBroadcast::m_SetHeight(const NPVariant* value) {
    return t_SetSize(*value, m_height, "COipfVideoBroadcast::m_SetHeight()",
                     " COipfVideoBroadcast height is readonly in fullscreen mode",
                     "height is readonly in fullscreen mode");
}

bool COipfVideoBroadcast::t_SetSize(const NPVariant& value, std::int32_t& size, const char* logName,
                                    const char* readOnlyLog, const char* readOnlyException) {
    LOG_TRACE("%s", logName);
    if (m_fullScreen) {
        LOG_WARNING("%s", readOnlyLog);
        t_SetException(readOnlyException);
        return true;
    }
    unsigned int converted = 0;
    if (!t_NPVariantToInt(value, converted)) {
        LOG_WARNING("%s - not a number!", logName);
        return false;
    }
    size = static_cast<std::int32_t>(converted);
    UpdateLayout();
    return true;
}

bool COipfVideoBroadcast::m_GetFullScreen(NPVariant* result) {
    LOG_TRACE("COipfVideoBroadcast::m_GetFullScreen()");
    *result = BoolVariant(m_fullScreen);
    return true;
}

bool COipfVideoBroadcast::m_GetPlayState(NPVariant* result) {
    LOG_TRACE("COipfVideoBroadcast::m_GetPlayState()");
    *result = Int32Variant(m_playState);
    return true;
}

bool COipfVideoBroadcast::m_SetFullScreen(const NPVariant* args, std::uint32_t argCount, NPVariant* result) {
    LOG_TRACE("m_SetFullScreen()");
    *result = VoidVariant();
    if (argCount != 1) {
        LOG_WARNING("setFullScreen(), wrong number of arguments");
        t_SetException("setFullScreen() - wrong number of arguments");
        return true;
    }
    if (args[0].type != NPVariantType_Bool) {
        LOG_WARNING("setFullScreen(), argument is not a boolean");
        t_SetException("setFullScreen() - argument is not a boolean");
        return true;
    }
    if (args[0].value.boolValue == m_fullScreen) {
        LOG_TRACE("setFullScreen() already set to the same value.");
        return true;
    }
    if (!t_IsBroadcastRelated()) {
        LOG_WARNING("m_SetFullScreen - not broadcast related ");
        return true;
    }
    m_fullScreen = !m_fullScreen;
    CEventArguments none(m_pNPNFuncs);
    m_OnEvent(E_PROP_FULL_SCREEN_CHANGE, none.List());
    UpdateLayout();
    return true;
}

bool COipfVideoBroadcast::m_GetVolume(const NPVariant*, std::uint32_t, NPVariant* result) {
    LOG_TRACE("m_GetVolume()");
    if (t_RefuseUnlessBroadcastRelated("GetVolume() - not broadcast related ") || !m_bcPlayer) return true;
    int volume = 0;
    m_bcPlayer->GetVolume(volume);
    LOG_TRACE("COipfVideoBroadcast::getVolume called %d", volume);
    *result = Int32Variant(volume);
    return true;
}

bool COipfVideoBroadcast::m_SetVolume(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    LOG_TRACE("m_SetVolume()");
    if (t_RefuseUnlessBroadcastRelated("setVolume - not broadcast related ")) return true;
    if (argCount != 1) {
        LOG_WARNING("setVolume(), wrong number of arguments");
        t_SetException("setVolume() - wrong number of arguments");
        return true;
    }
    int volume = 0;
    if (!t_NPVariantToInt(args[0], volume)) {
        LOG_WARNING("setVolume(), argument is not an integer");
        t_SetException("setFullScreen() - argument is not an integer");  // sic: pages know it with this name
        return true;
    }
    if (!m_bcPlayer) return true;
    m_bcPlayer->SetVolume(volume);
    LOG_TRACE("COipfVideoBroadcast::setVolume called %d", volume);
    return true;
}

}  // namespace OipfVideoBroadcast
