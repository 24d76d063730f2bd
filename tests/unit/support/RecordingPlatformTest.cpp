// What the recording platform answers, records and checks.
#include "tests/support/RecordingPlatform.h"

#include <gtest/gtest-spi.h>

#include <thread>

#include "platform/CAppScreen.h"
#include "platform/CTaskManager.h"
#include "platform/IJSChannelCache.h"
#include "platform/IJSObjCreation.h"
#include "platform/PCSemaphore.h"
#include "tests/support/PluginTest.h"

namespace support {
namespace {

class RecordingPlatformTest : public PluginTest {
protected:
    CDAEBrowserAPI& api = *CDAEBrowserAPI::Instance();
};

struct Listener final : IBroadcastPlayerListener {
    std::atomic<unsigned> tuned = 0;
    void Suspend() override {}
    void Resume() override {}
    void ChannelChanged() override {}
    void TuneSuccess(unsigned int channelId) override { tuned += channelId; }
    void TuneFail(unsigned int) override {}
    void ServiceNotAvailable(unsigned int) override {}
    void ProgrammeChanged() override {}
    void ParentalRatingChanged(char) override {}
    void ParentalRatingBlocked(unsigned int, bool) override {}
    void ParentalRatingUnblocked(unsigned int) override {}
    void NoSignal() override {}
    void Scrambled(unsigned short) override {}
    void ScrambledTune(unsigned int) override {}
    void Unscrambled(unsigned short) override {}
    void UpdateLayout() override {}
};

TEST_F(RecordingPlatformTest, CallsOfAllInterfacesStandInOneList) {
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    EXPECT_TRUE(player->SetChannel(7, false));
    api.SetChannel(7, false);
    IJSChannelCache::Instance()->ReleaseChannel(7);
    EXPECT_EQ(IJSObjCreation::Instance()->GetKey("id"), "key");
    g_pAppScreen->SetDynamicContrast(24, 1);
    api.ReleaseBroadcastPlayer(player);
    EXPECT_EQ(Calls(),
              (std::vector<std::string>{"browser.GetBroadcastPlayer()", "player.SetChannel(7, false)",
                                        "browser.SetChannel(7, false)", "cache.ReleaseChannel(7)", "keys.GetKey(id)",
                                        "screen.SetDynamicContrast(24, 1)", "browser.ReleaseBroadcastPlayer(player)"}));
}

TEST_F(RecordingPlatformTest, OnePlayerIsHandedOutAtATime) {
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    EXPECT_EQ(api.GetBroadcastPlayer(), nullptr);
    platform.answers.players = 2;
    IBroadcastPlayer* second = api.GetBroadcastPlayer();
    ASSERT_NE(second, nullptr);
    second->Stop();
    EXPECT_EQ(Calls({"player"}), std::vector<std::string>{"player2.Stop()"});
    api.ReleaseBroadcastPlayer(second);
    api.ReleaseBroadcastPlayer(player);
}

TEST_F(RecordingPlatformTest, WrongUsesOfAPlayerAreFound) {
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    EXPECT_NONFATAL_FAILURE(platform.ExpectBalanced(), "A broadcast player was not given back.");
    api.ReleaseBroadcastPlayer(player);
    EXPECT_NONFATAL_FAILURE(player->Stop(), "player.Stop was called although the player is not handed out.");
    EXPECT_NONFATAL_FAILURE(api.ReleaseBroadcastPlayer(player), "a player that is not handed out");
}

TEST_F(RecordingPlatformTest, AnyCallCanFail) {
    platform.FailNth("browser.GetBroadcastPlayer", 1);
    EXPECT_EQ(api.GetBroadcastPlayer(), nullptr);
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    platform.FailNth("player.SetChannel", 2);
    EXPECT_TRUE(player->SetChannel(1, false));
    EXPECT_FALSE(player->SetChannel(1, false));
    platform.FailFrom("player.GetChannelFromDSD");
    unsigned channelId = 0;
    EXPECT_EQ(player->GetChannelFromDSD(12, "x", 1, channelId), 1);
    api.ReleaseBroadcastPlayer(player);
}

TEST_F(RecordingPlatformTest, LookUpsTakeHoldsThatTheCacheDrops) {
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    unsigned channelId = 0;
    EXPECT_TRUE(player->GetChannelFromTriplet(12, 1, 2, 3, channelId));
    EXPECT_EQ(channelId, 2u);
    EXPECT_EQ(platform.Holds(2), 1);
    IJSChannelCache::Instance()->ReleaseChannel(2);
    IJSChannelCache::Instance()->ReleaseChannel(2);
    EXPECT_EQ(platform.Holds(2), 0);
    platform.answers.channel.reset();
    channelId = 9;
    EXPECT_NONFATAL_FAILURE(EXPECT_FALSE(player->GetChannel(channelId)), "did not start at 0");
    EXPECT_EQ(channelId, 9u);
    api.ReleaseBroadcastPlayer(player);
}

TEST_F(RecordingPlatformTest, TheLayoutAnswersAreThoseOfATelevision) {
    TPTRect corrected{}, plane{0, 0, 1280, 720}, video{};
    api.CorrectVideoAspectRatio(static_cast<unsigned>(-64), 0, 640, 360, corrected);
    EXPECT_EQ(corrected.x, -64);
    EXPECT_TRUE(api.ConvertGraphicsToVideo(corrected, plane, video));
    EXPECT_EQ(video.x, -96);
    EXPECT_EQ(video.width, 960);
    EXPECT_EQ(video.height, 540);
}

TEST_F(RecordingPlatformTest, ApplicationsCanBeMissing) {
    EXPECT_EQ(g_pTaskManager->GetWrapperManager()->GetWrapperInstance(DTV_APPLICATION_NONE), nullptr);
    auto* wrapper = g_pTaskManager->GetWrapperManager()->GetWrapperInstance(DTV_APPLICATION_PVR);
    EXPECT_FALSE(dynamic_cast<CPvrWrapper*>(wrapper)->IsPvrOperating());
    platform.answers.hasTaskManager = false;
    platform.answers.hasAppScreen = false;
    platform.Apply();
    EXPECT_EQ(g_pTaskManager, nullptr);
    EXPECT_EQ(g_pAppScreen, nullptr);
}

TEST_F(RecordingPlatformTest, NotificationsReachTheListenerUntilThePlayerIsGivenBack) {
    Listener listener;
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    player->SetListener(&listener);
    EXPECT_TRUE(platform.Notify([](IBroadcastPlayerListener& l) { l.TuneSuccess(7); }));
    api.ReleaseBroadcastPlayer(player);
    EXPECT_FALSE(platform.Notify([](IBroadcastPlayerListener& l) { l.TuneSuccess(7); }));
    EXPECT_EQ(listener.tuned, 7u);
}

TEST_F(RecordingPlatformTest, NotificationsOnThreadsEndWithTheRelease) {
    IBroadcastPlayer* player = api.GetBroadcastPlayer();
    auto listener = std::make_unique<Listener>();
    player->SetListener(listener.get());
    std::thread thread([&] {
        while (platform.Notify([](IBroadcastPlayerListener& l) { l.TuneSuccess(1); })) {
        }
    });
    while (listener->tuned == 0) {
        std::this_thread::yield();
    }
    api.ReleaseBroadcastPlayer(player);
    listener.reset();
    thread.join();
}

CDSMCCStreamEventData* s_delivered;

TEST_F(RecordingPlatformTest, StreamEventsAreDeliveredWhileACallbackIsRegistered) {
    s_delivered = nullptr;
    IDSMCCProtocol* dsmcc = DSMCCProtocol_GetInstance();
    const DSMCCStreamEventCallback callback = [](CDSMCCStreamEventData* event) { s_delivered = event; };
    dsmcc->RegisterStreamEventCallback("test", callback);
    dsmcc->RegisterStreamEventCallback("test", callback);
    dsmcc->UnregisterStreamEventCallback();
    EXPECT_TRUE(platform.DeliverStreamEvent(5, "name", "data", 1, 3, 4));
    ASSERT_NE(s_delivered, nullptr);
    EXPECT_EQ(s_delivered->jobId, 5u);
    EXPECT_EQ(s_delivered->data, (std::vector<unsigned char>{'d', 'a', 't', 'a'}));
    delete s_delivered;
    EXPECT_NONFATAL_FAILURE(platform.ExpectBalanced(), "A registration of the stream event callback");
    dsmcc->UnregisterStreamEventCallback();
    EXPECT_FALSE(platform.DeliverStreamEvent(5, "name"));
    platform.answers.hasDsmcc = false;
    EXPECT_EQ(DSMCCProtocol_GetInstance(), nullptr);
}

TEST_F(RecordingPlatformTest, SubscriptionsGetTheJobIdsThatATestSets) {
    IDSMCCProtocol* dsmcc = DSMCCProtocol_GetInstance();
    platform.answers.jobIds = {40, 0};
    EXPECT_EQ(dsmcc->SubscribeStreamEvent("dvb:/x", "a", 0), 40u);
    EXPECT_EQ(dsmcc->SubscribeStreamEvent("dvb:/x", "b", 0), 0u);
    EXPECT_EQ(dsmcc->SubscribeStreamEvent("dvb:/x", "c", 0), 41u);
    EXPECT_EQ(platform.Subscriptions().at(41).second, "c");
    EXPECT_TRUE(dsmcc->UnsubscribeStreamEvent(40));
    EXPECT_FALSE(dsmcc->UnsubscribeStreamEvent(40));
    EXPECT_NONFATAL_FAILURE(platform.ExpectBalanced(), "The subscription 41 to \"c\" was not ended.");
    EXPECT_TRUE(dsmcc->UnsubscribeStreamEvent(41));
}

TEST_F(RecordingPlatformTest, ASemaphoreLetsAsManyThroughAsItHasUnits) {
    PCSemaphore semaphore;
    semaphore.Take();  // nothing to wait for yet
    EXPECT_TRUE(semaphore.Create(1));
    EXPECT_FALSE(semaphore.Create(1));
    EXPECT_TRUE(semaphore.IsCreated());
    semaphore.Take();
    std::thread giver([&] { semaphore.Give(); });
    semaphore.Take();
    giver.join();
    semaphore.Destroy();
    EXPECT_FALSE(semaphore.IsCreated());
}

}  // namespace
}  // namespace support
