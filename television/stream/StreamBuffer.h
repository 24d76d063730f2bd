// The last seconds of the whole multiplex, so that a channel change need not wait for the next random access point.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <vector>

#include "television/stream/TransportPacket.h"

namespace television {

// What a receiver of one service wants of the multiplex.
struct ServiceSelection {
    std::uint16_t tablePid = kNullPid;   // of its PMT
    std::uint16_t accessPid = kNullPid;  // begin at a random access point of this PID: video, or audio without video
    std::uint8_t accessType = 0;         // its stream type
    bool accessAnywhere = false;         // each beginning of a unit of that PID is one (sound)
    std::set<std::uint16_t> pids = {};   // elementary streams and the clock
};

class StreamBuffer {
public:
    // Called under the buffer's lock, on the receiving thread (the first time on Attach's): packets must only be taken.
    using Feed = std::function<void(std::vector<std::uint8_t>&& packets)>;

    // Keeps packets, and passes those that the attached feed selected on. `now` is the stream's time in 27 MHz.
    void Write(std::span<const std::uint8_t> packets, std::int64_t now);
    // Gives the feed its tables and everything since the last random access point, or since the next one when none is
    // kept, then what comes: no gap, nothing twice. Replaces the feed before.
    void Attach(const ServiceSelection& selection, Feed feed);
    // After this no call of the feed is in progress or will come.
    void Detach();
    // Forgets what was kept: what follows does not continue it.
    void Clear();

private:
    struct Batch {
        std::vector<std::uint8_t> packets;
        std::int64_t time;
    };
    // A packet in m_batches.
    struct Place {
        std::size_t batch, offset;
        auto operator<=>(const Place&) const = default;
    };
    const std::uint8_t* At(Place place) const { return m_batches[place.batch].packets.data() + place.offset; }
    bool Back(Place& place) const;
    Place End() const { return {m_batches.size(), 0}; }
    Place FindAccess(const ServiceSelection& selection) const;
    void CopyTable(std::uint16_t pid, std::vector<std::uint8_t>& packets) const;
    void CopyFrom(Place start, const ServiceSelection& selection, std::vector<std::uint8_t>& packets) const;
    void CopyWritten(std::span<const std::uint8_t> packets, std::vector<std::uint8_t>& wanted);
    void Trim();

    std::mutex m_mutex;
    std::deque<Batch> m_batches;
    std::size_t m_bytes = 0;
    ServiceSelection m_selection;
    bool m_waiting = false;  // for a random access point
    Feed m_feed;
};

}  // namespace television
