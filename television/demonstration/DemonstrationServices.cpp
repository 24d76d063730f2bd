// The services of the demonstration, as a list.
#include "television/demonstration/DemonstrationServices.h"

#include "television/stream/StreamTypes.h"
#include "television/stream/TransportPacket.h"

namespace television::demonstration {
namespace {

// ETSI EN 300 468, table 87.
constexpr std::uint8_t kSdTelevision = 0x01, kRadio = 0x02, kDataBroadcast = 0x0c, kHdTelevision = 0x19;
constexpr std::uint8_t kCommentary = 0x03;  // audio for the visually impaired

std::vector<ServiceInfo> Make() {
    return {
        {0x6e01,
         1,
         kHdTelevision,
         "Atlas One",
         0x100,
         0x101,
         {{kH264Video, 0x101, 1, "", 0},
          {kMpeg1Audio, 0x102, 2, "deu", 0},
          {kMpeg1Audio, 0x103, 3, "eng", 0},
          {kStreamDescriptors, kTickPid, kTickTag, "", 0},
          {kPrivateData, kGermanSubtitlePid, 5, "deu", 0},
          {kPrivateData, kEnglishSubtitlePid, 6, "eng", 0}},
         {{"Morning on One", "The first programme of the minute.", 0},
          {"The Harbour", "A drama in very short episodes.", 9},
          {"Midnight Express Line", "A thriller for grown-ups.", 13}}},
        {0x6e02,
         2,
         kHdTelevision,
         "Atlas Two",
         0x200,
         0x201,
         {{kH264Video, 0x201, 1, "", 0}, {kMpeg1Audio, 0x202, 2, "eng", kCommentary}},
         {{"Green Rooms", "Gardens and those who keep them.", 1}, {"Two at Noon", "Talk.", 3}}},
        {0x6e03,
         3,
         kSdTelevision,
         "Boreal",
         0x300,
         0x301,
         {{kMpeg2Video, 0x301, 1, "", 0}, {kMpeg1Audio, 0x302, 2, "fra", 0}},
         {{"Café Boréal", "Musique et conversation.", 0}, {"Nordlicht", "Ein Film über die Polarnacht.", 9}}},
        {0x6e04,
         71,
         kRadio,
         "Atlas Radio",
         0x400,
         0x402,
         {{kMpeg1Audio, 0x402, 1, "eng", 0}},
         {{"Long Wave", "A tone, and nothing but the tone.", 0}, {"Short Wave", "The same tone.", 0}}},
        {0x6e05,
         81,
         kSdTelevision,
         "Atlas Key",
         0x600,
         0x601,
         {{kH264Video, 0x601, 1, "", 0}, {kMpeg1Audio, 0x602, 2, "eng", 0}},
         {{"Behind the Door", "For those who have the key.", 0}, {"The Locksmith", "A series.", 0}},
         true},
    };
}

std::vector<ServiceInfo> MakeOccasional() {
    return {
        {kPopUpSid,
         5,
         kHdTelevision,
         "Atlas Pop-up",
         0x700,
         0x201,
         {{kH264Video, 0x201, 1, "", 0}, {kMpeg1Audio, 0x402, 2, "eng", 0}},
         {{"Here Today", "A festival, for as long as it lasts.", 0}, {"Gone Tomorrow", "Its last evening.", 3}}},
        {0x6e11,
         90,
         kDataBroadcast,
         "Atlas Data",
         0x710,
         kNullPid,
         {},
         {{"Pages", "Nothing to see, much to read.", 0}}},
    };
}

}  // namespace

const std::vector<ServiceInfo>& OccasionalServices() {
    static const auto& services = *new std::vector<ServiceInfo>(MakeOccasional());
    return services;
}

const std::vector<ServiceInfo>& Services() {
    static const auto& services = *new std::vector<ServiceInfo>(Make());
    return services;
}

}  // namespace television::demonstration
