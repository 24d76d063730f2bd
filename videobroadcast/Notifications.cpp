// From the platform's threads to the browser's main thread.
#include <algorithm>
#include <memory>
#include <new>

#include "debug/Log.h"
#include "platform/CDAEBrowserAPI.h"
#include "videobroadcast/CEventArguments.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

PCMutex COipfVideoBroadcast::s_mutex;
std::map<unsigned int, std::pair<COipfVideoBroadcast*, COipfVideoBroadcast::event_t>> COipfVideoBroadcast::s_asyncEvent;
std::list<COipfVideoBroadcast*> COipfVideoBroadcast::s_vboInstances;
std::atomic<unsigned int> COipfVideoBroadcast::s_id{0};

void COipfVideoBroadcast::Suspend() {
    LOG_TRACE("COipfVideoBroadcast::Suspend()");
    OnEvent({E_SUSPEND, 0});
}

void COipfVideoBroadcast::Resume() {
    LOG_TRACE("%s", "Resume");
    OnEvent({E_RESUME, 0});
}

void COipfVideoBroadcast::ChannelChanged() {
    LOG_TRACE("%s", "ChannelChanged");
    OnEvent({E_CHANNEL_CHANGE, 0});
}

void COipfVideoBroadcast::TuneSuccess(unsigned int channelId) {
    LOG_TRACE("%s %d", "TuneSuccess", static_cast<int>(channelId));
    OnEvent({E_TUNE_SUCCESS, channelId});
}

void COipfVideoBroadcast::TuneFail(unsigned int channelId) {
    LOG_TRACE("%s", "TuneFail");
    OnEvent({E_TUNE_FAIL, channelId});
}

void COipfVideoBroadcast::ServiceNotAvailable(unsigned int channelId) {
    LOG_TRACE("%s", "ServiceNotAvailable");
    OnEvent({E_SERVICE_NOT_AVAILABLE, channelId});
}

void COipfVideoBroadcast::ProgrammeChanged() { OnEvent({E_ON_PROGRAMMES_CHANGED, 0}); }

void COipfVideoBroadcast::ParentalRatingChanged(char rating) {
    LOG_TRACE("%s", "ParentalRatingChanged");
    OnEvent({E_ON_PARENTAL_RATING_CH, static_cast<unsigned char>(rating)});
}

void COipfVideoBroadcast::ParentalRatingBlocked(unsigned int channelId, bool whilePresenting) {
    LOG_TRACE("%s", "ParentalRatingBlocked");
    OnEvent({whilePresenting ? E_CH_LOCKED : E_CH_TUNED_LOCKED, channelId});
}

void COipfVideoBroadcast::ParentalRatingUnblocked(unsigned int channelId) {
    LOG_TRACE("%s", "ParentalRatingUnblocked");
    OnEvent({E_CH_UNLOCKED, channelId});
}

void COipfVideoBroadcast::NoSignal() { OnEvent({E_TUNE_FAIL, 0}); }

void COipfVideoBroadcast::Scrambled(unsigned short caSystemId) {
    LOG_TRACE("%s ca_sid = %x", "Scrambled", caSystemId);
    OnEvent({E_CH_SCRAMBLED, caSystemId});
}

void COipfVideoBroadcast::ScrambledTune(unsigned int channelId) {
    LOG_TRACE("%s", "ScrambledTune");
    OnEvent({E_CH_SCRAMBLED_TUNE, channelId});
}

void COipfVideoBroadcast::Unscrambled(unsigned short caSystemId) {
    LOG_TRACE("%s ca_sid = %x", "Unscrambled", caSystemId);
    OnEvent({E_CH_UNSCRAMBLED, caSystemId});
}

void COipfVideoBroadcast::UpdateLayout() { OnEvent({E_UPDATE_LAYOUT, 0}); }

void COipfVideoBroadcast::OnSASMessageReceived(SASMessage* message) {
    LOG_TRACE("COipfVideoBroadcast::OnSASMessageReceived()");
    OnEvent({E_SAS_MSG, reinterpret_cast<std::uintptr_t>(message)});
}

// Under s_mutex: stores the record, or answers nothing when it is not to be handled.
std::optional<COipfVideoBroadcast::AsyncRequest> COipfVideoBroadcast::t_Queue(const event_t& event) {
    if (!m_npp) {
        LOG_WARNING("%s m_npp is NULL!", "OnEvent");
        t_KeepHold(event);
        return std::nullopt;
    }
    const auto isProgrammesChange = [](const auto& entry) { return entry.second.second.id == E_ON_PROGRAMMES_CHANGED; };
    if (event.id == E_ON_PROGRAMMES_CHANGED && std::ranges::any_of(s_asyncEvent, isProgrammesChange))
        return std::nullopt;
    LOG_TRACE("COipfVideoBroadcast::OnEvent(%d)", static_cast<int>(event.id));
    const unsigned int id = ++s_id;
    s_asyncEvent[id] = {this, event};
    return AsyncRequest{m_pNPNFuncs, m_npp, id};
}

// The number is read anew, as it stands. Where another thread has moved it on, this record's own is asked for as well:
// a request too many finds no record.
void COipfVideoBroadcast::t_Request(const AsyncRequest& request) {
    const auto ask = [&request](unsigned int id) {
        request.funcs->pluginthreadasynccall(request.npp, s_HandleAsyncCall,
                                             reinterpret_cast<void*>(std::uintptr_t{id}));
    };
    const unsigned int latest = s_id;
    if (latest != request.id) ask(request.id);
    ask(latest);
}

