// Puts DVB subtitles into a multiplex, in the place of its null packets: a page each second and language.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "television/demonstration/TableInjector.h"

namespace television::demonstration {

class SubtitleInjector {
public:
    struct Track {
        std::uint16_t pid;
        std::function<std::string(std::int64_t now)> text;  // at a time, in seconds since 1970
    };

    // `clockPid`: of the service whose pictures they accompany.
    SubtitleInjector(std::uint16_t clockPid, std::vector<Track> tracks, TableInjector::WallClock wallClock);

    // Replaces packets in place; their number stays the same.
    void Process(std::vector<std::uint8_t>& packets);

private:
    void Queue(std::int64_t clock);

    struct Sent {
        Track track;
        std::uint8_t continuity = 0;
    };
    std::uint16_t m_clockPid;
    std::vector<Sent> m_tracks;
    TableInjector::WallClock m_wallClock;
    std::optional<std::int64_t> m_lastPage;  // when it was queued, by the clock
    unsigned m_version = 0;
    std::deque<std::uint8_t> m_queue;  // whole packets
};

// The demonstration's: the time of day in German and in English.
SubtitleInjector MakeSubtitleInjector(TableInjector::WallClock wallClock);

}  // namespace television::demonstration
