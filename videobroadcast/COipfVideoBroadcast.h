// The video/broadcast object (OIPF DAE, clause 7.13.1): one for each embedded object of a page.
#pragma once

#include <X11/Xlib.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "javascript/JSNPObject.h"
#include "platform/DSMCCProtocol.h"
#include "platform/IBroadcastPlayerListener.h"
#include "platform/ISASListener.h"
#include "videobroadcast/CHeldListeners.h"
#include "videobroadcast/CStreamEventHandler.h"
#include "videobroadcast/PCMutex.h"

class IBroadcastPlayer;

namespace OipfVideoBroadcast {

// The handler properties; the same numbers are the script event ids.
enum EProperty : unsigned int {
    E_PROP_NONE = 0,
    E_PROP_RESERVED_1 = 1,
    E_PROP_RESERVED_2 = 2,
    E_PROP_CH_CHANGE_ERROR = 3,
    E_PROP_CH_CHANGE_SUCCEEDED = 4,
    E_PROP_PLAY_STATE_CHANGE = 5,
    E_PROP_FULL_SCREEN_CHANGE = 6,
    E_PROP_FOCUS = 7,
    E_PROP_BLUR = 8,
    E_PROP_PROGRAMMES_CHANGED = 9,
    E_PROP_PARENTAL_RATING_CHANGE = 10,
    E_PROP_PARENTAL_RATING_ERROR = 11,
    E_PROP_STREAM_EVENT = 12,
    E_PROP_DRM_RIGHTS_ERROR = 13
};

// Script calls and everything named m_ run on the browser's main thread. The listener operations and DsmEventCallback
// come on threads of the platform: they queue a record and ask the browser to have it handled on its main thread.
class COipfVideoBroadcast : public OipfJavaScript::JSNPObject, public IBroadcastPlayerListener, public ISASListener {
public:
    enum EPlayState : int { E_STATE_UNREALIZED, E_STATE_CONNECTING, E_STATE_PRESENTING, E_STATE_STOPPED };

    // The errorState of ChannelChangeError (OIPF DAE, clause 7.13.1.3).
    enum EChannelChangeError : int {
        E_ERR_CHANNEL_NOT_SUPPORTED = 0,
        E_ERR_CANNOT_TUNE = 1,
        E_ERR_PARENTAL_LOCK = 3,
        E_ERR_ENCRYPTED = 4,
        E_ERR_RECORDING_IN_PROGRESS = 7,
        E_ERR_NO_CHANNEL_LIST = 10,
        E_ERR_INSUFFICIENT_RESOURCES = 11,
        E_ERR_CHANNEL_NOT_FOUND = 12,
        E_ERR_UNIDENTIFIED = 100,
        E_ERR_NONE = 1000  // ours: no error, never shown to script
    };

    // The errorState of DrmRightsError (OIPF DAE, clause 7.13.5).
    enum ERightsState : int { E_RIGHTS_NONE = 0, E_RIGHTS_VALID = 2 };

    // What the platform reports. Ids under 1000 are script event ids.
    enum ENotification : unsigned int {
        E_ON_PROGRAMMES_CHANGED = E_PROP_PROGRAMMES_CHANGED,
        E_ON_PARENTAL_RATING_CH = E_PROP_PARENTAL_RATING_CHANGE,
        E_ON_STREAM_EVENT = E_PROP_STREAM_EVENT,
        E_SUSPEND = 1000,
        E_RESUME,
        E_CHANNEL_CHANGE,
        E_TUNE_SUCCESS,
        E_TUNE_FAIL,
        E_SERVICE_NOT_AVAILABLE,
        E_CH_LOCKED,
        E_CH_TUNED_LOCKED,
        E_CH_UNLOCKED,
        E_UPDATE_LAYOUT,
        E_CH_SCRAMBLED,
        E_CH_SCRAMBLED_TUNE,
        E_CH_UNSCRAMBLED,
        E_SAS_MSG
    };

    // One notification on its way to the main thread. The data is a number or an owned pointer, by id.
    struct event_t {
        unsigned int id;
        std::uintptr_t data;
    };

    COipfVideoBroadcast(NPP npp, NPNetscapeFuncs* browserFuncs);
    ~COipfVideoBroadcast() override;
    static const char* PluginDescription();

