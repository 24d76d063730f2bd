// The rest of the platform's interfaces: layout, volume, components, keys, services, log lines.
#include <cstdarg>

#include "platform/CAppScreen.h"
#include "platform/CCDebug.h"
#include "platform/CTaskManager.h"
#include "platform/IJSObjCreation.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

class PlatformTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
};

TEST_F(PlatformTest, CorrectsTheRectangleToThePicturesAspectRatio) {
    TPTRect corrected{};
    m_browser.CorrectVideoAspectRatio(100, 100, 400, 400, corrected);
    EXPECT_EQ(corrected.y, 187);
    EXPECT_EQ(corrected.width, 400);
    EXPECT_EQ(corrected.height, 225);
    m_browser.CorrectVideoAspectRatio(static_cast<unsigned>(-100), static_cast<unsigned>(-50), 640, 360, corrected);
    EXPECT_EQ(corrected.x, -100);
    EXPECT_EQ(corrected.y, -50);
}

TEST_F(PlatformTest, LeavesTheRectangleWithoutVideo) {
    m_player->Stop();
    TPTRect corrected{};
    m_browser.CorrectVideoAspectRatio(100, 100, 400, 400, corrected);
    EXPECT_EQ(corrected.height, 400);
}

TEST_F(PlatformTest, ConvertsTheGraphicsPlaneToThePanel) {
    TPTRect plane{0, 0, 1280, 720}, video{};
    EXPECT_TRUE(m_browser.ConvertGraphicsToVideo({0, 0, 1280, 720}, plane, video));
    EXPECT_EQ(video.width, 1920);
    EXPECT_EQ(video.height, 1080);
    int width = 0, height = 0;
    m_browser.GetPanelResolution(width, height);
    EXPECT_EQ(width, 1920);
    EXPECT_EQ(height, 1080);
}

TEST_F(PlatformTest, TellsThatTheLayoutChangesWithTheFirstPicture) {
    m_player->Stop();
    m_listener.Clear();
    m_player->BindToCurrentChannel();
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_listener.Count("UpdateLayout") > 0; }));
}

TEST_F(PlatformTest, KeepsTheVolumeBetweenZeroAndAHundred) {
    const auto set = [&](int wanted) {
        int volume = -1;
        m_player->SetVolume(wanted);
        m_player->GetVolume(volume);
        return volume;
    };
    EXPECT_EQ(set(30), 30);
    EXPECT_EQ(set(250), 100);
    EXPECT_EQ(set(-2147483647), 0);
}

TEST_F(PlatformTest, ListsComponentsAndThoseThatArePresented) {
    EXPECT_EQ(m_player->GetVideoComponents(false).size(), 1u);
    EXPECT_EQ(m_player->GetAudioComponents(false).size(), 2u);
    EXPECT_EQ(m_player->GetSubtitleComponents(false).size(), 2u);
    ASSERT_EQ(m_player->GetAudioComponents(true).size(), 1u);
    EXPECT_EQ(m_player->GetAudioComponents(true)[0].ParamString(),
              "1, 0, 258, 2, 'deu', false, 'MPEG1_L2', null, false, 2, false, true");
    m_player->Stop();
    EXPECT_TRUE(m_player->GetAudioComponents(true).empty());
}

TEST_F(PlatformTest, KnowsThePage) {
    std::string inside = "HTTP://page.example:80", outside = "http://page.example:8080";
    EXPECT_TRUE(m_browser.IsBroadcastRelated());
    EXPECT_TRUE(m_browser.IsURLInAppBoundary(inside));
    EXPECT_FALSE(m_browser.IsURLInAppBoundary(outside));
    m_television.PageClosed();
    EXPECT_FALSE(m_browser.IsBroadcastRelated());
    EXPECT_FALSE(m_browser.IsURLInAppBoundary(inside));
    EXPECT_NE(m_browser.GetBroadcastPlayer(), nullptr) << "the page's player was given back";
}

