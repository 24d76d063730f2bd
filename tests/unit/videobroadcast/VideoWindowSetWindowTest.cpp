// NPP_SetWindow: where the object is.
#include "tests/unit/videobroadcast/VideoWindowFixture.h"

namespace videobroadcast_tests {
namespace {

class VideoWindowSetWindow : public VideoWindowFixture {};

TEST_F(VideoWindowSetWindow, ARectangleIsStoredAndItsLayoutAskedForBeforeTheRedraw) {
    SetWindow(10, 20, 640, 360);
    EXPECT_EQ(browser.Async().Pending(), 1u);
    EXPECT_EQ(Calls(), List{"forceredraw"});
    ExpectLogInOrder({"COipfVideoBroadcast::OnEvent(1009)", "Force redraw..."});
    ExpectLogged(3, "Force redraw...");
    browser.RunAsyncCalls();
    ExpectLogged(3, "COipfVideoBroadcast::updateLayout called x: 10, y: 20, width: 640, height: 360");
    EXPECT_EQ(Get("width").value, Value(640));
    EXPECT_EQ(Get("height").value, Value(360));
}

TEST_F(VideoWindowSetWindow, TheLayoutIsNotAppliedBeforeTheCallReturns) {
    Bring(kPresenting);
    SetWindow(10, 20, 640, 360);
    EXPECT_TRUE(LayoutCalls().empty());
    EXPECT_TRUE(LogOf("COipfVideoBroadcast::updateLayout").empty());
    EXPECT_FALSE(LayOut().empty());
}

TEST_F(VideoWindowSetWindow, TheSameRectangleAgainAsksForNothing) {
    SetWindow(10, 20, 640, 360);
    browser.RunAsyncCalls();
    ForgetWhatHappened();
    SetWindow(10, 20, 640, 360, otherVisual);
    EXPECT_EQ(browser.Async().Pending(), 0u);
    EXPECT_TRUE(Calls().empty());
    EXPECT_TRUE(Log::Instance().Lines().empty());
}

TEST_F(VideoWindowSetWindow, TheFirstRectangleCountsAsTheSameWhenItIsAllZeros) {
    SetWindow(0, 0, 0, 0);
    EXPECT_EQ(browser.Async().Pending(), 0u);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(VideoWindowSetWindow, AnyOneOfTheFourNumbersMakesAnotherRectangle) {
    SetWindow(10, 20, 640, 360);
    const std::int32_t changes[][4] = {{11, 20, 640, 360}, {11, 21, 640, 360}, {11, 21, 641, 360}, {11, 21, 641, 361}};
    for (const auto& [x, y, width, height] : changes) {
        browser.RunAsyncCalls();
        ForgetWhatHappened();
        SetWindow(x, y, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
        EXPECT_EQ(Calls(), List{"forceredraw"});
        EXPECT_EQ(browser.Async().Pending(), 1u);
    }
    browser.RunAsyncCalls();
    ExpectLoggedOnce("COipfVideoBroadcast::updateLayout called x: 11, y: 21, width: 641, height: 361");
}

TEST_F(VideoWindowSetWindow, ARectanglePartlyOffThePlaneKeepsItsSigns) {
    SetWindow(-10, -20, 640, 360);
    browser.RunAsyncCalls();
    ExpectLoggedOnce("COipfVideoBroadcast::updateLayout called x: -10, y: -20, width: 640, height: 360");
}

TEST_F(VideoWindowSetWindow, ASizeAboveTheSignedRangeKeepsItsBitsAndComparesEqualToItself) {
    SetWindow(10, 20, 4294967295u, 2147483648u);
    EXPECT_EQ(Get("width").value, Value(-1));
    EXPECT_EQ(Get("height").value, Value(-2147483647 - 1));
    ForgetWhatHappened();
    SetWindow(10, 20, 4294967295u, 2147483648u);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(VideoWindowSetWindow, ASizeThatScriptSetMakesTheBrowsersRectangleAnotherOne) {
    SetWindow(10, 20, 640, 360);
    Set("width", 320);
    browser.RunAsyncCalls();
    ForgetWhatHappened();
    SetWindow(10, 20, 640, 360);
    EXPECT_EQ(Calls(), List{"forceredraw"});
    EXPECT_EQ(Get("width").value, Value(640));
    Set("height", 180);
    ForgetWhatHappened();
    SetWindow(10, 20, 640, 180);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(VideoWindowSetWindow, ABrowserWithoutForceRedrawIsNotAskedForOne) {
    browser.LeaveOutOptionalFunctions();
    MakeObject();
    SetWindow(10, 20, 640, 360);
    EXPECT_TRUE(Calls().empty());
    ExpectNotLogged("Force redraw...");
    EXPECT_EQ(browser.Async().Pending(), 1u);
}

TEST_F(VideoWindowSetWindow, ANullWindowChangesNothing) {
    SetWindow(10, 20, 640, 360);
    browser.RunAsyncCalls();
    ForgetWhatHappened();
    EXPECT_EQ(object->Functions().setwindow(object->Npp(), nullptr), NPERR_NO_ERROR);
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(browser.Async().Pending(), 0u);
    EXPECT_EQ(Get("width").value, Value(640));
}

TEST_F(VideoWindowSetWindow, ARectangleWithoutPlatformInformationIsNotStoredSoThatTheNextOneIsNew) {
    SetWindow(10, 20, 640, 360, static_cast<NPSetWindowCallbackStruct*>(nullptr));
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(browser.Async().Pending(), 0u);
    EXPECT_EQ(Get("width").value, Value(0));
    SetWindow(10, 20, 640, 360);
    EXPECT_EQ(Calls(), List{"forceredraw"});
    EXPECT_EQ(Get("width").value, Value(640));
}

TEST_F(VideoWindowSetWindow, TheSameRectangleWithoutPlatformInformationChangesNothing) {
    SetWindow(10, 20, 640, 360);
    browser.RunAsyncCalls();
    ForgetWhatHappened();
    SetWindow(10, 20, 640, 360, static_cast<NPSetWindowCallbackStruct*>(nullptr));
    EXPECT_TRUE(Calls().empty());
    EXPECT_TRUE(Log::Instance().Lines().empty());
}

TEST_F(VideoWindowSetWindow, AnInvalidatedObjectOnlyLogs) {
    object->Invalidate();
    ForgetWhatHappened();
    SetWindow(10, 20, 640, 360);
    EXPECT_EQ(Log::Instance().Lines(), (std::vector<LogLine>{{1, 2, "SetWindow m_npp is NULL!"}}));
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(Get("width").value, Value(0));
}

TEST_F(VideoWindowSetWindow, AnyFailingCallIsSurvived) {
    const auto member = [&] {
        SetWindow(10, 20, 640, 360);
        browser.RunAsyncCalls();
        return Get("width");
    };
    SurvivesFailingBrowser([&] { Call("bindToCurrentChannel"); }, member);
    SurvivesFailingPlatform([&] { Call("bindToCurrentChannel"); }, member);
}

TEST_F(VideoWindowSetWindow, ALayoutRequestThatTheBrowserLosesDoesNotKeepTheRedrawBack) {
    browser.FailNth("pluginthreadasynccall", 1);
    SetWindow(10, 20, 640, 360);
    EXPECT_EQ(Calls(), List{"forceredraw"});
    EXPECT_EQ(Get("width").value, Value(640));
}

}  // namespace
}  // namespace videobroadcast_tests
