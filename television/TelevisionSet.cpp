// How a stream becomes a television: read its tables, keep its last seconds, present its first channel.
#include "television/TelevisionSet.h"

#include <algorithm>
#include <utility>

#include "television/Log.h"
#include "television/interfaces/StreamEventCallback.h"

namespace television {
namespace {

using namespace std::chrono_literals;

void Call(const std::function<void()>& function) {
    if (function) function();
}

// The tables that list the services are sent one after the other.
constexpr auto kSettlingTime = 150ms;
// What has been read is told when it takes longer than this.
constexpr auto kMoment = 700ms;

std::string StreamNamed(const std::string& name) { return name.empty() ? "The stream" : "The stream \"" + name + "\""; }

}  // namespace

TelevisionSet::TelevisionSet(ListenerGate& gate, const Observer& observer, SoundOutput sound,
                             const std::string& language)
    : m_gate(gate),
      m_observer(observer),
      m_presentation({m_directory, m_screen, m_gate, m_queue, m_lock,
                      [this](std::size_t place) -> Multiplex& { return *m_multiplexes[place]; },
                      [this] { ChannelChanged(); }},
                     std::move(sound), language),
      m_events({[this] { return m_directory.RouteTo(m_presentation.Selected()); },
                [](const CDSMCCStreamEventData& event) { StreamEventCallback::TheCallback().Call(event); }}),
      m_resources(m_presentation, m_gate, m_queue) {
    ConnectScreen();
}

TelevisionSet::~TelevisionSet() { Shutdown(); }

void TelevisionSet::ConnectScreen() {
    m_screen.pictureChanged = [this] { Call(m_observer.pictureChanged); };
    m_screen.layoutChanged = [this] { Call(m_observer.layoutChanged); };
    m_screen.aspectChanged = [this] {
        m_queue.Post([this] {
            m_gate.Tell([] { return true; }, [](IBroadcastPlayerListener& listener) { listener.UpdateLayout(); });
        });
    };
}

void TelevisionSet::Shutdown() {
    if (m_multiplexes.empty() || !m_multiplexes.front()->TheReceiver()) return;
    for (const auto& multiplex : m_multiplexes) multiplex->End();
    m_events.EndAll();
    m_queue.Post([this] { m_presentation.Close(); });
    m_queue.Drain();
    m_queue.Stop();
}

std::optional<std::string> TelevisionSet::Start(std::unique_ptr<PacketSource> source, const Progress& progress) {
    std::vector<Input> inputs;
    inputs.push_back({"", std::move(source)});
    return Start(std::move(inputs), progress);
}

// All multiplexes are there before any of them calls.
std::optional<std::string> TelevisionSet::Start(std::vector<Input> inputs, const Progress& progress) {
    for (std::size_t place = 0; place < inputs.size(); ++place)
        m_multiplexes.push_back(std::make_unique<Multiplex>(place, static_cast<MultiplexClient&>(*this)));
    for (std::size_t place = 0; place < inputs.size(); ++place)
        m_multiplexes[place]->Begin(std::move(inputs[place].source));
    WaitForTables(inputs, progress);
    if (progress) progress(std::to_string(m_directory.Services().size()) + " services found");
    for (std::size_t place = 0; place < inputs.size(); ++place)
        if (auto fault = FaultOf(place, inputs[place].name)) return fault;
    m_queue.Post([this] { m_started = true; });
    if (const auto first = m_directory.First()) m_presentation.SelectSilently(first->id);
    return std::nullopt;
}

bool TelevisionSet::IsRead() const {
    return std::all_of(m_multiplexes.begin(), m_multiplexes.end(),
                       [](const auto& multiplex) { return multiplex->IsRead(); });
}

void TelevisionSet::WaitForTables(const std::vector<Input>& inputs, const Progress& progress) {
    if (progress) progress("Reading the stream's service information");
    const auto started = std::chrono::steady_clock::now();
    std::string told;
    while (!IsRead()) {
        {
            std::unique_lock lock(m_mutex);
            m_received.wait_for(lock, 50ms);
        }
        if (!progress || std::chrono::steady_clock::now() - started < kMoment) continue;
        std::string text;
        for (std::size_t place = 0; place < inputs.size(); ++place)
            if (const std::string state = m_multiplexes[place]->ReadingText(); !state.empty() && text.empty())
                text = (inputs[place].name.empty() ? "" : inputs[place].name + ": ") + state;
        if (text.empty() || text == told) continue;
        progress("Reading the stream's service information: " + text);
        told = text;
    }
}

std::optional<std::string> TelevisionSet::FaultOf(std::size_t multiplex, const std::string& name) const {
    if (!m_multiplexes[multiplex]->HasAssociation())
        return StreamNamed(name) +
               " has no programme association table within 5 seconds: it is no complete transport stream.";
    for (const Service& service : m_directory.LeftOut())
        if (m_directory.MultiplexOf(service.id) == multiplex)
            return StreamNamed(name) + " and another one both have the service " + std::to_string(service.sid) +
                   " on transport stream " + std::to_string(service.tsid) + " of network " +
                   std::to_string(service.onid) + ": give each multiplex once, with numbers of its own.";
    for (const Service& service : m_directory.Services())
        if (m_directory.MultiplexOf(service.id) == multiplex) return std::nullopt;
    return StreamNamed(name) + " has no services: give a transport stream with at least one.";
}

void TelevisionSet::ConnectAerial(bool connected) {
    for (const auto& multiplex : m_multiplexes) multiplex->TheReceiver()->Connect(connected);
}

// Stream events are heard of the multiplex that is watched.
void TelevisionSet::PacketsReceived(std::size_t multiplex, std::span<const std::uint8_t> packets) {
    if (m_directory.MultiplexOf(m_presentation.Selected()) == multiplex) m_events.PacketsReceived(packets);
    m_received.notify_all();
}

void TelevisionSet::ChannelChanged() {
    m_events.StreamChanged();
    Call(m_observer.channelChanged);
}

void TelevisionSet::TablesRead(std::size_t multiplex, const Tables& tables) {
    const bool servicesChanged = m_directory.Update(tables, multiplex);
    m_events.StreamChanged();
    m_queue.Post([=, this] {
        m_presentation.TablesChanged();
        if (LockedServicesChanged() || servicesChanged) AnnounceServices();
    });
}

// A change of the services shows in one table after the other: it is told when they have come.
void TelevisionSet::AnnounceServices() {
    if (!m_started || std::exchange(m_announcingServices, true)) return;
    m_queue.PostAt(TaskQueue::Clock::now() + kSettlingTime, [this] {
        m_announcingServices = false;
        Call(m_observer.servicesChanged);
    });
}

void TelevisionSet::PostFor(std::size_t multiplex, void (Presentation::*operation)()) {
    m_queue.Post([=, this] {
        if (m_directory.MultiplexOf(m_presentation.Selected()) == multiplex) (m_presentation.*operation)();
    });
}

void TelevisionSet::ScramblingChanged(std::size_t multiplex) { PostFor(multiplex, &Presentation::Reconsider); }
void TelevisionSet::StreamBroke(std::size_t multiplex) { PostFor(multiplex, &Presentation::StreamBroke); }
void TelevisionSet::SignalLost(std::size_t multiplex) { PostFor(multiplex, &Presentation::SignalLost); }
void TelevisionSet::SignalReturned(std::size_t multiplex) { PostFor(multiplex, &Presentation::SignalReturned); }

void TelevisionSet::SetLock(std::optional<int> age) {
    m_lock.Set(age);
    m_queue.Post([this] { LockChanged(); });
}

// On the television's thread.
void TelevisionSet::LockChanged() {
    m_presentation.Reconsider();
    if (LockedServicesChanged()) Call(m_observer.servicesChanged);
}

bool TelevisionSet::LockedServicesChanged() {
    std::vector<unsigned int> locked;
    if (m_lock.IsOn())
        for (const Service& service : m_directory.Services())
            if (IsLocked(service)) locked.push_back(service.id);
    return std::exchange(m_lockedServices, locked) != locked;
}

void TelevisionSet::SetCountry(const std::string& country) {
    m_directory.SetCountry(country);
    m_lock.SetCountry(country);
}

bool TelevisionSet::IsLocked(const Service& service) const {
    return m_lock.IsOn() && m_lock.Blocks(service.id, m_directory.Events(service.id));
}

std::optional<std::string> TelevisionSet::EnterPin(const std::string& pin) {
    const unsigned int id = m_presentation.Selected();
    const auto events = m_directory.Events(id);
    const bool blocked = m_lock.Blocks(id, events);
    if (!m_lock.Open(pin, id, events)) return "The PIN is wrong: enter the one of this television.";
    if (!blocked) return "Nothing is blocked: the PIN opens a programme that the parental lock blocks.";
    m_queue.Post([this] { LockChanged(); });
    return std::nullopt;
}

std::optional<std::string> TelevisionSet::SetScrambling(bool on) {
    for (const auto& multiplex : m_multiplexes)
        if (multiplex->TheReceiver()->Scramble(on)) return std::nullopt;
    return "This stream cannot be scrambled or cleared: only the demonstration can.";
}

std::optional<std::string> TelevisionSet::TellRights(const Rights& rights) {
    if (!m_gate.HasListener()) return "No page has the broadcast: open one that binds its object to the channel.";
    std::uint16_t caSystemId = 0;
    for (const Component& component : m_directory.RouteTo(m_presentation.Selected()).components)
        if (component.encrypted && caSystemId == 0) caSystemId = component.caSystemId;
    caSystemId = rights.caSystemId.value_or(caSystemId);
    m_queue.Post([=, this] {
        m_gate.Tell([] { return true; },
                    [&](IBroadcastPlayerListener& listener) {
                        if (auto* module = dynamic_cast<ISASListener*>(&listener))
                            module->OnSASMessageReceived(MessageOf(rights, caSystemId).release());
                    });
    });
    return std::nullopt;
}

}  // namespace television
