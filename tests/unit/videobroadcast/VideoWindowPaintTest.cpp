// The hole in the graphics plane. cairo's seven functions are replaced in this program by recording ones, so that no
// display is needed.
#include "tests/unit/videobroadcast/VideoWindowFixture.h"

#include <cairo/cairo-xlib.h>

#include "tests/support/Text.h"
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace {

using support::CallList;
using support::Text;

int s_surface, s_context;
Display* s_display = nullptr;
Visual* s_visual = nullptr;

void Record(const std::string& call) {
    CallList::Instance().Add("cairo." + call);
}

std::string OnContext(cairo_t* context) {
    return context == reinterpret_cast<cairo_t*>(&s_context) ? "context" : "another context";
}

std::string OnSurface(cairo_surface_t* surface) {
    return surface == reinterpret_cast<cairo_surface_t*>(&s_surface) ? "surface" : "another surface";
}

}  // namespace

cairo_surface_t* cairo_xlib_surface_create(Display* display, Drawable drawable, Visual* visual, int width,
                                           int height) {
    s_display = display;
    s_visual = visual;
    Record("surface(" + Text(drawable, width, height) + ")");
    return reinterpret_cast<cairo_surface_t*>(&s_surface);
}

cairo_t* cairo_create(cairo_surface_t* surface) {
    Record("create(" + OnSurface(surface) + ")");
    return reinterpret_cast<cairo_t*>(&s_context);
}

void cairo_set_source_rgba(cairo_t* context, double red, double green, double blue, double alpha) {
    Record("source(" + Text(OnContext(context), static_cast<int>(red * 255), static_cast<int>(green * 255),
                            static_cast<int>(blue * 255), static_cast<int>(alpha * 255)) + ")");
}

void cairo_set_operator(cairo_t* context, cairo_operator_t op) {
    Record("operator(" + Text(OnContext(context), op == CAIRO_OPERATOR_SOURCE ? "SOURCE" : "another") + ")");
}

void cairo_paint(cairo_t* context) {
    Record("paint(" + OnContext(context) + ")");
}

void cairo_destroy(cairo_t* context) {
    Record("destroy(" + OnContext(context) + ")");
}

void cairo_surface_destroy(cairo_surface_t* surface) {
    Record("destroy(" + OnSurface(surface) + ")");
}

namespace videobroadcast_tests {
namespace {

class VideoWindowPaint : public VideoWindowFixture {
protected:
    VideoWindowPaint() {
        s_display = nullptr;
        s_visual = nullptr;
        event.type = GraphicsExpose;
        event.xgraphicsexpose.display = display;
        event.xgraphicsexpose.drawable = 77;
        event.xgraphicsexpose.x = 5;
        event.xgraphicsexpose.y = 6;
        event.xgraphicsexpose.width = 640;
        event.xgraphicsexpose.height = 360;
        event.xgraphicsexpose.count = 3;
    }
    // The window is known, and what came of that is over.
    void Show() {
        SetWindow(10, 20, 640, 360);
        browser.RunAsyncCalls();
        ForgetWhatHappened();
    }
    void ExpectUnhandled() {
        EXPECT_EQ(SendEvent(event), 0);
        EXPECT_TRUE(Calls({"cairo."}).empty());
    }

