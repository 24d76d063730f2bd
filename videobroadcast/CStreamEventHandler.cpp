#include "videobroadcast/CStreamEventHandler.h"

#include "debug/Log.h"

namespace OipfVideoBroadcast {

CStreamEventHandler::~CStreamEventHandler() {
    if (IDSMCCProtocol* service = DSMCCProtocol_GetInstance()) service->UnregisterStreamEventCallback();
    t_RemoveAllListeners();
}

void CStreamEventHandler::AddEventListener(const char* targetUrl, const char* eventName, NPObject* listener) {
    LOG_TRACE("[CStreamEventHandler::AddEventListener] adding event listener, targetURL=%s, eventName=%s, "
              "listener=0x%lx",
              targetUrl, eventName, reinterpret_cast<unsigned long>(listener));
    IDSMCCProtocol* service = DSMCCProtocol_GetInstance();
    const unsigned long jobId = service ? service->SubscribeStreamEvent(targetUrl, eventName, 0) : 0;
    if (jobId == 0) {
        LOG_WARNING("[CStreamEventHandler::AddEventListener] couldn't subscribe for stream event, targetURL=%s, "
                    "eventName=%s",
                    targetUrl, eventName);
        return;
    }
    LOG_TRACE("[CStreamEventHandler::AddEventListener] jobId=%lu", jobId);
    CEventListenerData& entry = m_listeners[jobId];
    if (entry.listener) t_Forget(entry.listener);
    entry = {targetUrl, eventName, listener, false};
    ++m_entriesOf[listener];
    LOG_TRACE("[CStreamEventHandler::AddEventListener] EXIT");
}

void CStreamEventHandler::RemoveEventListener(const char* targetUrl, const char* eventName, NPObject* listener) {
    LOG_TRACE("[CStreamEventHandler::RemoveEventListener] removing event listener, targetURL=%s, eventName=%s, "
              "listener=0x%lx",
              targetUrl, eventName, reinterpret_cast<unsigned long>(listener));
    bool found = false;
    for (auto& [jobId, entry] : m_listeners) {
        if (entry.listener != listener || entry.targetUrl != targetUrl || entry.eventName != eventName) continue;
        found = true;
        t_UnsubscrieStreamEvent(entry, jobId);
        entry.removed = true;
    }
    if (!found)
        LOG_WARNING("[CStreamEventHandler::RemoveEventListener] no listener found, targetURL=%s, eventName=%s",
                    targetUrl, eventName);
}

void CStreamEventHandler::t_UnsubscrieStreamEvent(const CEventListenerData& entry, unsigned long jobId) {
    LOG_TRACE("[CStreamEventHandler::t_UnsubscrieStreamEvent] unsubscribing listener URL=%s, eventName=%s, "
              "dsmJobId=%lx",
              entry.targetUrl.c_str(), entry.eventName.c_str(), jobId);
    IDSMCCProtocol* service = DSMCCProtocol_GetInstance();
    if (service && service->UnsubscribeStreamEvent(jobId)) return;
    LOG_WARNING("[CStreamEventHandler::t_UnsubscrieStreamEvent] couldn't unsubscribe from stream event, targetURL=%s,  "
                "eventName=%s, dsmJobId=%lx",
                entry.targetUrl.c_str(), entry.eventName.c_str(), jobId);
}

void CStreamEventHandler::t_RemoveAllListeners() {
    LOG_TRACE("[CStreamEventHandler::t_RemoveAllListeners] ENTER");
    for (const auto& [jobId, entry] : m_listeners) t_UnsubscrieStreamEvent(entry, jobId);
    LOG_TRACE("[CStreamEventHandler::t_RemoveAllListeners] EXIT");
}

void CStreamEventHandler::t_Forget(NPObject* listener) {
    const auto entries = m_entriesOf.find(listener);
    if (--entries->second == 0) m_entriesOf.erase(entries);
}

NPObject* CStreamEventHandler::GetStreamEventDataListeners(const CDSMCCStreamEventData& event,
                                                           std::list<NPObject*>& listeners) {
    LOG_TRACE("GetStreamEventDataListeners");
    const auto entry = m_listeners.find(event.jobId);
    if (entry == m_listeners.end()) {
        LOG_WARNING("[CStreamEventHandler::GetStreamEventDataListeners] no listeners found for stream event id=%d, "
                    "name=%s, dsmJobId=%ld",
                    event.eventId, event.name.c_str(), static_cast<long>(event.jobId));
        return nullptr;
    }
    NPObject* listener = entry->second.listener;
    if (!entry->second.removed) {
        listeners.push_back(listener);
        return nullptr;
    }
    t_Forget(listener);
    m_listeners.erase(entry);
    return listener;
}

const char* CStreamEventHandler::FormatStatus(CDSMCCStreamEventData::EEventStatus status) {
    switch (status) {
        case CDSMCCStreamEventData::E_STATUS_TRIGGER:
            return "trigger";
        case CDSMCCStreamEventData::E_STATUS_ERROR:
            return "error";
    }
    return "unknown";
}

void CStreamEventHandler::FormatHexData(const unsigned char* data, unsigned int length, std::string& text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    text.clear();
    text.reserve(2 * static_cast<std::size_t>(length));
    for (unsigned int i = 0; i < length; ++i) {
        text.push_back(kDigits[data[i] >> 4]);
        text.push_back(kDigits[data[i] & 0x0F]);
    }
}

}  // namespace OipfVideoBroadcast
