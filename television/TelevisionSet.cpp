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

// How long tables may take, in the stream's time and on the clock: PAT and PMT come each half second, SDT each two
// seconds, NIT each ten (ETSI TS 101 211, clause 4.4). Without the latter two a stream still has services.
constexpr std::int64_t kAssociationTime = 5 * kClockRate;
constexpr std::int64_t kDescriptionTime = 3 * kClockRate;
constexpr std::int64_t kNetworkTime = 11 * kClockRate;
constexpr auto kLongestReading = 15s;
// What has been read is told when it takes longer than this.
constexpr auto kMoment = 700ms;
// The tables that list the services are sent one after the other.
constexpr auto kSettlingTime = 150ms;
// And so much is buffered before the first channel is tuned to, that it can begin at once.
constexpr std::int64_t kTuningTime = kClockRate * 3 / 2;

}  // namespace

TelevisionSet::TelevisionSet(ListenerGate& gate, const Observer& observer, SoundOutput sound,
                             const std::string& language)
    : m_gate(gate),
      m_observer(observer),
      m_presentation({m_directory, m_buffer, m_screen, m_gate, m_queue, m_lock, m_scrambling,
                      [this] { ChannelChanged(); }},
                     std::move(sound), language),
      m_events({[this] { return m_directory.RouteTo(m_presentation.Selected()); },
                [](const CDSMCCStreamEventData& event) { StreamEventCallback::TheCallback().Call(event); }}),
      m_resources(m_presentation, m_gate, m_queue),
      m_tables([this](const Tables& tables) { TablesRead(tables); }) {
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
    if (!m_receiver) return;
    m_receiver.reset();
    m_events.EndAll();
    m_queue.Post([this] { m_presentation.Close(); });
    m_queue.Drain();
    m_queue.Stop();
}

std::optional<std::string> TelevisionSet::Start(std::unique_ptr<PacketSource> source, const Progress& progress) {
    m_receiver = std::make_unique<Receiver>(std::move(source), static_cast<ReceiverClient&>(*this));
    if (auto error = ReadTables(progress)) return error;
    m_receiver->KeepTime();
    m_queue.Post([this] { m_started = true; });
    if (const auto first = m_directory.First()) m_presentation.SelectSilently(first->id);
    return std::nullopt;
}

// Waits for more to be read. False when nothing more is to be waited for.
bool TelevisionSet::WaitForTables(SteadyClock::time_point started) {
    std::unique_lock lock(m_mutex);
    const std::int64_t onClock =
        std::chrono::duration_cast<std::chrono::microseconds>(SteadyClock::now() - started).count() * 27;
    const std::int64_t time = std::max(m_reading.streamTime, onClock);
    const bool network = m_reading.network || time > (m_reading.networkNamed ? kNetworkTime : kDescriptionTime);
    const bool description = m_reading.description || time > kDescriptionTime;
    const bool services = m_reading.association && (m_reading.maps || time > kAssociationTime);
    const bool read = services ? description && network : time > kAssociationTime;
    if (read && time > kTuningTime) return false;
    m_readingChanged.wait_for(lock, 50ms);
    return SteadyClock::now() - started < kLongestReading;
}

std::string TelevisionSet::Reading::Text() const {
    if (Complete()) return "";
    const auto state = [](const char* name, bool read) { return read ? name : std::string("no ") + name + " yet"; };
    const std::string maps = std::to_string(mapsRead) + " of " + std::to_string(mapsNamed) + " PMTs";
    return state("PAT", association) + (association ? ", " + maps : "") + ", " + state("SDT", description) + ", " +
           (association && !networkNamed ? "no NIT in this stream" : state("NIT", network));
}

std::string TelevisionSet::ReadingText() {
    std::lock_guard lock(m_mutex);
    return m_reading.Text();
}

std::optional<std::string> TelevisionSet::ReadTables(const Progress& progress) {
    if (progress) progress("Reading the stream's service information");
    const auto started = SteadyClock::now();
    std::string told;
    while (WaitForTables(started)) {
        const std::string text = ReadingText();
        if (!progress || text.empty() || text == told || SteadyClock::now() - started < kMoment) continue;
        progress("Reading the stream's service information: " + text);
        told = text;
    }
    const auto services = m_directory.Services();
    if (progress) progress(std::to_string(services.size()) + " services found");
    std::lock_guard lock(m_mutex);
    if (!m_reading.association)
        return "The stream has no programme association table within 5 seconds: it is no complete transport stream.";
    if (services.empty()) return "The stream has no services: give a transport stream with at least one.";
    return std::nullopt;
}

void TelevisionSet::PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t now) {
    bool scramblingChanged = false;
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        m_tables.Push(packets.data() + at);
        scramblingChanged = m_scrambling.Push(packets.data() + at) || scramblingChanged;
    }
    m_buffer.Write(packets, now);
    if (scramblingChanged) m_queue.Post([this] { m_presentation.Reconsider(); });
    m_events.PacketsReceived(packets);
    std::lock_guard lock(m_mutex);
    m_reading.streamTime = now;
    m_readingChanged.notify_all();
}

void TelevisionSet::ChannelChanged() {
    m_events.StreamChanged();
    Call(m_observer.channelChanged);
}

void TelevisionSet::TablesRead(const Tables& tables) {
    const bool servicesChanged = m_directory.Update(tables);
    {
        std::lock_guard lock(m_mutex);
        m_reading.association = tables.association.has_value();
        m_reading.maps = tables.association && tables.maps.size() >= tables.association->services.size();
        m_reading.mapsRead = tables.maps.size();
        m_reading.mapsNamed = tables.association ? tables.association->services.size() : 0;
        m_reading.networkNamed = tables.association && tables.association->networkPid;
        m_reading.description = tables.description.has_value();
        m_reading.network = tables.network.has_value();
    }
    m_readingChanged.notify_all();
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

void TelevisionSet::StreamBroke() {
    m_buffer.Clear();
    m_scrambling.Forget();
    m_queue.Post([this] { m_presentation.StreamBroke(); });
}

void TelevisionSet::SignalLost() {
    m_buffer.Clear();
    m_queue.Post([this] { m_presentation.SignalLost(); });
}

void TelevisionSet::SignalReturned() {
    m_queue.Post([this] { m_presentation.SignalReturned(); });
}

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
    if (m_receiver && m_receiver->Scramble(on)) return std::nullopt;
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
