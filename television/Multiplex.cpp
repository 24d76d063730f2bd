// Packets to tables and into the buffer, and how long tables are waited for.
#include "television/Multiplex.h"

#include <algorithm>

namespace television {
namespace {

using namespace std::chrono_literals;

// How long tables may take, in the stream's time and on the clock: PAT and PMT come each half second, SDT each two
// seconds, NIT each ten (ETSI TS 101 211, clause 4.4). Without the latter two a stream still has services.
constexpr std::int64_t kAssociationTime = 5 * kClockRate;
constexpr std::int64_t kDescriptionTime = 3 * kClockRate;
constexpr std::int64_t kNetworkTime = 11 * kClockRate;
constexpr auto kLongestReading = 15s;
// And so much is buffered before the first channel is tuned to, that it can begin at once.
constexpr std::int64_t kTuningTime = kClockRate * 3 / 2;

}  // namespace

Multiplex::Multiplex(std::size_t place, MultiplexClient& client)
    : m_place(place), m_client(client), m_tables([this](const Tables& tables) { TablesChanged(tables); }) {}

void Multiplex::Begin(std::unique_ptr<PacketSource> source) {
    m_begun = SteadyClock::now();
    m_receiver = std::make_unique<Receiver>(std::move(source), static_cast<ReceiverClient&>(*this));
}

bool Multiplex::Reading::Enough(std::int64_t time) const {
    const bool networkRead = network || time > (networkNamed ? kNetworkTime : kDescriptionTime);
    const bool descriptionRead = description || time > kDescriptionTime;
    const bool services = association && (maps || time > kAssociationTime);
    return (services ? descriptionRead && networkRead : time > kAssociationTime) && time > kTuningTime;
}

bool Multiplex::IsRead() const {
    const auto passed = SteadyClock::now() - m_begun;
    const std::int64_t onClock = std::chrono::duration_cast<std::chrono::microseconds>(passed).count() * 27;
    std::lock_guard lock(m_mutex);
    return passed >= kLongestReading || m_reading.Enough(std::max(m_reading.streamTime, onClock));
}

bool Multiplex::HasAssociation() const {
    std::lock_guard lock(m_mutex);
    return m_reading.association;
}

std::string Multiplex::ReadingText() const {
    std::lock_guard lock(m_mutex);
    const Reading& is = m_reading;
    if (is.Complete()) return "";
    const auto state = [](const char* name, bool read) { return read ? name : std::string("no ") + name + " yet"; };
    const std::string maps = std::to_string(is.mapsRead) + " of " + std::to_string(is.mapsNamed) + " PMTs";
    return state("PAT", is.association) + (is.association ? ", " + maps : "") + ", " + state("SDT", is.description) +
           ", " + (is.association && !is.networkNamed ? "no NIT in this stream" : state("NIT", is.network));
}

void Multiplex::PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t now) {
    bool scramblingChanged = false;
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        m_tables.Push(packets.data() + at);
        scramblingChanged = m_scrambling.Push(packets.data() + at) || scramblingChanged;
    }
    m_buffer.Write(packets, now);
    if (scramblingChanged) m_client.ScramblingChanged(m_place);
    {
        std::lock_guard lock(m_mutex);
        m_reading.streamTime = now;
    }
    m_client.PacketsReceived(m_place, packets);
}

void Multiplex::TablesChanged(const Tables& tables) {
    m_client.TablesRead(m_place, tables);
    std::lock_guard lock(m_mutex);
    m_reading.association = tables.association.has_value();
    m_reading.maps = tables.association && tables.maps.size() >= tables.association->services.size();
    m_reading.mapsRead = tables.maps.size();
    m_reading.mapsNamed = tables.association ? tables.association->services.size() : 0;
    m_reading.networkNamed = tables.association && tables.association->networkPid;
    m_reading.description = tables.description.has_value();
    m_reading.network = tables.network.has_value();
}

void Multiplex::StreamBroke() {
    m_buffer.Clear();
    m_scrambling.Forget();
    m_client.StreamBroke(m_place);
}

// Channels that are selected now must not begin with what was received before.
void Multiplex::SignalLost() {
    m_buffer.Clear();
    m_client.SignalLost(m_place);
}

}  // namespace television