TEST_F(PlatformTest, GivesKeysThatHoldForThePage) {
    auto& keys = *IJSObjCreation::Instance();
    const std::string key = keys.GetKey("__OIPF_VBO_1");
    EXPECT_EQ(key.size(), 32u);
    EXPECT_EQ(key.find_first_not_of("0123456789abcdef"), key.npos);
    EXPECT_NE(keys.GetKey("__OIPF_VBO_2"), key);
    EXPECT_TRUE(m_television.IsKey(key));
    EXPECT_FALSE(m_television.IsKey(""));
    EXPECT_FALSE(m_television.IsKey("0123"));
    m_television.PageClosed();
    EXPECT_FALSE(m_television.IsKey(key));
    EXPECT_NE(keys.GetKey("__OIPF_VBO_1"), key);
}

TEST_F(PlatformTest, HasARecorderThatDoesNotRun) {
    auto* manager = g_pTaskManager->GetWrapperManager();
    auto* recorder = dynamic_cast<CPvrWrapper*>(manager->GetWrapperInstance(DTV_APPLICATION_PVR));
    ASSERT_NE(recorder, nullptr);
    EXPECT_FALSE(recorder->IsPvrOperating());
    EXPECT_EQ(manager->GetWrapperInstance(DTV_APPLICATION_NONE), nullptr);
    DTV_APPLICATION active = DTV_APPLICATION_PVR;
    g_pTaskManager->GetActiveApplication(&active);
    EXPECT_EQ(active, DTV_APPLICATION_NONE);
}

// The plug-in's way to its own module.
class Module : public CCDebugDAEPlugin {
public:
    __attribute__((format(printf, 3, 4))) void Print(unsigned long level, const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        t_Print(1, level, format, &arguments);
        va_end(arguments);
    }
};

class LogLines : public testing::Test {
protected:
    void SetUp() override {
        Configuration configuration;
        configuration.demonstration = DEMONSTRATION_STREAM;
        configuration.sound = false;
        Observer observer;
        observer.log = [this](const std::string& line) {
            std::lock_guard lock(m_mutex);
            if (!line.starts_with("Channel ")) m_lines.push_back(line);  // the television's own go the same way
        };
        ASSERT_EQ(m_television.Start(configuration, observer), std::nullopt);
        m_lines.clear();
    }
    void TearDown() override {
        m_television.SetDebugLevel(-1);
        m_television.Stop();
    }
    std::vector<std::string> Lines() {
        std::lock_guard lock(m_mutex);
        return m_lines;
    }
    Television& m_television = Television::Instance();
    Module m_module;
    std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

TEST_F(LogLines, AreNotPrintedByDefault) {
    m_module.Print(0, "error %d", 1);
    EXPECT_TRUE(Lines().empty());
}

TEST_F(LogLines, ArePrintedUpToTheLevelThatWasSet) {
    m_television.SetDebugLevel(2);
    m_module.Print(2, "%s %d %s", "warning", 2, std::string(5000, 'x').c_str());
    m_module.Print(3, "trace");
    ASSERT_EQ(Lines().size(), 1u);
    EXPECT_EQ(Lines()[0], "warning 2 " + std::string(5000, 'x'));
}

TEST_F(LogLines, OfTheCommonModuleComeInOnePiece) {
    m_television.SetDebugLevel(0);
    CCDebug::DebugIO->Print("100 %s", 6);
    EXPECT_TRUE(Lines().empty());
    CCDebug::DebugIO->Print("\n", 1);
    EXPECT_EQ(Lines(), std::vector<std::string>{"100 %s"});
}

TEST_F(LogLines, OfSeveralThreadsDoNotMix) {
    m_television.SetDebugLevel(3);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([this, i] {
            for (int k = 0; k < 200; ++k) m_module.Print(3, "thread %d", i);
        });
    for (auto& thread : threads) thread.join();
    const auto lines = Lines();
    EXPECT_EQ(lines.size(), 800u);
    for (const auto& line : lines) EXPECT_EQ(line.size(), std::string("thread 0").size());
}

}  // namespace
}  // namespace television::test