// A notification that there is no memory for is dropped: nothing is thrown at the platform.
void COipfVideoBroadcast::OnEvent(event_t event) {
    std::optional<AsyncRequest> request;
    try {
        CLock lock(s_mutex);
        request = t_Queue(event);
    } catch (const std::bad_alloc&) {
        LOG_ERROR("Out of memory!");
    }
    if (request)
        t_Request(*request);
    else
        t_FreePayload(event);
}

void COipfVideoBroadcast::t_FreePayload(const event_t& event) {
    if (event.id == E_ON_STREAM_EVENT) delete reinterpret_cast<CDSMCCStreamEventData*>(event.data);
    if (event.id == E_SAS_MSG) delete reinterpret_cast<SASMessage*>(event.data);
}

void COipfVideoBroadcast::DsmEventCallback(CDSMCCStreamEventData* event) {
    if (!event) return;
    const std::unique_ptr<CDSMCCStreamEventData> owned(event);
    std::vector<AsyncRequest> requests;
    try {
        CLock lock(s_mutex);
        requests.reserve(s_vboInstances.size());
        for (COipfVideoBroadcast* object : s_vboInstances) {
            LOG_TRACE("[CplVideoBroadcast::DsmEventCallback] sending copy of stream related event to browser");
            auto copy = std::make_unique<CDSMCCStreamEventData>(*event);
            const auto request = object->t_Queue({E_ON_STREAM_EVENT, reinterpret_cast<std::uintptr_t>(copy.get())});
            if (!request) continue;
            copy.release();  // the queued record's now
            requests.push_back(*request);
        }
    } catch (const std::bad_alloc&) {
        LOG_ERROR("Out of memory!");
    }
    std::ranges::for_each(requests, t_Request);
}

void COipfVideoBroadcast::s_HandleAsyncCall(void* id) {
    LOG_TRACE("COipfVideoBroadcast::m_HandleAsyncCall()");
    const auto key = static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(id));
    auto [object, event] = t_Take(key);
    if (!object) return;
    OipfJavaScript::CSelfHold hold(*object);
    try {
        object->m_ProcessEvent(event);
    } catch (const std::bad_alloc&) {
        LOG_ERROR("Out of memory!");
    }
}

// The record with this number and its object, out of the map; a null object when there is none.
std::pair<COipfVideoBroadcast*, COipfVideoBroadcast::event_t> COipfVideoBroadcast::t_Take(unsigned int key) {
    CLock lock(s_mutex);
    const auto entry = s_asyncEvent.find(key);
    if (entry == s_asyncEvent.end()) {
        LOG_WARNING("Event id %d not in s_asyncEvent map", static_cast<int>(key));
        return {nullptr, {}};
    }
    const auto taken = entry->second;
    s_asyncEvent.erase(entry);
    return taken;
}

struct COipfVideoBroadcast::NotificationRow {
    ENotification id;
    const char* name;  // null: not logged
    void (COipfVideoBroadcast::*act)(std::uintptr_t data);
};

void COipfVideoBroadcast::m_ProcessEvent(event_t& event) {
    using This = COipfVideoBroadcast;
    static constexpr NotificationRow kRows[] = {
        {E_ON_PROGRAMMES_CHANGED, "E_ON_PROGRAMMES_CHANGED", &This::t_OnProgrammesChanged},
        {E_ON_PARENTAL_RATING_CH, "E_ON_PARENTAL_RATING_CH", &This::t_OnParentalRating},
        {E_ON_STREAM_EVENT, "E_ON_STREAM_EVENT", &This::t_OnStreamEvent},
        {E_SUSPEND, "E_SUSPEND", &This::t_OnSuspend},
        {E_RESUME, "E_RESUME", &This::t_OnResume},
        {E_CHANNEL_CHANGE, "E_CHANNEL_CHANGE", &This::t_OnChannelChange},
        {E_TUNE_SUCCESS, "E_TUNE_SUCCESS", &This::t_OnTuneSuccess},
        {E_TUNE_FAIL, "E_TUNE_FAIL", &This::t_OnTuneFail},
        {E_SERVICE_NOT_AVAILABLE, "E_SERVICE_NOT_AVAILABLE", &This::t_OnServiceNotAvailable},
        {E_CH_LOCKED, "E_CH_LOCKED", &This::t_OnLocked},
        {E_CH_TUNED_LOCKED, "E_CH_TUNED_LOCKED", &This::t_OnTunedLocked},
        {E_CH_UNLOCKED, "E_CH_UNLOCKED", &This::t_OnUnlocked},
        {E_UPDATE_LAYOUT, "E_UPDATE_LAYOUT", &This::t_OnUpdateLayout},
        {E_CH_SCRAMBLED, "E_CH_SCRAMBLED", &This::t_OnScrambled},
        {E_CH_SCRAMBLED_TUNE, nullptr, &This::t_OnScrambledTune},
        {E_CH_UNSCRAMBLED, "E_CH_UNSCRAMBLED", &This::t_OnUnscrambled},
        {E_SAS_MSG, "E_SAS_MSG", &This::t_OnSasMessage},
    };
    const auto row = std::ranges::find(kRows, static_cast<ENotification>(event.id), &NotificationRow::id);
    if (row == std::ranges::end(kRows)) {
        LOG_ERROR("Recieved event %d in m_OnEvent()", static_cast<int>(event.id));
        return;
    }
    if (row->name) LOG_TRACE("%s %s", "m_ProcessEvent", row->name);
    (this->*row->act)(event.data);
}

}  // namespace OipfVideoBroadcast
