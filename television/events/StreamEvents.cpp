// From a target's address to events in the stream.
#include "television/events/StreamEvents.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "television/Log.h"
#include "television/events/Download.h"

namespace television {
namespace {

// For ever: no job id is used twice, whatever television gave it.
std::atomic<unsigned long> s_lastJob = 0;

std::string FaultOf(const EventDeclaration& declaration, const std::string& name, const DeclaredEvent*& found) {
    if (!declaration.fault.empty()) return declaration.fault;
    for (const DeclaredEvent& event : declaration.events)
        if (event.name == name) found = &event;
    return found ? "" : "it declares no event of this name";
}

}  // namespace

unsigned long StreamEvents::Subscribe(const std::string& url, const std::string& name) {
    const unsigned long job = ++s_lastJob;
    const auto carousel = ReadCarouselTarget(url);
    {
        std::lock_guard lock(m_mutex);
        m_subscriptions[job] = {.url = url, .name = name, .carousel = carousel, .event = {}};
    }
    if (carousel) {
        StreamChanged();
        m_telling.PostAt(TaskQueue::Clock::now() + m_around.carouselPatience, [=, this] { GiveUp(job); });
    } else {
        m_reading.Post([=, this] { ReadTarget(url); });
    }
    return job;
}

bool StreamEvents::Unsubscribe(unsigned long job) {
    std::lock_guard lock(m_mutex);
    const bool known = m_subscriptions.erase(job) > 0;
    ListenNoLongerInVain();
    return known;
}

void StreamEvents::EndAll() {
    std::lock_guard lock(m_mutex);
    m_subscriptions.clear();
    ListenNoLongerInVain();
}

bool StreamEvents::IsWanted(const std::string& url) {
    std::lock_guard lock(m_mutex);
    return std::any_of(m_subscriptions.begin(), m_subscriptions.end(),
                       [&](const auto& entry) { return entry.second.url == url && !entry.second.event; });
}

// One reading serves all subscriptions that were waiting for the target by its end.
void StreamEvents::ReadTarget(const std::string& url) {
    if (!IsWanted(url)) return;
    auto download = Load(url, [&] { return IsWanted(url); });
    if (!download) return;
    auto declaration = download->fault.empty() ? ReadEventDeclaration(download->content)
                                               : EventDeclaration{{}, std::move(download->fault)};
    m_telling.Post([=, this] { TargetRead(url, declaration); });
}

void StreamEvents::GiveUp(unsigned long job) {
    std::lock_guard lock(m_mutex);
    const auto late = m_subscriptions.find(job);
    if (late == m_subscriptions.end() || late->second.event) return;
    EndFaulty([&](Subscription& subscription) {
        return &subscription == &late->second ? "its carousel did not bring it in time" : "";
    });
    ListenNoLongerInVain();
}

void StreamEvents::TargetRead(const std::string& url, const EventDeclaration& declaration) {
    {
        std::lock_guard lock(m_mutex);
        EndFaulty([&](Subscription& subscription) -> std::string {
            if (subscription.url != url || subscription.event) return "";
            const DeclaredEvent* found = nullptr;
            std::string fault = FaultOf(declaration, subscription.name, found);
            if (found) subscription.event = *found;
            return fault;
        });
        ListenNoLongerInVain();
    }
    FollowStream();
}

void StreamEvents::StreamChanged() {
    m_telling.Post([this] { FollowStream(); });
}

void StreamEvents::FollowStream() {
    const Route route = m_around.route();
    {
        std::lock_guard lock(m_listeningMutex);
        m_clockPid = route.clockPid;
    }
    std::lock_guard lock(m_mutex);
    EndFaulty([&](Subscription& subscription) { return Follow(subscription, route); });
    ListenNoLongerInVain();
}

// Finds where the event, or the carousel with its target, comes from now. Says why it does not come, when it cannot.
std::string StreamEvents::Follow(Subscription& subscription, const Route& route) {
    if (subscription.event) return FindStream(subscription, subscription.event->componentTag, route);
    return subscription.carousel ? FindStream(subscription, subscription.carousel->componentTag, route) : "";
}

std::string StreamEvents::FindStream(Subscription& subscription, int componentTag, const Route& route) {
    if (subscription.sid == 0) subscription.sid = subscription.carousel ? subscription.carousel->sid : route.sid;
    if (subscription.channel == 0) subscription.channel = route.id;
    const bool same = subscription.sid == route.sid && subscription.channel == route.id;
    if (route.state == Route::State::NotInStream || !same) return "its service is not received";
    if (route.state == Route::State::MapMissing) return "";
    const auto stream = route.taggedPids.find(componentTag);
    if (stream == route.taggedPids.end())
        return "the service has no stream with the component tag " + std::to_string(componentTag);
    if (!subscription.event)
        ReadCarousel(subscription, stream->second, route);
    else if (subscription.pid != stream->second)
        Listen(subscription, stream->second);
    return "";
}

void StreamEvents::ReadCarousel(const Subscription& subscription, std::uint16_t pid, const Route& route) {
    std::lock_guard lock(m_listeningMutex);
    const auto reading = m_carousels.find(subscription.url);
    if (reading != m_carousels.end() && reading->second.pid == pid) {
        reading->second.route = route;
        return;
    }
    Log("The carousel on PID " + std::to_string(pid) + " is searched for " + subscription.url + ".");
    CarouselReading begun{pid, ObjectCarousel(subscription.carousel->path), route, {}, {}};
    begun.collectors[pid];
    m_carousels.insert_or_assign(subscription.url, std::move(begun));
}

void StreamEvents::Listen(Subscription& subscription, std::uint16_t pid) {
    subscription.pid = pid;
    {
        std::lock_guard lock(m_listeningMutex);
        m_listening.try_emplace(pid);
    }
    Log("The stream event \"" + subscription.name + "\" of " + subscription.url + " is listened for on PID " +
        std::to_string(pid) + ".");
}

// Tells those subscriptions an error of which there is something to say, and ends them (ETSI TS 102 796,
// clause 8.2.1.2).
void StreamEvents::EndFaulty(const std::function<std::string(Subscription&)>& faultOf) {
    for (auto at = m_subscriptions.begin(); at != m_subscriptions.end();) {
        auto& [job, subscription] = *at;
        const std::string fault = faultOf(subscription);
        if (fault.empty()) {
            ++at;
            continue;
        }
        Log("The stream event \"" + subscription.name + "\" of " + subscription.url + " cannot be had: " + fault + ".");
        m_around.deliver({CDSMCCStreamEventData::E_STATUS_ERROR, 0, subscription.name, {}, job, 0});
        at = m_subscriptions.erase(at);
    }
}

void StreamEvents::ListenNoLongerInVain() {
    std::set<std::uint16_t> pids;
    std::set<std::string> targets;
    for (const auto& [job, subscription] : m_subscriptions) {
        pids.insert(subscription.pid);
        if (!subscription.event) targets.insert(subscription.url);
    }
    std::lock_guard lock(m_listeningMutex);
    std::erase_if(m_listening, [&](const auto& entry) { return !pids.contains(entry.first); });
    std::erase_if(m_carousels, [&](const auto& entry) { return !targets.contains(entry.first); });
}

void StreamEvents::PacketsReceived(std::span<const std::uint8_t> packets) {
    std::lock_guard lock(m_listeningMutex);
    if (m_listening.empty() && m_carousels.empty()) return;
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        HearClock(packets.data() + at);
        HearEvents(packets.data() + at);
        HearCarousels(packets.data() + at);
    }
}

