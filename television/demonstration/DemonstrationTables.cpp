// The sections of each table (ISO/IEC 13818-1, clause 2.4.4; ISO/IEC 13818-6, clause 8; ETSI EN 300 468, clause 5.2).
#include "television/demonstration/DemonstrationTables.h"

#include <algorithm>

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/MessageEvents.h"
#include "television/events/StreamEventSection.h"
#include "television/stream/StreamTypes.h"
#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbTime.h"

namespace television::demonstration {
namespace {

constexpr std::uint16_t kPatPid = 0x00, kNitPid = 0x10, kSdtPid = 0x11, kEitPid = 0x12, kTdtPid = 0x14;
constexpr unsigned kPat = 0x00, kPmt = 0x02, kNit = 0x40, kSdt = 0x42, kEit = 0x4e, kTdt = 0x70;
constexpr unsigned kRunning = 4, kNotRunning = 1;
constexpr std::int64_t kProgrammeLength = 60;
constexpr std::int64_t kMillisecond = 27'000;
constexpr unsigned kHdSubtitles = 0x14;  // ETSI EN 300 468, table 26
constexpr const char* kProvider = "Atlas";

Section AssociationSection(const Broadcast::Listing& listing) {
    Bytes body;
    body.Put16(0).Put16(0xe000 | kNitPid);
    for (const ServiceInfo& service : listing.services) body.Put16(service.sid).Put16(0xe000 | service.mapPid);
    return MakeSection({kPat, kTsid, listing.version}, body);
}

Bytes StreamDescriptors(const Stream& stream) {
    Bytes descriptors;
    descriptors.PutDescriptor(kStreamIdentifierTag, Bytes().Put8(stream.tag));
    if (stream.type == kPrivateData)
        descriptors.PutDescriptor(kSubtitlingTag, Bytes()
                                                      .Put(stream.language)
                                                      .Put8(kHdSubtitles)
                                                      .Put16(kSubtitlePage)
                                                      .Put16(kSubtitlePage));
    else if (!stream.language.empty())
        descriptors.PutDescriptor(kLanguageTag, Bytes().Put(stream.language).Put8(stream.audioType));
    return descriptors;
}

// The CA system needs no key messages, so no PID has them.
Bytes ServiceDescriptors(const ServiceInfo& service) {
    Bytes descriptors;
    if (service.scrambled) descriptors.PutDescriptor(kCaTag, Bytes().Put16(kCaSystemId).Put16(0xe000 | kNullPid));
    return descriptors;
}

Section MapSection(const ServiceInfo& service) {
    Bytes body;
    body.Put16(0xe000 | service.clockPid).PutLoop(ServiceDescriptors(service));
    for (const Stream& stream : service.streams)
        body.Put8(stream.type).Put16(0xe000 | stream.pid).PutLoop(StreamDescriptors(stream));
    return MakeSection({kPmt, service.sid}, body);
}

Section DescriptionSection(const Broadcast::Listing& listing) {
    constexpr unsigned kHasPresentFollowing = 0x01;
    Bytes body;
    body.Put16(kOnid).Put8(0xff);
    for (const ServiceInfo& service : listing.services) {
        Bytes descriptors;
        descriptors.PutDescriptor(kServiceTag,
                                  Bytes().Put8(service.serviceType).PutText(kProvider).PutText(service.name));
        body.Put16(service.sid).Put8(0xfc | kHasPresentFollowing);
        const unsigned scrambled = service.scrambled ? 1 << 12 : 0;
        body.Put16(kRunning << 13 | scrambled | static_cast<unsigned>(descriptors.Size())).Put(descriptors);
    }
    return MakeSection({kSdt, kTsid, listing.version}, body);
}

// 8 MHz, 64-QAM, code rate 2/3, guard interval 1/8, 8k carriers.
Bytes TerrestrialDelivery() { return Bytes().Put32(kFrequency).Put8(0x1f).Put8(0x81).Put8(0x0a).Put32(0xffffffff); }

Bytes NetworkStreamDescriptors(const std::vector<ServiceInfo>& services) {
    Bytes list, numbers, descriptors;
    for (const ServiceInfo& service : services) {
        list.Put16(service.sid).Put8(service.serviceType);
        numbers.Put16(service.sid).Put16(0xfc00 | static_cast<unsigned>(service.number));
    }
    descriptors.PutDescriptor(kServiceListTag, list);
    descriptors.PutDescriptor(kTerrestrialDeliveryTag, TerrestrialDelivery());
    descriptors.PutDescriptor(kPrivateDataSpecifierTag, Bytes().Put32(kSpecifierEacem));
    descriptors.PutDescriptor(kLogicalChannelTag, numbers);
    return descriptors;
}

Section NetworkSection(const Broadcast::Listing& listing) {
    Bytes name, stream, body;
    name.PutDescriptor(kNetworkNameTag, Bytes().Put("Demonstration"));
    stream.Put16(kTsid).Put16(kOnid).PutLoop(NetworkStreamDescriptors(listing.services));
    body.PutLoop(name).PutLoop(stream);
    return MakeSection({kNit, kNid, listing.version}, body);
}

Bytes EventDescriptors(const Programme& programme) {
    Bytes text, descriptors;
    text.Put("eng").PutText(programme.name).PutText(programme.description);
    descriptors.PutDescriptor(kShortEventTag, text);
    if (programme.rating != 0) descriptors.PutDescriptor(kParentalRatingTag, Bytes().Put("DEU").Put8(programme.rating));
    return descriptors;
}

// What is on in a minute: as many programmes further as are skipped.
struct Slot {
    std::int64_t minute, skipped;
    bool following;
};

// Section 0 is for the present slot, 1 for the following one.
Section EventSection(const ServiceInfo& service, const Slot& slot, unsigned version) {
    const std::int64_t count = slot.minute + slot.skipped;
    const auto index = static_cast<std::size_t>(count) % service.programmes.size();
    const Bytes descriptors = EventDescriptors(service.programmes[index]);
    Bytes body;
    body.Put16(kTsid).Put16(kOnid).Put8(1).Put8(kEit);
    body.Put16(static_cast<unsigned>(count & 0xffff)).Put40(DvbTime(slot.minute * kProgrammeLength));
    body.Put8(0).Put16(static_cast<unsigned>(BcdSeconds(kProgrammeLength)));
    body.Put16((slot.following ? kNotRunning : kRunning) << 13 | static_cast<unsigned>(descriptors.Size()));
    body.Put(descriptors);
    return MakeSection({kEit, service.sid, version, slot.following ? 1u : 0u, 1}, body);
}

std::vector<Section> EventSections(const Broadcast& broadcast, std::int64_t now) {
    const std::int64_t minute = now / kProgrammeLength, skipped = broadcast.Skipped();
    const auto version = static_cast<unsigned>((minute + skipped) & 0x1f);
    std::vector<Section> sections;
    for (const ServiceInfo& service : broadcast.List().services) {
        sections.push_back(EventSection(service, {minute, skipped, false}, version));
        sections.push_back(EventSection(service, {minute + 1, skipped, true}, version));
    }
    return sections;
}

Section TimeSection(std::int64_t now) { return MakeShortSection(kTdt, Bytes().Put40(DvbTime(now))); }

// A new version each second.
std::vector<Section> TickSections(std::int64_t now) {
    return {StreamEventSection(kTickId, static_cast<unsigned>(now & 0x1f), std::to_string(now % 60))};
}

}  // namespace

// Of the bits before the text, those of the time (NPT) are zero.
Section StreamEventSection(std::uint16_t id, unsigned version, std::string_view text) {
    Bytes event, descriptors;
    event.Put16(id).Put32(0xfffffffe).Put32(0).Put(text);
    descriptors.PutDescriptor(kStreamEventTag, event);
    return MakeSection({kStreamDescriptorTable, id, version & 0x1f}, descriptors);
}

std::vector<RepeatedTable> Tables(std::shared_ptr<const Broadcast> broadcast) {
    if (!broadcast) broadcast = std::make_shared<Broadcast>();
    // What the PAT listed last: no other table lists a service before the PAT does.
    const auto listed = std::make_shared<Broadcast::Listing>(broadcast->List());
    const auto associate = [=](std::int64_t) {
        *listed = broadcast->List();
        return std::vector<Section>{AssociationSection(*listed)};
    };
    const auto listing = [listed](Section (*make)(const Broadcast::Listing&)) {
        return [=](std::int64_t) { return std::vector<Section>{make(*listed)}; };
    };
    const auto version = [broadcast] { return std::int64_t{broadcast->Version()}; };
    const auto listedVersion = [listed] { return std::int64_t{listed->version}; };
    const auto onAir = [broadcast](const ServiceInfo& service) {
        const auto services = broadcast->List().services;
        return std::ranges::find(services, service.sid, &ServiceInfo::sid) != services.end();
    };
    std::vector<RepeatedTable> tables{
        {kPatPid, 100 * kMillisecond, associate, version},
        {kNitPid, 1000 * kMillisecond, listing(NetworkSection), listedVersion},
        {kSdtPid, 1000 * kMillisecond, listing(DescriptionSection), listedVersion},
        {kEitPid, 500 * kMillisecond, [=](std::int64_t now) { return EventSections(*broadcast, now); },
         [=] { return broadcast->Skipped(); }},
        {kTdtPid, 1000 * kMillisecond, [](std::int64_t now) { return std::vector<Section>{TimeSection(now)}; }},
        {kTickPid, 200 * kMillisecond, TickSections},
        {kTickPid, 40 * kMillisecond, [](std::int64_t) { return MessageEvents::Instance().Due(); }},
    };
    for (const auto* services : {&Services(), &OccasionalServices()})
        for (const ServiceInfo& service : *services)
            tables.push_back({service.mapPid, 100 * kMillisecond, [=, section = MapSection(service)](std::int64_t) {
                                  return onAir(service) ? std::vector<Section>{section} : std::vector<Section>{};
                              }});
    return tables;
}

}  // namespace television::demonstration
