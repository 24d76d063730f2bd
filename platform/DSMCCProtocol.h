// The DSM-CC protocol service: subscriptions to stream events (ETSI TS 102 809, clause 8; ISO/IEC 13818-6).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/visibility.h"

// One delivered stream event. Made with `new` by the service; the callback takes it and deletes it. The record crosses
// libraries with its string and vector: both sides must use the same C++ library.
struct CDSMCCStreamEventData {
    enum EEventStatus : int { E_STATUS_TRIGGER = 0, E_STATUS_ERROR = 1 };

    EEventStatus status;
    std::uint16_t eventId;
    std::string name;
    std::vector<unsigned char> data;
    unsigned long jobId;     // the subscription that it answers
    std::uint32_t reserved;  // the platform's own
};

using DSMCCStreamEventCallback = void (*)(CDSMCCStreamEventData* event);

// Implemented by the platform. Operations are called on the browser's main thread; the callback is called on a thread
// of the service's own, never from inside one of them.
class TVPLATFORM_API IDSMCCProtocol {
public:
    // Subscribes to the events called `eventName` of the stream event object at `targetUrl` (absolute: "dvb:" for an
    // object in the carousel, "http:" or "https:" for an XML declaration). Returns a job id that is never used again,
    // or 0 when the subscription is refused. `flags` is always 0.
    virtual unsigned long SubscribeStreamEvent(const char* targetUrl, const char* eventName, int flags) = 0;
    // Ends a subscription. False when there is none with this id (any more).
    virtual bool UnsubscribeStreamEvent(unsigned long jobId) = 0;
    // Registers the function that gets all events. `name` is for logs. The registrations are counted: every object of
    // the plug-in registers the same function, each event is delivered by one call of it, and deliveries end when the
    // last registration is given back. A registration too many that is given back is ignored.
    virtual void RegisterStreamEventCallback(const char* name, const DSMCCStreamEventCallback& callback) = 0;
    virtual void UnregisterStreamEventCallback() = 0;

protected:
    virtual ~IDSMCCProtocol();
};

// The service, or null on a platform without one: stream events are then not delivered, all else works.
TVPLATFORM_API IDSMCCProtocol* DSMCCProtocol_GetInstance();
