// Which table is due, and which packet can carry it.
#include "television/demonstration/TableInjector.h"

#include <algorithm>

namespace television::demonstration {

TableInjector::TableInjector(std::vector<RepeatedTable> tables, std::set<std::uint16_t> replaced, WallClock wallClock)
    : m_replaced(std::move(replaced)), m_wallClock(std::move(wallClock)) {
    for (RepeatedTable& table : tables) m_tables.push_back({std::move(table)});
    m_replaced.insert(kNullPid);
}

void TableInjector::Process(std::vector<std::uint8_t>& packets) {
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        std::uint8_t* packet = packets.data() + at;
        m_clock.Observe(packet);
        if (m_queue.empty()) QueueDueTables();
        if (m_replaced.contains(PidOf(packet))) Fill(packet);
    }
}

void TableInjector::QueueDueTables() {
    for (Scheduled& scheduled : m_tables) {
        const std::int64_t version = scheduled.table.version ? scheduled.table.version() : 0;
        if (m_clock.Now() < scheduled.due && version == scheduled.version) continue;
        scheduled.version = version;
        scheduled.due = m_clock.Now() + scheduled.table.interval;
        std::vector<std::uint8_t> packets;
        for (const Section& section : scheduled.table.make(m_wallClock()))
            Packetize(section, scheduled.table.pid, m_continuity[scheduled.table.pid], packets);
        m_queue.insert(m_queue.end(), packets.begin(), packets.end());
    }
}

void TableInjector::Fill(std::uint8_t* packet) {
    if (m_queue.empty()) {
        MakeNullPacket(packet);
        return;
    }
    const auto end = m_queue.begin() + kPacketSize;
    std::copy(m_queue.begin(), end, packet);
    m_queue.erase(m_queue.begin(), end);
}

}  // namespace television::demonstration
