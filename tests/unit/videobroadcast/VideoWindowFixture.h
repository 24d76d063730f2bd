// What the tests of the video window share: the browser's NPP_SetWindow.
#pragma once

#include "tests/unit/videobroadcast/ScriptedObjectTest.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace videobroadcast_tests {

class VideoWindowFixture : public ScriptedObjectTest {
protected:
    // A visual is only carried along: any two addresses will do.
    Visual* const visual = reinterpret_cast<Visual*>(&m_visuals[0]);
    Visual* const otherVisual = reinterpret_cast<Visual*>(&m_visuals[1]);

    void SetWindow(std::int32_t x, std::int32_t y, std::uint32_t width, std::uint32_t height) {
        SetWindow(x, y, width, height, visual);
    }
    void SetWindow(std::int32_t x, std::int32_t y, std::uint32_t width, std::uint32_t height, Visual* drawnWith) {
        NPSetWindowCallbackStruct information{};
        information.visual = drawnWith;
        SetWindow(x, y, width, height, &information);
    }
    void SetWindow(std::int32_t x, std::int32_t y, std::uint32_t width, std::uint32_t height,
                   NPSetWindowCallbackStruct* information) {
        NPWindow window{};
        window.x = x;
        window.y = y;
        window.width = width;
        window.height = height;
        window.ws_info = information;
        EXPECT_EQ(object->Functions().setwindow(object->Npp(), &window), NPERR_NO_ERROR);
    }
    // NPP_HandleEvent; 1 when the event was handled.
    std::int16_t SendEvent(XEvent& event) { return object->Functions().event(object->Npp(), &event); }

    // The calls of one layout, questions about applications and playback left out.
    static List LayoutCalls() {
        return Calls({"browser.Correct", "browser.Convert", "browser.GetPanel", "player.SetVideoWindow",
                      "player.SetFullScreenVideo", "screen."});
    }
    // Lets the asked-for layout happen and tells what it did.
    List LayOut() {
        ForgetWhatHappened();
        EXPECT_EQ(browser.RunAsyncCalls(), 1u);
        return LayoutCalls();
    }

private:
    char m_visuals[2] = {};
};

}  // namespace videobroadcast_tests
