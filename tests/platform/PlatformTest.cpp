// What every platform library keeps, whether it has a broadcast receiver or not.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "platform/CAppScreen.h"
#include "platform/CCDebug.h"
#include "platform/CDAEBrowserAPI.h"
#include "platform/CTaskManager.h"
#include "platform/IJSChannelCache.h"
#include "platform/IJSObjCreation.h"
#include "platform/PCSemaphore.h"

namespace contract {
namespace {

// The file that holds the code of an object's class.
std::string LibraryOf(const void* object) {
    Dl_info info{};
    return dladdr(*static_cast<void* const*>(object), &info) && info.dli_fname ? info.dli_fname : "";
}

TEST(Singletons, AreOneEachAndLiveInThePlatformLibrary) {
    ASSERT_NE(CDAEBrowserAPI::Instance(), nullptr);
    ASSERT_NE(IJSChannelCache::Instance(), nullptr);
    ASSERT_NE(IJSObjCreation::Instance(), nullptr);
    EXPECT_EQ(CDAEBrowserAPI::Instance(), CDAEBrowserAPI::Instance());
    EXPECT_EQ(IJSChannelCache::Instance(), IJSChannelCache::Instance());
    EXPECT_EQ(IJSObjCreation::Instance(), IJSObjCreation::Instance());
    for (const void* object : {static_cast<const void*>(CDAEBrowserAPI::Instance()),
                               static_cast<const void*>(IJSChannelCache::Instance()),
                               static_cast<const void*>(IJSObjCreation::Instance())})
        EXPECT_NE(LibraryOf(object).find("libtvplatform.so"), std::string::npos) << LibraryOf(object);
}

class BrowserIntegration : public testing::Test {
protected:
    CDAEBrowserAPI& m_browser = *CDAEBrowserAPI::Instance();
};

TEST_F(BrowserIntegration, LetsNoStrangeOriginIntoTheApplication) {
    for (const char* stranger : {"http://stranger.invalid:80", "", "https://", "no origin at all"}) {
        std::string origin = stranger;
        EXPECT_FALSE(m_browser.IsURLInAppBoundary(origin)) << stranger;
    }
}

TEST_F(BrowserIntegration, LeavesTheChannelAloneUnlessItTellsOne) {
    unsigned int channel = 4711;
    if (m_browser.CurrentChannel(channel))
        IJSChannelCache::Instance()->ReleaseChannel(channel);
    else
        EXPECT_EQ(channel, 4711u);
}

TEST_F(BrowserIntegration, CorrectsARectangleToOneInsideItAndInItsMiddle) {
    for (const TPTRect& given : {TPTRect{0, 0, 1280, 720}, TPTRect{100, 50, 400, 400}, TPTRect{-200, -100, 300, 500},
                                 TPTRect{7, 9, 641, 3}}) {
        TPTRect corrected{};
        m_browser.CorrectVideoAspectRatio(static_cast<unsigned int>(given.x), static_cast<unsigned int>(given.y),
                                          static_cast<unsigned int>(given.width),
                                          static_cast<unsigned int>(given.height), corrected);
        EXPECT_TRUE(corrected.width == given.width || corrected.height == given.height);
        EXPECT_LE(corrected.width, given.width);
        EXPECT_LE(corrected.height, given.height);
        EXPECT_NEAR(2 * corrected.x + corrected.width, 2 * given.x + given.width, 2);
        EXPECT_NEAR(2 * corrected.y + corrected.height, 2 * given.y + given.height, 2);
    }
}

TEST_F(BrowserIntegration, KnowsThePanel) {
    int width = 1920, height = 1080;
    m_browser.GetPanelResolution(width, height);
    EXPECT_GT(width, 0);
    EXPECT_GT(height, 0);
}

TEST_F(BrowserIntegration, ConvertsTheWholeGraphicsPlaneToTheWholePanel) {
    int width = 1920, height = 1080;
    m_browser.GetPanelResolution(width, height);
    TPTRect plane{0, 0, 1280, 720}, video{};
    m_browser.ConvertGraphicsToVideo({0, 0, 1280, 720}, plane, video);
    EXPECT_EQ(video.x, 0);
    EXPECT_EQ(video.y, 0);
    EXPECT_EQ(video.width, width);
    EXPECT_EQ(video.height, height);
    m_browser.ConvertGraphicsToVideo({640, 360, 320, 180}, plane, video);
    EXPECT_NEAR(video.x, width / 2, 1);
    EXPECT_NEAR(video.y, height / 2, 1);
    EXPECT_NEAR(video.width, width / 4, 1);
    EXPECT_NEAR(video.height, height / 4, 1);
}

TEST_F(BrowserIntegration, WritesTheVideoRectangleAlsoForAPlaneWithoutASize) {
    TPTRect plane{}, video{-1, -1, -1, -1};
    m_browser.ConvertGraphicsToVideo({10, 20, 30, 40}, plane, video);
    EXPECT_GE(video.width, 0);
    EXPECT_GE(video.height, 0);
}

TEST(ChannelCache, IgnoresIdsWithoutAHold) {
    for (const unsigned int id : {0u, 1u, 4711u, ~0u}) IJSChannelCache::Instance()->ReleaseChannel(id);
}

TEST(ObjectKeys, CanStandBetweenDoubleQuotesInAScript) {
    for (const char* object : {"__OIPF_VBO_1", "__OIPF_VBO_4294967295", "__OIPF_DEFAULT_"}) {
        const std::string key = IJSObjCreation::Instance()->GetKey(object);
        EXPECT_FALSE(key.empty()) << object;
        EXPECT_EQ(key.find_first_of("\"\\\n\r"), std::string::npos) << key;
    }
}

TEST(Applications, UnderTheRecordersNumberStandsARecorder) {
    CWrapperManager* manager = g_pTaskManager ? g_pTaskManager->GetWrapperManager() : nullptr;
    CWrapper* wrapper = manager ? manager->GetWrapperInstance(DTV_APPLICATION_PVR) : nullptr;
    if (!wrapper) return;
    auto* recorder = dynamic_cast<CPvrWrapper*>(wrapper);
    ASSERT_NE(recorder, nullptr);
    EXPECT_FALSE(recorder->IsPvrOperating()) << "nothing is recorded during these tests";
}

TEST(Applications, TheOneInFrontIsWritten) {
    if (!g_pTaskManager) return;
    auto application = static_cast<DTV_APPLICATION>(-4711);
    g_pTaskManager->GetActiveApplication(&application);
    EXPECT_NE(static_cast<int>(application), -4711);
}

TEST(PictureSettings, TakeTheDynamicContrast) {
    if (!g_pAppScreen) return;
    g_pAppScreen->SetDynamicContrast(24, 1);
    g_pAppScreen->SetDynamicContrast(24, 0);
}

TEST(Semaphore, IsMadeOnceAndAgainAfterItsEnd) {
    PCSemaphore semaphore;
    EXPECT_FALSE(semaphore.IsCreated());
    semaphore.Take();  // returns: there is none
    semaphore.Destroy();
    EXPECT_TRUE(semaphore.Create(1));
    EXPECT_TRUE(semaphore.IsCreated());
    EXPECT_FALSE(semaphore.Create(1));
    semaphore.Destroy();
    EXPECT_FALSE(semaphore.IsCreated());
    EXPECT_TRUE(semaphore.Create(0));
    semaphore.Destroy();
}

TEST(Semaphore, HandsOutAsManyUnitsAsItHas) {
    PCSemaphore semaphore;
    ASSERT_TRUE(semaphore.Create(2));
    semaphore.Take();
    semaphore.Take();
    auto third = std::async(std::launch::async, [&] { semaphore.Take(); });
    EXPECT_EQ(third.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    semaphore.Give();
    third.get();
    semaphore.Destroy();
}

TEST(Semaphore, IsALockForManyThreads) {
    PCSemaphore semaphore;
    ASSERT_TRUE(semaphore.Create(1));
    int counted = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            for (int k = 0; k < 1000; ++k) {
                semaphore.Take();
                ++counted;
                semaphore.Give();
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(counted, 8000);
    semaphore.Destroy();
}

// The plug-in's module, whose lines tests can print.
class Module : public CCDebugDAEPlugin {
public:
    void PrintTwice(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        t_Print(0, 0, format, &arguments);
        t_PrintR(0, 0, format, &arguments);
        m_next = va_arg(arguments, int);
        va_end(arguments);
    }
    int m_next = 0;
};

TEST(LogModule, LeavesTheArgumentsForAnotherPass) {
    Module module;
    module.PrintTwice("%d is a number and \"%s\" a text\n", 42, "%n%s");
    EXPECT_EQ(module.m_next, 42);
}

TEST(LogModule, TakesLinesOfManyThreads) {
    Module modules[4];
    std::vector<std::thread> threads;
    for (Module& module : modules)
        threads.emplace_back([&module] {
            for (int i = 0; i < 100; ++i) module.PrintTwice("%d\n", i);
        });
    for (std::thread& thread : threads) thread.join();
    for (const Module& module : modules) EXPECT_EQ(module.m_next, 99);
}

}  // namespace
}  // namespace contract
