// The script listeners for DSM-CC stream events of one object, each under the job id of its subscription.
#pragma once

#include <list>
#include <map>
#include <string>

#include "npapi/npruntime.h"
#include "platform/DSMCCProtocol.h"

namespace OipfVideoBroadcast {

struct CEventListenerData {
    std::string targetUrl;  // absolute
    std::string eventName;
    NPObject* listener = nullptr;  // not retained here
    bool removed = false;          // unsubscribed; erased by the next event for its job
};

// Runs on the browser's main thread. Failures to subscribe and to unsubscribe are only logged.
class CStreamEventHandler {
public:
    CStreamEventHandler() = default;
    CStreamEventHandler(const CStreamEventHandler&) = delete;
    CStreamEventHandler& operator=(const CStreamEventHandler&) = delete;
    // Gives one callback registration back to the service, then unsubscribes every entry.
    virtual ~CStreamEventHandler();

    // Subscribes and keeps the listener under the job id that the service gives.
    void AddEventListener(const char* targetUrl, const char* eventName, NPObject* listener);
    // Unsubscribes every entry with these three and marks it removed.
    void RemoveEventListener(const char* targetUrl, const char* eventName, NPObject* listener);
    // Appends the listener of the event's job. An entry marked removed is erased instead; its listener is returned,
    // null otherwise.
    NPObject* GetStreamEventDataListeners(const CDSMCCStreamEventData& event, std::list<NPObject*>& listeners);
    // Whether any entry, removed or not, still names the listener.
    bool HoldsListener(NPObject* listener) const { return m_entriesOf.contains(listener); }

    static const char* FormatStatus(CDSMCCStreamEventData::EEventStatus status);
    // Two uppercase hexadecimal digits a byte, assigned to `text`.
    static void FormatHexData(const unsigned char* data, unsigned int length, std::string& text);

private:
    void t_UnsubscrieStreamEvent(const CEventListenerData& entry, unsigned long jobId);
    void t_RemoveAllListeners();
    void t_Forget(NPObject* listener);

    std::map<unsigned long, CEventListenerData> m_listeners;
    std::map<NPObject*, unsigned int> m_entriesOf;  // how many entries name the listener
};

}  // namespace OipfVideoBroadcast