    int m_anything = 0;
    Display* const display = reinterpret_cast<Display*>(&m_anything);
    XEvent event{};
};

TEST_F(VideoWindowPaint, AnExposeReplacesTheWholeSurfaceByTransparentPixels) {
    Show();
    EXPECT_EQ(SendEvent(event), 1);
    EXPECT_EQ(Calls(), (List{"cairo.surface(77, 640, 360)", "cairo.create(surface)",
                             "cairo.source(context, 255, 255, 255, 0)", "cairo.operator(context, SOURCE)",
                             "cairo.paint(context)", "cairo.destroy(context)", "cairo.destroy(surface)"}));
    EXPECT_EQ(s_display, display);
    EXPECT_EQ(s_visual, visual);
}

TEST_F(VideoWindowPaint, TheSizeIsTheEventsNotTheObjects) {
    Show();
    event.xgraphicsexpose.width = 3;
    event.xgraphicsexpose.height = 4;
    event.xgraphicsexpose.drawable = 78;
    SendEvent(event);
    EXPECT_EQ(Calls().front(), "cairo.surface(78, 3, 4)");
}

TEST_F(VideoWindowPaint, EveryExposeIsPainted) {
    Show();
    EXPECT_EQ(SendEvent(event), 1);
    EXPECT_EQ(SendEvent(event), 1);
    EXPECT_EQ(Calls({"cairo.paint"}).size(), 2u);
    EXPECT_EQ(Calls({"cairo.destroy"}).size(), 4u);
}

TEST_F(VideoWindowPaint, NoOtherEventIsHandled) {
    Show();
    for (int type = 0; type < LASTEvent; ++type) {
        event.type = type;
        if (type != 13) {
            ExpectUnhandled();
        }
    }
}

TEST_F(VideoWindowPaint, BeforeTheFirstWindowNothingIsHandled) {
    ExpectUnhandled();
}

TEST_F(VideoWindowPaint, AWindowWithoutAVisualIsNotPainted) {
    SetWindow(10, 20, 640, 360, static_cast<Visual*>(nullptr));
    ExpectUnhandled();
}

TEST_F(VideoWindowPaint, AWindowWithoutPlatformInformationIsNotPainted) {
    SetWindow(10, 20, 640, 360, static_cast<NPSetWindowCallbackStruct*>(nullptr));
    ExpectUnhandled();
}

TEST_F(VideoWindowPaint, ANullEventIsNotHandled) {
    Show();
    EXPECT_EQ(object->Functions().event(object->Npp(), nullptr), 0);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(VideoWindowPaint, TheVisualOfAnUnchangedRectangleIsNotTaken) {
    Show();
    SetWindow(10, 20, 640, 360, otherVisual);
    SendEvent(event);
    EXPECT_EQ(s_visual, visual);
}

TEST_F(VideoWindowPaint, TheVisualOfAnotherRectangleIsTaken) {
    Show();
    SetWindow(10, 20, 640, 361, otherVisual);
    SendEvent(event);
    EXPECT_EQ(s_visual, otherVisual);
}

TEST_F(VideoWindowPaint, RectangleAndVisualAreStoredBeforeTheLayoutIsAskedFor) {
    static std::function<void()> asked;
    browser.Functions()->pluginthreadasynccall = [](NPP, void (*)(void*), void*) { asked(); };
    videobroadcast::Probed probed(browser);
    bool painted = false;
    asked = [&] {
        EXPECT_EQ(probed.Read("width").value, Value(640));
        EXPECT_EQ(probed.Read("height").value, Value(360));
        painted = probed->HandleEvent(&event) == 1;
    };
    NPSetWindowCallbackStruct information{};
    information.visual = visual;
    NPWindow window{};
    window.width = 640;
    window.height = 360;
    window.ws_info = &information;
    probed->SetWindow(&window);
    EXPECT_TRUE(painted);
    EXPECT_EQ(s_visual, visual);
}

TEST_F(VideoWindowPaint, AnInvalidatedObjectStillPaints) {
    Show();
    object->Invalidate();
    ClearCalls();
    EXPECT_EQ(SendEvent(event), 1);
    EXPECT_EQ(Calls().size(), 7u);
}

TEST_F(VideoWindowPaint, PaintingAsksNobodyWhoThePageIsOrWhetherAChannelIsPresented) {
    platform.answers.broadcastRelated = false;
    Show();
    EXPECT_EQ(SendEvent(event), 1);
    EXPECT_TRUE(Calls({"browser.", "player", "tasks."}).empty());
}

}  // namespace
}  // namespace videobroadcast_tests