    void Invalidate() override;
    void SetWindow(NPWindow* window) override;
    std::int16_t HandleEvent(void* event) override;

protected:
    bool t_AllowEventListener() override;

public:
    // In the order of the listener's operations: they take the slots after the base's.
    void Suspend() override;
    void Resume() override;
    void ChannelChanged() override;
    void TuneSuccess(unsigned int channelId) override;
    void TuneFail(unsigned int channelId) override;
    void ServiceNotAvailable(unsigned int channelId) override;
    void ProgrammeChanged() override;
    void ParentalRatingChanged(char rating) override;
    void ParentalRatingBlocked(unsigned int channelId, bool whilePresenting) override;
    void ParentalRatingUnblocked(unsigned int channelId) override;
    void NoSignal() override;
    void Scrambled(unsigned short caSystemId) override;
    void ScrambledTune(unsigned int channelId) override;
    void Unscrambled(unsigned short caSystemId) override;
    void UpdateLayout() override;
    void OnSASMessageReceived(SASMessage* message) override;

    // Any thread: queues the record and asks the browser to call s_HandleAsyncCall with its number.
    void OnEvent(event_t event);
    // Main thread: acts on the record with this number, if it is still queued.
    static void s_HandleAsyncCall(void* id);
    // The service's thread: queues a copy for every live object and deletes the event.
    static void DsmEventCallback(CDSMCCStreamEventData* event);

    // Handler properties; other members are reached through script.
    bool m_GetProperty(EProperty property, NPVariant* result);
    bool m_SetProperty(EProperty property, const NPVariant* value);

protected:
    // Play state and script events.
    void m_SetPlayState(EPlayState state, EChannelChangeError error);
    void m_SendChChange(NPVariant channel, EChannelChangeError error);
    void m_SendChChange(unsigned int channelId, EChannelChangeError error);
    void m_OnEvent(unsigned int eventId, std::vector<NPVariant*>& args);

    // Notifications on the main thread.
    void m_ProcessEvent(event_t& event);
    void m_OnSuspend();
    void m_OnResume();
    void m_OnDsmEvent(const CDSMCCStreamEventData& event);
    void m_HandleStreamEventCallback(NPObject* listener, const CDSMCCStreamEventData& event);

    // Rating and rights.
    bool m_GetMinimumAge(char rating, int& age);
    void m_SendDrmRightsError(int state, unsigned short caSystemId);
    void m_ProcessRightsInfo(SASMessage* message, unsigned short& status, std::string& text);

    // The hold of the broadcast player.
    void m_GetBroadcastPlayer();
    void m_ReleaseBroadcastPlayer();
    void m_SetNullChannel(bool bc);

    void m_UpdateLayout();
    void m_GetComponents(int type, NPVariant* result, bool activeOnly);

    // Script properties.
    template <EProperty property>
    bool m_GetHandler(NPVariant* result);
    template <EProperty property>
    bool m_SetHandler(const NPVariant* value);
    bool m_GetWidth(NPVariant* result);
    bool m_SetWidth(const NPVariant* value);
    bool m_GetHeight(NPVariant* result);
    bool m_SetHeight(const NPVariant* value);
    bool m_GetFullScreen(NPVariant* result);
    bool m_GetPlayState(NPVariant* result);
    bool m_GetProgrammes(NPVariant* result);
    bool m_GetCurrCh(NPVariant* result);

