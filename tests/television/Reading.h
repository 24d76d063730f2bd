// The tables of a stream that a test makes section by section.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "television/demonstration/DemonstrationTables.h"
#include "television/tables/TableReader.h"
#include "tests/television/Packets.h"

namespace television::test {

// Reads all sections that the tables make at a time.
class Reading {
public:
    void Read(const std::vector<demonstration::RepeatedTable>& tables, std::int64_t now) {
        for (const auto& table : tables)
            for (const auto& section : table.make(now)) Read(section, table.pid);
    }
    void Read(const demonstration::Section& section, std::uint16_t pid) {
        Packets packets;
        demonstration::Packetize(section, pid, m_continuity[pid], packets);
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) m_reader.Push(packets.data() + at);
    }
    const Tables& Current() const { return m_reader.Current(); }
    int Changes() const { return m_changes; }

private:
    int m_changes = 0;
    std::map<std::uint16_t, std::uint8_t> m_continuity;
    TableReader m_reader{[this](const Tables&) { ++m_changes; }};
};

}  // namespace television::test
