// Sections on the PIDs of tables: what is read can be listed, and says the same once it is written and read again.
#include "television/tables/ProgrammeList.h"
#include "television/tables/ServiceList.h"
#include "television/tables/TableReader.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/TableWriter.h"

namespace television::fuzz {
namespace {

class Reading {
public:
    void Push(std::uint16_t pid, const Bytes& section) {
        Bytes packets;
        demonstration::Packetize(section, pid & 0x1fff, m_continuity[pid & 0x1fff], packets);
        ForEachPacket(packets, [this](const std::uint8_t* packet) { m_reader.Push(packet); });
    }
    const Tables& Current() const { return m_reader.Current(); }

private:
    TableReader m_reader{[](const Tables&) {}};
    std::map<std::uint16_t, std::uint8_t> m_continuity;
};

void List(const Tables& tables) {
    ServiceIds ids;
    for (const Service& service : ListServices(tables, ids)) {
        Demand(IsUtf8(service.name) && !service.name.empty(), "every service has a name in UTF-8");
        for (const Programme& programme : ListProgrammes(tables, service))
            Demand(IsUtf8(programme.name), "a programme's name is UTF-8");
    }
}

void DemandSameAgain(Tables tables) {
    Reading again;
    const auto sections = Write(tables);  // and from now on the tables are those that could be written
    for (const auto& [pid, section] : sections) again.Push(pid, section);
    Demand(again.Current().association == tables.association, "a PAT is the same when it is read again");
    Demand(again.Current().maps == tables.maps, "PMTs are the same when they are read again");
    Demand(again.Current().description == tables.description, "an SDT is the same when it is read again");
    Demand(again.Current().network == tables.network, "a NIT is the same when it is read again");
    Demand(again.Current().events == tables.events, "events are the same when they are read again");
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    Reading reading;
    for (Chunk& chunk : Split(input))
        if (const auto section = Completed(std::move(chunk.bytes))) reading.Push(chunk.number, *section);
    List(reading.Current());
    DemandSameAgain(reading.Current());
}

}  // namespace television::fuzz