    // Script methods.
    bool m_GetChannelConfig(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_BindToCurrentCh(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_CreateChannelObj(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_SetChannel(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_PrevChannel(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_NextChannel(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_SetFullScreen(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_SetVolume(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_GetVolume(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_Release(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_Stop(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_GetComponents(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_GetCurrentActiveComponents(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_SelectComponent(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_UnselectComponent(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_AddStreamEventListener(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_RemoveStreamEventListener(const NPVariant* args, std::uint32_t argCount, NPVariant* result);

private:
    struct SurfaceRow;
    struct NotificationRow;
    // What OnEvent asks the browser for once the lock is given back.
    struct AsyncRequest {
        NPNetscapeFuncs* funcs;
        NPP npp;
        unsigned int id;
    };

    void t_RegisterProperties();
    template <EProperty property>
    void t_RegisterHandler();
    template <std::size_t... rows>
    void t_RegisterHandlers(std::index_sequence<rows...>);
    void t_RegisterMethods();
    void t_SetBrowserValues();
    void t_MarkPage();
    void t_RegisterStreamEvents();
    void t_Forget();
    std::vector<event_t> t_TakePendingEvents();

    std::optional<AsyncRequest> t_Queue(const event_t& event);
    static void t_Request(const AsyncRequest& request);
    static void t_FreePayload(const event_t& event);
    void t_KeepHold(const event_t& event);
    void t_GiveBackHolds();
    static std::pair<COipfVideoBroadcast*, event_t> t_Take(unsigned int key);

    void t_OnProgrammesChanged(std::uintptr_t data);
    void t_OnParentalRating(std::uintptr_t data);
    void t_OnStreamEvent(std::uintptr_t data);
    void t_OnSuspend(std::uintptr_t data);
    void t_OnResume(std::uintptr_t data);
    void t_OnChannelChange(std::uintptr_t data);
    void t_OnTuneSuccess(std::uintptr_t data);
    void t_OnTuneFail(std::uintptr_t data);
    void t_OnServiceNotAvailable(std::uintptr_t data);
    void t_OnLocked(std::uintptr_t data);
    void t_OnTunedLocked(std::uintptr_t data);
    void t_OnUnlocked(std::uintptr_t data);
    void t_OnUpdateLayout(std::uintptr_t data);
    void t_OnScrambled(std::uintptr_t data);
    void t_OnScrambledTune(std::uintptr_t data);
    void t_OnUnscrambled(std::uintptr_t data);
    void t_OnSasMessage(std::uintptr_t data);
    void t_Report(std::uintptr_t channelId, EChannelChangeError error);

    static bool t_IsBroadcastRelated();
    static bool t_IsMediaPlaybackMode();
    static bool t_IsPvrOperating();
    static void t_ReleaseChannel(unsigned int channelId);
    static void t_SetDynamicContrast(int value);
    bool t_RefuseUnlessBroadcastRelated(const char* logLine);

    void t_ChannelFailed(const NPVariant& channel, EChannelChangeError error);
    bool t_FindChannel(const NPVariant& channel, unsigned int& id, bool& fromDsd);
    bool t_FindChannelByDsd(const NPVariant& channel, const std::string& dsd, int idType, int sid, unsigned int& id,
                            bool& fromDsd);
    void t_FindChannelByTriplet(NPObject& channel, int idType, int sid, unsigned int& id);
    void t_TuneTo(const NPVariant& channel, unsigned int id, bool fromDsd);
    bool m_NextOrPrevChannel(bool next);
    void t_BindWithoutPlayer();
    bool t_CreateChannel(unsigned int channelId, NPObject** object);

    bool t_ArgumentsOfDsdChannel(const NPVariant* args, std::string& params);
    bool t_ArgumentsOfTripletChannel(const NPVariant* args, std::uint32_t argCount, std::string& params);
    bool t_TripletNumbers(const NPVariant* args, std::uint32_t argCount, int idType, int (&numbers)[3]);
    bool t_CheckSourceId(const NPVariant* args, std::uint32_t argCount, int idType);
    bool t_CheckIpBroadcastId(const NPVariant* args, std::uint32_t argCount, int idType);
    bool t_Refuse(const char* logLine, const char* exception);

    bool t_SetSize(const NPVariant& value, std::int32_t& size, const char* logName, const char* readOnlyLog,
                   const char* readOnlyException);
    void t_PlaceVideo();

    std::vector<std::string> t_ComponentParams(int type, bool activeOnly);
    void t_PushComponents(NPObject* array, const std::vector<std::string>& params);
    bool t_AllowComponentChoice(const char* member, const NPVariant* args, std::uint32_t argCount);

    void t_CheckRating(unsigned char rating);
    bool t_StreamEventArguments(const char* member, const NPVariant* args, std::uint32_t argCount, std::string& url,
                                std::string& name, bool& refused);
    OipfJavaScript::CJSEvent* t_CreateStreamEvent(const std::array<std::string, 4>& values);

    std::map<EProperty, std::string> m_eventNames;
    std::map<EProperty, NPObject*> m_handlers;  // each non-null entry holds one reference
    std::int32_t m_x = 0;
    std::int32_t m_y = 0;
    std::int32_t m_width = 0;
    std::int32_t m_height = 0;
    EPlayState m_playState = E_STATE_UNREALIZED;
    EChannelChangeError m_lastError = E_ERR_CHANNEL_NOT_SUPPORTED;  // of the last move into CONNECTING
    bool m_fullScreen = false;
    bool m_blocked = false;
    unsigned char m_lastRating = 0;
    bool m_lastRatingValid = false;
    IBroadcastPlayer* m_bcPlayer = nullptr;
    unsigned int m_playerHold = 0;  // counts hand-outs of the player
    bool m_invalidated = false;
    std::vector<unsigned int> m_droppedHolds;  // channels that dropped records named; guarded by s_mutex
    IDSMCCProtocol* m_dsmcc = nullptr;
    CHeldListeners m_heldListeners;  // outlives the registry, whose entries name what it holds
    CStreamEventHandler m_streamEventHandler;
    bool m_scrambled = false;
    Visual* m_visual = nullptr;

    static PCMutex s_mutex;  // guards the three below, and m_npp against the platform's threads
    static std::atomic<unsigned int> s_id;
    static std::map<unsigned int, std::pair<COipfVideoBroadcast*, event_t>> s_asyncEvent;
    static std::list<COipfVideoBroadcast*> s_vboInstances;
};

}  // namespace OipfVideoBroadcast
