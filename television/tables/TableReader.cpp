// libdvbpsi's decoders, one for each PID and table, and copies of what they decode.
#include "television/tables/TableReader.h"

#include <algorithm>

#include "television/tables/Dvbpsi.h"
#include "television/tables/SectionGate.h"

namespace television {
namespace {

constexpr std::uint16_t kPatPid = 0x00, kNitPid = 0x10, kSdtPid = 0x11, kEitPid = 0x12;
constexpr std::uint8_t kNitActual = 0x40, kSdtActual = 0x42;
// A stream may invent a service for each section; so many we believe.
constexpr std::size_t kLargestServiceCount = 1024;

Descriptors Copy(const dvbpsi_descriptor_t* descriptor) {
    Descriptors copies;
    for (; descriptor; descriptor = descriptor->p_next)
        copies.push_back({descriptor->i_tag, {descriptor->p_data, descriptor->p_data + descriptor->i_length}});
    return copies;
}

AssociationTable Copy(const dvbpsi_pat_t& pat) {
    AssociationTable table{pat.i_ts_id, {}, {}};
    for (const auto* program = pat.p_first_program; program; program = program->p_next) {
        if (program->i_number == 0)
            table.networkPid = program->i_pid;
        else if (table.services.size() < kLargestServiceCount)
            table.services.push_back({program->i_number, program->i_pid});
    }
    return table;
}

MapTable Copy(const dvbpsi_pmt_t& pmt) {
    MapTable table{pmt.i_pcr_pid, Copy(pmt.p_first_descriptor), {}};
    for (const auto* stream = pmt.p_first_es; stream; stream = stream->p_next)
        table.streams.push_back({stream->i_type, stream->i_pid, Copy(stream->p_first_descriptor)});
    return table;
}

DescriptionTable Copy(const dvbpsi_sdt_t& sdt) {
    DescriptionTable table{sdt.i_network_id, {}};
    for (const auto* service = sdt.p_first_service; service && table.services.size() < kLargestServiceCount;
         service = service->p_next)
        table.services.push_back({service->i_service_id, service->b_free_ca, Copy(service->p_first_descriptor)});
    return table;
}

NetworkTable Copy(const dvbpsi_nit_t& nit) {
    NetworkTable table{nit.i_network_id, {}};
    for (const auto* stream = nit.p_first_ts; stream; stream = stream->p_next)
        table.streams.push_back({stream->i_ts_id, stream->i_orig_network_id, Copy(stream->p_first_descriptor)});
    return table;
}

}  // namespace

// One of libdvbpsi's decoders with the packets' PID that it is for.
struct TableReader::Decoder {
    Decoder(TableReader& owner, std::uint16_t from) : reader(owner), pid(from) {}
    ~Decoder() {
        if (detach) detach(handle);
        dvbpsi_delete(handle);
    }
    void Push(const std::uint8_t* packet) {
        gate.Push(packet, [this](std::uint8_t* passed) { dvbpsi_packet_push(handle, passed); });
    }

