// Batches of packets, searched backwards for a place to begin.
#include "television/stream/StreamBuffer.h"

#include "television/stream/RandomAccess.h"

namespace television {
namespace {

constexpr std::int64_t kKeptTime = 3 * kClockRate;
constexpr std::size_t kKeptBytes = 64 << 20;
constexpr std::uint16_t kPatPid = 0;

bool IsTable(const ServiceSelection& selection, const std::uint8_t* packet) {
    return PidOf(packet) == kPatPid || PidOf(packet) == selection.tablePid;
}

bool Selected(const ServiceSelection& selection, const std::uint8_t* packet) {
    return IsTable(selection, packet) || selection.pids.contains(PidOf(packet));
}

bool IsAccess(const ServiceSelection& selection, const std::uint8_t* packet) {
    return PidOf(packet) == selection.accessPid && StartsUnit(packet) && !IsScrambled(packet) &&
           (selection.accessAnywhere || BeginsRandomAccess(packet, selection.accessType));
}

void CopyStreams(const ServiceSelection& selection, std::span<const std::uint8_t> from,
                 std::vector<std::uint8_t>& to) {
    for (std::size_t at = 0; at < from.size(); at += kPacketSize)
        if (selection.pids.contains(PidOf(from.data() + at)))
            to.insert(to.end(), from.begin() + static_cast<std::ptrdiff_t>(at),
                      from.begin() + static_cast<std::ptrdiff_t>(at + kPacketSize));
}

}  // namespace

void StreamBuffer::Write(std::span<const std::uint8_t> packets, std::int64_t now) {
    std::lock_guard lock(m_mutex);
    m_batches.push_back({{packets.begin(), packets.end()}, now});
    m_bytes += packets.size();
    Trim();
    if (!m_feed) return;
    std::vector<std::uint8_t> wanted;
    CopyWritten(packets, wanted);
    if (!wanted.empty()) m_feed(std::move(wanted));
}

// Until a random access point comes, only tables are wanted: what else is decoded before it shows nothing, but the
// clock of the presentation would begin with it.
void StreamBuffer::CopyWritten(std::span<const std::uint8_t> packets, std::vector<std::uint8_t>& wanted) {
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        const std::uint8_t* packet = packets.data() + at;
        m_waiting = m_waiting && !IsAccess(m_selection, packet);
        if (m_waiting ? IsTable(m_selection, packet) : Selected(m_selection, packet))
            wanted.insert(wanted.end(), packet, packet + kPacketSize);
    }
}

void StreamBuffer::Trim() {
    const std::int64_t now = m_batches.back().time;
    while (m_batches.size() > 1 && (now - m_batches.front().time > kKeptTime || m_bytes > kKeptBytes)) {
        m_bytes -= m_batches.front().packets.size();
        m_batches.pop_front();
    }
}

void StreamBuffer::Attach(const ServiceSelection& selection, Feed feed) {
    std::lock_guard lock(m_mutex);
    m_selection = selection;
    m_feed = std::move(feed);
    std::vector<std::uint8_t> packets;
    const Place start = FindAccess(selection);
    m_waiting = start == End();
    CopyTable(kPatPid, packets);
    CopyTable(selection.tablePid, packets);
    CopyFrom(start, selection, packets);
    if (!packets.empty()) m_feed(std::move(packets));
}

void StreamBuffer::Detach() {
    std::lock_guard lock(m_mutex);
    m_feed = nullptr;
}

void StreamBuffer::Clear() {
    std::lock_guard lock(m_mutex);
    m_batches.clear();
    m_bytes = 0;
}

// Moves to the packet before. False at the first one.
bool StreamBuffer::Back(Place& place) const {
    if (place.offset > 0) {
        place.offset -= kPacketSize;
        return true;
    }
    if (place.batch == 0) return false;
    --place.batch;
    place.offset = m_batches[place.batch].packets.size() - kPacketSize;
    return true;
}

// The last random access point whose picture is complete: only when the next one has begun can it be decoded.
StreamBuffer::Place StreamBuffer::FindAccess(const ServiceSelection& selection) const {
    bool complete = false;
    for (Place place = End(); Back(place);) {
        const std::uint8_t* packet = At(place);
        if (PidOf(packet) != selection.accessPid || !StartsUnit(packet)) continue;
        if (complete && IsAccess(selection, packet)) return place;
        complete = true;
    }
    return End();
}

// Copies the packets from the last beginning of a section of the PID: one table, as long as it is one section, which the
// PAT and each PMT of a channel are in practice. It is the newest one, whatever the pictures before it were sent with: by
// it the channel was found.
void StreamBuffer::CopyTable(std::uint16_t pid, std::vector<std::uint8_t>& packets) const {
    std::vector<const std::uint8_t*> found;
    for (Place place = End(); Back(place);) {
        if (PidOf(At(place)) != pid) continue;
        found.push_back(At(place));
        if (!StartsUnit(At(place))) continue;
        for (auto packet = found.rbegin(); packet != found.rend(); ++packet) {
            if (packet != found.rbegin() && StartsUnit(*packet)) break;
            packets.insert(packets.end(), *packet, *packet + kPacketSize);
        }
        return;
    }
}

void StreamBuffer::CopyFrom(Place start, const ServiceSelection& selection, std::vector<std::uint8_t>& packets) const {
    for (std::size_t batch = start.batch; batch < m_batches.size(); ++batch) {
        const std::span<const std::uint8_t> all(m_batches[batch].packets);
        CopyStreams(selection, all.subspan(batch == start.batch ? start.offset : 0), packets);
    }
}

}  // namespace television
