// The platform of the unit tests: answers what a test tells it and writes every call into the list of calls.
//
// Entries: "browser.SetChannel(7, false)", "player.SetChannel(7, false)" ("player2." for a second player),
// "cache.ReleaseChannel(7)", "keys.GetKey(__OIPF_DEFAULT_)", "dsmcc.SubscribeStreamEvent(dvb:/x, name, 0)",
// "tasks.GetActiveApplication()", "tasks.GetWrapperInstance(59)", "pvr.IsPvrOperating()",
// "screen.SetDynamicContrast(24, 0)", "debug.AddModule(CommonDebug, 1)". The same names without the arguments are what
// FailNth takes: a call that fails answers as its operation says (false, null, 0; GetChannelFromDSD: 1).
//
// Wrong uses are test failures at once: a player given back that was not handed out, a call on a player that is not
// held, a call from another thread than the main thread.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/CDAEBrowserAPI.h"
#include "platform/DSMCCProtocol.h"
#include "platform/IBroadcastPlayer.h"
#include "platform/ISASListener.h"
#include "platform/TPTRect.h"
#include "tests/support/CallList.h"
#include "tests/support/FaultPlan.h"
#include "tests/support/Log.h"

namespace support {

class RecordingPlayer;

// What the platform answers; tests write the members. These are the answers of a television that works.
struct PlatformAnswers {
    bool broadcastRelated = true;
    bool inAppBoundary = true;
    unsigned players = 1;                        // how many can be handed out at a time
    std::optional<unsigned> currentChannel = 1;  // CDAEBrowserAPI::CurrentChannel
    bool mediaPlaybackMode = false;              // follows Enable- and DisableMediaPlaybackMode
    bool canRestoreChannel = true;
    std::optional<TPTRect> corrected;  // nothing: the given rectangle
    std::optional<TPTRect> video;      // nothing: scaled from the graphics plane to 1920x1080
    bool convertible = true;
    std::optional<std::pair<int, int>> panel = std::pair{1920, 1080};  // nothing: left as it arrived
    std::string key = "key";

    std::optional<unsigned> channel = 1;                                            // IBroadcastPlayer::GetChannel
    bool acceptsChannel = true;                                                     // SetChannel
    bool canStep = true;                                                            // PrevChannel, NextChannel
    std::optional<unsigned> tripletChannel = 2;                                     // GetChannelFromTriplet
    int dsdResult = 0;                                                              // GetChannelFromDSD
    std::optional<unsigned> dsdChannel = 3;                                         // what it writes
    int volume = 50;                                                                // follows SetVolume
    std::vector<std::string> videoComponents, audioComponents, subtitleComponents;  // their ParamString()
    std::set<std::size_t> activeComponents = {0};  // positions that an "active only" list keeps

    // Singletons that the contracts promise, and what a guard against their absence does.
    bool hasBrowserAPI = true, hasChannelCache = true, hasObjCreation = true;
    bool hasTaskManager = true, hasWrapperManager = true, hasPvr = true, pvrOperating = false;
    bool hasAppScreen = true;

    bool hasDsmcc = true;
    std::deque<unsigned long> jobIds;  // for the next subscriptions; 0 refuses. Empty: 1, 2, 3, ...
};

class RecordingPlatform {
public:
    static RecordingPlatform& Instance();
    void Reset();  // for the next test

    PlatformAnswers answers;
    // Writes the answers that live in globals (the task manager, the screen service), after changing them.
    void Apply();

    // The texts given to the platform, beside their entries in the list.
    std::vector<std::string> origins;  // IsURLInAppBoundary
    std::vector<std::string> dsds;     // GetChannelFromDSD
    std::vector<TPTRect> windows;      // SetVideoWindow

    FaultPlan& Faults() { return m_faults; }
    void FailNth(const std::string& operation, unsigned n) { m_faults.FailNth(operation, n); }
    void FailFrom(const std::string& operation, unsigned n = 1) { m_faults.FailFrom(operation, n); }
    unsigned Uses(const std::string& operation) const { return m_faults.Uses(operation); }

    // Notifications. Listener is the one of the first player, or null. Notify calls it on the calling thread, any
    // thread, unless the player was given back (false); ReleaseBroadcastPlayer waits for it to end.
    IBroadcastPlayerListener* Listener();
    bool Notify(const std::function<void(IBroadcastPlayerListener&)>& call);
    // The channel ids of these carry a hold, as the real calls do.
    void TakeHold(unsigned channelId);

    // Holds of a channel id: taken by look-ups and TakeHold, dropped by ReleaseChannel.
    int Holds(unsigned channelId);
    // Players that are handed out.
    unsigned HandedOut() const { return static_cast<unsigned>(m_handedOut.size()); }

    // The DSM-CC service.
    unsigned Registrations() const { return m_registrations; }
    const std::map<unsigned long, std::pair<std::string, std::string>>& Subscriptions() const {
        return m_subscriptions;  // job id to target URL and event name
    }
    // Delivers an event on the calling thread; false when no callback is registered.
    bool DeliverStreamEvent(unsigned long jobId, const std::string& name, const std::string& data = {}, int status = 0,
                            std::uint16_t eventId = 0, std::uint32_t reserved = 0);

    // Fails the test when a player, a registration or a subscription was not given back.
    void ExpectBalanced() const;

    // For the implementations of the interfaces: enters the call; true when it must fail.
    bool Enter(const std::string& operation, const std::string& arguments);

private:
    friend class RecordingBrowserAPI;
    friend class RecordingPlayer;
    friend class RecordingChannelCache;
    friend class RecordingDsmcc;

    RecordingPlatform() = default;

    IBroadcastPlayer* HandOutPlayer();
    void TakeBackPlayer(IBroadcastPlayer* player);
    bool LookUp(const std::optional<unsigned>& answer, unsigned& channelId);
    void DropHold(unsigned channelId);
    unsigned long NextJobId();

    FaultPlan m_faults;
    std::thread::id m_mainThread;
    std::vector<std::unique_ptr<RecordingPlayer>> m_players;
    std::vector<RecordingPlayer*> m_handedOut;
    std::recursive_mutex m_listenerMutex;
    std::mutex m_holdsMutex;
    std::map<unsigned, int> m_holds;
    std::mutex m_dsmccMutex;
    DSMCCStreamEventCallback m_callback = nullptr;
    unsigned m_registrations = 0;
    unsigned long m_lastJobId = 0;
    std::map<unsigned long, std::pair<std::string, std::string>> m_subscriptions;
};

}  // namespace support