    TableReader& reader;
    SectionGate gate;
    std::uint16_t pid;
    std::uint16_t sid = 0;  // of a PMT
    bool ended = false;
    dvbpsi_t* handle = dvbpsi_new(nullptr, DVBPSI_MSG_NONE);
    void (*detach)(dvbpsi_t*) = nullptr;
};

struct TableReader::Callbacks {
    static void Association(void* decoder, dvbpsi_pat_t* pat) {
        if (pat->b_current_next) static_cast<Decoder*>(decoder)->reader.AcceptAssociation(Copy(*pat));
        dvbpsi_pat_delete(pat);
    }
    static void Map(void* decoder, dvbpsi_pmt_t* pmt) {
        auto& reader = static_cast<Decoder*>(decoder)->reader;
        if (pmt->b_current_next) reader.Accept(reader.m_tables.maps[pmt->i_program_number], Copy(*pmt));
        dvbpsi_pmt_delete(pmt);
    }
    static void Description(void* decoder, dvbpsi_sdt_t* sdt) {
        auto& reader = static_cast<Decoder*>(decoder)->reader;
        if (sdt->b_current_next) reader.Accept(reader.m_tables.description, std::optional(Copy(*sdt)));
        dvbpsi_sdt_delete(sdt);
    }
    static void Network(void* decoder, dvbpsi_nit_t* nit) {
        auto& reader = static_cast<Decoder*>(decoder)->reader;
        if (nit->b_current_next) reader.Accept(reader.m_tables.network, std::optional(Copy(*nit)));
        dvbpsi_nit_delete(nit);
    }
    static void Subtable(dvbpsi_t* handle, std::uint8_t table, std::uint16_t extension, void* decoder) {
        if (table == kSdtActual)
            dvbpsi_sdt_attach(handle, table, extension, Description, decoder);
        else if (table == kNitActual)
            dvbpsi_nit_attach(handle, table, extension, Network, decoder);
    }
};

TableReader::TableReader(std::function<void(const Tables&)> changed) : m_changed(std::move(changed)) {
    Decoder& association = Add(kPatPid);
    dvbpsi_pat_attach(association.handle, Callbacks::Association, &association);
    association.detach = dvbpsi_pat_detach;
    for (const std::uint16_t pid : {kNitPid, kSdtPid}) AddSubtables(pid);
    m_wanted[kEitPid] = true;
}

TableReader::~TableReader() = default;

TableReader::Decoder& TableReader::Add(std::uint16_t pid) {
    m_decoders.push_back(std::make_unique<Decoder>(*this, pid));
    m_wanted[pid] = true;
    return *m_decoders.back();
}

void TableReader::AddMap(std::uint16_t sid, std::uint16_t pid) {
    Decoder& decoder = Add(pid);
    decoder.sid = sid;
    dvbpsi_pmt_attach(decoder.handle, sid, Callbacks::Map, &decoder);
    decoder.detach = dvbpsi_pmt_detach;
}

void TableReader::AddSubtables(std::uint16_t pid) {
    Decoder& decoder = Add(pid);
    dvbpsi_AttachDemux(decoder.handle, Callbacks::Subtable, &decoder);
    decoder.detach = dvbpsi_DetachDemux;
}

void TableReader::Push(const std::uint8_t* packet) {
    const std::uint16_t pid = PidOf(packet);
    if (!m_wanted[pid] || (packet[1] & 0x80) || IsScrambled(packet)) return;
    if (pid == kEitPid)
        m_events.Push(packet, [this](std::uint16_t sid, std::vector<Event> events) {
            Accept(m_tables.events[sid], std::move(events));
        });
    // By index: a table that is decoded here can add decoders.
    for (std::size_t i = 0; i < m_decoders.size(); ++i)
        if (m_decoders[i]->pid == pid && !m_decoders[i]->ended)
            m_decoders[i]->Push(packet);
    DropEndedDecoders();
}

template <class Table>
void TableReader::Accept(Table& slot, Table table) {
    if (slot == table) return;
    slot = std::move(table);
    m_changed(m_tables);
}

void TableReader::AcceptAssociation(AssociationTable table) {
    if (m_tables.association == table) return;
    for (auto& decoder : m_decoders) {
        const AssociationTable::Entry entry{decoder->sid, decoder->pid};
        const bool listed = std::count(table.services.begin(), table.services.end(), entry) > 0;
        decoder->ended = decoder->sid != 0 && !listed;
    }
    for (const auto& entry : table.services) {
        const auto same = [&](const auto& decoder) { return decoder->sid == entry.sid && decoder->pid == entry.pid; };
        if (std::none_of(m_decoders.begin(), m_decoders.end(), same) && m_decoders.size() < kLargestServiceCount)
            AddMap(entry.sid, entry.pid);
    }
    std::erase_if(m_tables.maps, [&](const auto& map) {
        return std::none_of(table.services.begin(), table.services.end(),
                            [&](const auto& entry) { return entry.sid == map.first; });
    });
    m_tables.association = std::move(table);
    m_changed(m_tables);
}

void TableReader::DropEndedDecoders() {
    std::erase_if(m_decoders, [](const auto& decoder) { return decoder->ended; });
}

}  // namespace television