double StreamEvents::SinceLastEvent() const {
    return std::chrono::duration<double, std::milli>(TaskQueue::Clock::now() - m_lastEvent.load()).count();
}

void StreamEvents::HearEvents(const std::uint8_t* packet) {
    const std::uint16_t pid = PidOf(packet);
    const auto listening = m_listening.find(pid);
    if (listening == m_listening.end()) return;
    listening->second.collector.Push(packet,
                                     [&](const Section& section) { TakeEvents(pid, listening->second, section); });
}

void StreamEvents::TakeEvents(std::uint16_t pid, Listening& listening, const Section& section) {
    if (const auto reference = ReferenceIn(section)) listening.timed.SetReference(*reference);
    auto timed = TimedEventsIn(section);
    auto events = EventsIn(section);
    if ((timed.empty() && events.empty()) || !listening.versions.IsNew(section)) return;
    if (timed.empty()) return Tell(pid, std::move(events));
    listening.timed.Plan(section, std::move(timed));
    if (!listening.timed.HasReference() && !std::exchange(listening.toldOfNoReference, true))
        Log("Stream events on PID " + std::to_string(pid) + " are timed by NPT: they wait for an NPT reference there.");
}

void StreamEvents::HearClock(const std::uint8_t* packet) {
    const auto clock = PidOf(packet) == m_clockPid ? ClockOf(packet) : std::nullopt;
    if (!clock) return;
    for (auto& [pid, listening] : m_listening)
        if (auto due = listening.timed.DueBy(*clock / 300); !due.empty()) Tell(pid, std::move(due));
}

void StreamEvents::Tell(std::uint16_t pid, std::vector<StreamEvent> events) {
    m_lastEvent = TaskQueue::Clock::now();
    m_telling.Post([=, this, events = std::move(events)] {
        for (const StreamEvent& event : events) Announce(pid, event);
    });
}

void StreamEvents::HearCarousels(const std::uint8_t* packet) {
    const std::uint16_t pid = PidOf(packet);
    for (auto& [url, reading] : m_carousels) {
        const auto collector = reading.collectors.find(pid);
        if (collector == reading.collectors.end()) continue;
        collector->second.Push(packet, [&, &target = url, &source = reading](const Section& section) {
            TakeSection(target, source, pid, section);
        });
    }
}

void StreamEvents::TakeSection(const std::string& url, CarouselReading& reading, std::uint16_t pid,
                               const Section& section) {
    // The beginning in another stream is that of another carousel.
    if (reading.ended || (pid != reading.pid && ReadGateway(section))) return;
    auto found = reading.carousel.Take(section);
    FollowAssociations(reading);
    if (!found) return;
    reading.ended = true;
    m_telling.Post([=, this, declaration = std::move(*found)] { TargetRead(url, declaration); });
}

// A carousel whose streams cannot be found is read from its own, as if it named that one.
void StreamEvents::FollowAssociations(CarouselReading& reading) {
    for (const std::uint16_t association : reading.carousel.Associations()) {
        const auto pid = reading.route.AssociatedPid(association);
        if (pid)
            reading.collectors.try_emplace(*pid);
        else if (reading.missing.insert(association).second)
            Log("The carousel on PID " + std::to_string(reading.pid) + " names a stream by the association tag " +
                std::to_string(association) + ", which the service has not.");
    }
}

void StreamEvents::Announce(std::uint16_t pid, const StreamEvent& event) {
    std::lock_guard lock(m_mutex);
    for (const auto& [job, subscription] : m_subscriptions)
        if (subscription.pid == pid && subscription.event->id == event.id)
            m_around.deliver(
                {CDSMCCStreamEventData::E_STATUS_TRIGGER, event.id, subscription.name, event.data, job, 0});
}

}  // namespace television
