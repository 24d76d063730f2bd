// Reads the tables from the packets of a transport stream: the EIT itself (libdvbpsi does not tell the present event
// from the following one), the others with libdvbpsi.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "television/stream/TransportPacket.h"
#include "television/tables/EventSections.h"
#include "television/tables/Tables.h"

struct dvbpsi_s;

namespace television {

class TableReader {
public:
    // `changed` is called from inside Push when a table says something else than before.
    explicit TableReader(std::function<void(const Tables&)> changed);
    ~TableReader();
    TableReader(const TableReader&) = delete;
    TableReader& operator=(const TableReader&) = delete;

    void Push(const std::uint8_t* packet);
    const Tables& Current() const { return m_tables; }

private:
    struct Decoder;
    struct Callbacks;

    Decoder& Add(std::uint16_t pid);
    void AddMap(std::uint16_t sid, std::uint16_t pid);
    void AddSubtables(std::uint16_t pid);
    void AcceptAssociation(AssociationTable table);
    void DropEndedDecoders();
    template <class Table>
    void Accept(Table& slot, Table table);

    std::function<void(const Tables&)> m_changed;
    Tables m_tables;
    EventSections m_events;
    std::vector<std::unique_ptr<Decoder>> m_decoders;
    std::array<bool, kPids> m_wanted{};
};

}  // namespace television
