// The sections of each table, one entry in each where there may be several.
#include "tests/fuzz/TableWriter.h"

#include <algorithm>
#include <limits>

#include "television/tables/DvbTime.h"

namespace television::fuzz {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::SectionHeader;

constexpr std::uint16_t kPatPid = 0x00, kNitPid = 0x10, kSdtPid = 0x11, kEitPid = 0x12;
constexpr std::size_t kLargestBody = 1012, kMostSections = 256;
constexpr std::int64_t kSecondsPerHundredHours = 360'000;

Bytes Loop(const Descriptors& descriptors) {
    Bytes loop;
    for (const Descriptor& descriptor : descriptors)
        loop.Put8(descriptor.tag).Put8(static_cast<unsigned>(descriptor.data.size())).Put(
            {reinterpret_cast<const char*>(descriptor.data.data()), descriptor.data.size()});
    return loop;
}

class Writer {
public:
    std::vector<WrittenSection> Take(Tables& tables) {
        if (tables.association && !WriteAssociation(*tables.association)) tables.association.reset();
        if (!tables.association) tables.maps.clear();
        std::erase_if(tables.maps, [&](const auto& entry) { return !WriteMap(*tables.association, entry); });
        if (tables.description && !WriteDescription(*tables.description)) tables.description.reset();
        if (tables.network && !WriteNetwork(*tables.network)) tables.network.reset();
        std::erase_if(tables.events, [&](const auto& entry) { return !WriteEvents(entry.first, entry.second); });
        return std::move(m_sections);
    }

private:
    // One body a section. False when they are too many or too long.
    bool Add(std::uint16_t pid, unsigned table, unsigned extension, const std::vector<Bytes>& bodies) {
        if (bodies.empty() || bodies.size() > kMostSections) return false;
        for (const Bytes& body : bodies)
            if (body.Size() > kLargestBody) return false;
        const auto last = static_cast<unsigned>(bodies.size() - 1);
        for (unsigned number = 0; number <= last; ++number)
            m_sections.push_back({pid, MakeSection({table, extension, 0, number, last}, bodies[number])});
        return true;
    }

    bool WriteAssociation(const AssociationTable& association) {
        std::vector<Bytes> bodies(1);
        const auto put = [&](unsigned sid, unsigned pid) {
            if (bodies.back().Size() + 4 > kLargestBody) bodies.emplace_back();
            bodies.back().Put16(sid).Put16(0xe000 | pid);
        };
        if (association.networkPid) put(0, *association.networkPid);
        for (const auto& entry : association.services) put(entry.sid, entry.pid);
        return bodies.front().Size() > 0 && Add(kPatPid, 0x00, association.tsid, bodies);
    }

    bool WriteMap(const AssociationTable& association, const std::pair<const std::uint16_t, MapTable>& entry) {
        const auto& [sid, map] = entry;
        const auto place = std::find_if(association.services.begin(), association.services.end(),
                                        [sid = sid](const auto& service) { return service.sid == sid; });
        Bytes body;
        body.Put16(0xe000 | map.clockPid).PutLoop(Loop(map.descriptors));
        for (const ElementaryStream& stream : map.streams)
            body.Put8(stream.type).Put16(0xe000 | stream.pid).PutLoop(Loop(stream.descriptors));
        return place != association.services.end() && Add(place->pid, 0x02, sid, {body});
    }

    bool WriteDescription(const DescriptionTable& description) {
        std::vector<Bytes> bodies;
        const Bytes head = Bytes().Put16(description.onid).Put8(0xff);
        for (const auto& entry : description.services) {
            const Bytes loop = Loop(entry.descriptors);
            const unsigned scrambled = entry.scrambled ? 0x1000 : 0;
            bodies.push_back(Bytes(head).Put16(entry.sid).Put8(0xfc));
            bodies.back().Put16(0x8000 | scrambled | static_cast<unsigned>(loop.Size())).Put(loop);
        }
        if (bodies.empty()) bodies.push_back(head);
        return Add(kSdtPid, 0x42, 1, bodies);
    }

    bool WriteNetwork(const NetworkTable& network) {
        std::vector<Bytes> bodies;
        for (const auto& entry : network.streams) {
            const Bytes stream = Bytes().Put16(entry.tsid).Put16(entry.onid).PutLoop(Loop(entry.descriptors));
            bodies.push_back(Bytes().PutLoop({}).PutLoop(stream));
        }
        if (bodies.empty()) bodies.push_back(Bytes().PutLoop({}).PutLoop({}));
        return Add(kNitPid, 0x40, network.nid, bodies);
    }

    static bool HasADate(const Event& event) {
        const std::int64_t day = event.start / kSecondsPerDay + kModifiedJulianDateOf1970;
        return event.start >= 0 && day <= std::numeric_limits<std::uint16_t>::max() &&
               event.duration < kSecondsPerHundredHours;
    }

    // The present ones in section 0, the following ones in section 1.
    bool WriteEvents(std::uint16_t sid, const std::vector<Event>& events) {
        std::vector<Bytes> bodies(2, Bytes().Put32(0).Put8(1).Put8(0x4e));
        for (const Event& event : events) {
            if (!HasADate(event)) return false;
            const Bytes loop = Loop(event.descriptors);
            const std::uint64_t duration = BcdSeconds(event.duration);
            bodies[event.following].Put16(event.id).Put40(DvbTime(event.start));
            bodies[event.following].Put8(static_cast<unsigned>(duration >> 16)).Put16(static_cast<unsigned>(duration));
            bodies[event.following].Put16(0x8000 | static_cast<unsigned>(loop.Size())).Put(loop);
        }
        return Add(kEitPid, 0x4e, sid, bodies);
    }

    std::vector<WrittenSection> m_sections;
};

}  // namespace

std::vector<WrittenSection> Write(Tables& tables) { return Writer().Take(tables); }

}  // namespace television::fuzz
