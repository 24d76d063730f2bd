// Sections in packets of every cut: those that are whole come out as they went in, whatever stands between them.
#include "television/tables/SectionCollector.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

constexpr std::size_t kHeader = 4, kSectionHeader = 8, kCrc = 4, kMostAdaptation = 182;

// Cuts sections into packets of one PID, one behind the other without stuffing. The room in a packet is what the
// adaptation field leaves, which `room` says for each packet in turn.
class Cutter {
public:
    explicit Cutter(const Bytes& room) : m_room(room) {}

    void Add(const Bytes& section) {
        m_starts.push_back(m_bytes.size());
        m_bytes.insert(m_bytes.end(), section.begin(), section.end());
    }

    void Cut(const std::function<void(const std::uint8_t*)>& use) {
        for (std::size_t at = 0, number = 0; at < m_bytes.size(); ++number) at = CutOne(at, number, use);
    }

private:
    std::size_t CutOne(std::size_t at, std::size_t number, const std::function<void(const std::uint8_t*)>& use) {
        const std::size_t adaptation = m_room.empty() ? 0 : m_room[number % m_room.size()] % kMostAdaptation;
        Bytes packet{kSyncByte, 0x01, 0x00, static_cast<std::uint8_t>((adaptation ? 0x30 : 0x10) | (number & 0x0f))};
        if (adaptation) {
            packet.push_back(static_cast<std::uint8_t>(adaptation - 1));
            packet.resize(kHeader + adaptation, 0);
        }
        while (m_next < m_starts.size() && m_starts[m_next] < at) ++m_next;
        const std::size_t room = kPacketSize - packet.size();
        if (m_next < m_starts.size() && m_starts[m_next] < at + room - 1) {
            packet[1] |= 0x40;
            packet.push_back(static_cast<std::uint8_t>(m_starts[m_next] - at));
        }
        const std::size_t count = std::min(kPacketSize - packet.size(), m_bytes.size() - at);
        packet.insert(packet.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(at),
                      m_bytes.begin() + static_cast<std::ptrdiff_t>(at + count));
        packet.resize(kPacketSize, 0xff);
        use(packet.data());
        return at + count;
    }

    Bytes m_room, m_bytes;
    std::vector<std::size_t> m_starts;
    std::size_t m_next = 0;
};

}  // namespace

// The first chunk tells the rooms, each other one is a section.
void Fuzz(std::span<const std::uint8_t> input) {
    const auto chunks = Split(input);
    if (chunks.empty()) return;
    Cutter cutter(chunks[0].bytes);
    std::vector<Bytes> sections;
    for (std::size_t i = 1; i < chunks.size(); ++i)
        if (auto section = Completed(chunks[i].bytes); section && (*section)[0] != 0xff) {
            cutter.Add(*section);
            sections.push_back(std::move(*section));
        }
    SectionCollector collector;
    std::size_t count = 0;
    cutter.Cut([&](const std::uint8_t* packet) {
        collector.Push(packet, [&](const Section& section) {
            Demand(count < sections.size(), "no more sections come out than went in");
            const Bytes& sent = sections[count++];
            Demand(std::equal(section.body.begin(), section.body.end(), sent.begin() + kSectionHeader,
                              sent.end() - kCrc),
                   "a section comes out as it went in");
        });
    });
    Demand(count == sections.size(), "every section comes out");
}

}  // namespace television::fuzz
