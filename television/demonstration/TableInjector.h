// Puts repeated tables into a multiplex, in the place of its null packets.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "television/demonstration/DemonstrationTables.h"
#include "television/stream/StreamClock.h"

namespace television::demonstration {

class TableInjector {
public:
    using WallClock = std::function<std::int64_t()>;  // seconds since 1970

    // Packets of the `replaced` PIDs are dropped: the multiplex brings tables of its own on them.
    TableInjector(std::vector<RepeatedTable> tables, std::set<std::uint16_t> replaced, WallClock wallClock);

    // Replaces packets in place; their number stays the same.
    void Process(std::vector<std::uint8_t>& packets);

private:
    void QueueDueTables();
    void Fill(std::uint8_t* packet);

    struct Scheduled {
        RepeatedTable table;
        std::int64_t due = 0, version = 0;
    };
    std::vector<Scheduled> m_tables;
    std::set<std::uint16_t> m_replaced;
    WallClock m_wallClock;
    StreamClock m_clock;
    std::map<std::uint16_t, std::uint8_t> m_continuity;
    std::deque<std::uint8_t> m_queue;  // whole packets
};

}  // namespace television::demonstration
