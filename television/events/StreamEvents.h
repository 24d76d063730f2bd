// The page's subscriptions to stream events: first the target is read, then the stream that it names is listened to.
// What is found and heard is told on a thread of this class.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>

#include "platform/DSMCCProtocol.h"
#include "television/ServiceDirectory.h"
#include "television/TaskQueue.h"
#include "television/events/EventDeclaration.h"
#include "television/events/ObjectCarousel.h"
#include "television/events/StreamEventSection.h"
#include "television/events/TimedEvents.h"
#include "television/stream/TransportPacket.h"

namespace television {

class StreamEvents {
public:
    struct Surroundings {
        std::function<Route()> route;  // to the selected service
        std::function<void(const CDSMCCStreamEventData&)> deliver;
        // A target in a carousel is given up after this: large ones need so long for a turn or two.
        std::chrono::milliseconds carouselPatience = std::chrono::seconds(30);
    };
    explicit StreamEvents(Surroundings surroundings) : m_around(std::move(surroundings)) {}
    ~StreamEvents() { EndAll(); }

    // The job id. A target that cannot be read, or has no such event, is told as an error, which ends the subscription;
    // so is a stream that the selected service has not, or has no more, and a change of the service.
    unsigned long Subscribe(const std::string& url, const std::string& name);
    // When these return, nothing is being told of the subscription, or will be. False when there is none.
    bool Unsubscribe(unsigned long job);
    void EndAll();

    // The tables or the selected service changed. Any thread.
    void StreamChanged();
    // On the receiving thread.
    void PacketsReceived(std::span<const std::uint8_t> packets);
    // Milliseconds since the last event came that is listened for. Any thread.
    double SinceLastEvent() const;

private:
    struct Subscription {
        std::string url, name;
        std::optional<CarouselTarget> carousel;  // that has the target, where it is no document
        std::optional<DeclaredEvent> event;      // once the target was read
        std::uint16_t sid = 0;                   // of the service whose events are meant; 0 while it is not known
        unsigned int channel = 0;                // the same service's id
        std::uint16_t pid = kNullPid;            // that brings them
    };
    struct Listening {
        SectionCollector collector;
        EventVersions versions;
        TimedEvents timed;
        bool toldOfNoReference = false;
    };
    struct CarouselReading {
        std::uint16_t pid;  // on which it begins
        ObjectCarousel carousel;
        Route route;
        std::map<std::uint16_t, SectionCollector> collectors;  // by PID
        std::set<std::uint16_t> missing;                       // streams that it names and the service has not
        bool ended = false;
    };

    // On the thread that reads targets from the network.
    void ReadTarget(const std::string& url);
    bool IsWanted(const std::string& url);
    // On the thread that tells.
    void GiveUp(unsigned long job);
    void TargetRead(const std::string& url, const EventDeclaration& declaration);
    void FollowStream();
    void Announce(std::uint16_t pid, const StreamEvent& event);

    // Under m_mutex.
    std::string Follow(Subscription& subscription, const Route& route);
    std::string FindStream(Subscription& subscription, int componentTag, const Route& route);
    void ReadCarousel(const Subscription& subscription, std::uint16_t pid, const Route& route);
    void EndFaulty(const std::function<std::string(Subscription&)>& faultOf);
    void Listen(Subscription& subscription, std::uint16_t pid);
    void ListenNoLongerInVain();

    // Under m_listeningMutex.
    void HearEvents(const std::uint8_t* packet);
    void HearClock(const std::uint8_t* packet);
    void TakeEvents(std::uint16_t pid, Listening& listening, const Section& section);
    void Tell(std::uint16_t pid, std::vector<StreamEvent> events);
    void HearCarousels(const std::uint8_t* packet);
    void TakeSection(const std::string& url, CarouselReading& reading, std::uint16_t pid, const Section& section);
    void FollowAssociations(CarouselReading& reading);

    Surroundings m_around;
    std::mutex m_mutex;  // held while something is told
    std::map<unsigned long, Subscription> m_subscriptions;

    std::mutex m_listeningMutex;                         // taken after the other
    std::uint16_t m_clockPid = kNullPid;                 // of the selected service
    std::map<std::uint16_t, Listening> m_listening;      // by PID
    std::map<std::string, CarouselReading> m_carousels;  // by the target's address

    std::atomic<TaskQueue::Clock::time_point> m_lastEvent{};
    TaskQueue m_telling;
    TaskQueue m_reading;
};

}  // namespace television
