// What the demonstration multiplex contains: its services, their streams and their programmes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace television::demonstration {

// Network ids of the range for private, temporary use (ETSI TS 101 162).
inline constexpr std::uint16_t kOnid = 0xff01, kNid = 0xff01, kTsid = 0x0401;
inline constexpr std::uint32_t kFrequency = 61'800'000;  // in 10 Hz

// Atlas One's stream events, as examples/demo/events.xml declares them: "tick" comes each second, and its text is the
// second of the minute; "message" comes when it is asked for.
inline constexpr std::uint16_t kTickPid = 0x104, kTickId = 1, kMessageId = 3;
inline constexpr std::uint8_t kTickTag = 10;

// Atlas One's DVB subtitles, a page a second.
inline constexpr std::uint16_t kGermanSubtitlePid = 0x105, kEnglishSubtitlePid = 0x106, kSubtitlePage = 1;

struct Stream {
    std::uint8_t type;  // private data: DVB subtitles
    std::uint16_t pid;
    std::uint8_t tag;
    std::string language;        // of sound and subtitles
    std::uint8_t audioType = 0;  // of ISO_639_language_descriptor
};

struct Programme {
    std::string name, description;
    std::uint8_t rating;  // of parental_rating_descriptor: the age less three, 0 for none
};

// The CA system of the scrambled service: the European broadcasters' common one, which needs no key messages.
inline constexpr std::uint16_t kCaSystemId = 0x2600;

struct ServiceInfo {
    std::uint16_t sid;
    int number;
    std::uint8_t serviceType;
    std::string name;
    std::uint16_t mapPid, clockPid;
    std::vector<Stream> streams;
    std::vector<Programme> programmes;  // they follow each other, a minute each, and begin again
    bool scrambled = false;
};

// The PIDs of video and audio are those that make-stream gives them.
const std::vector<ServiceInfo>& Services();
// Services that are on the air only when somebody, or the timetable, says so; their pictures and sound are those of the
// others.
inline constexpr std::uint16_t kPopUpSid = 0x6e10;
const std::vector<ServiceInfo>& OccasionalServices();

}  // namespace television::demonstration
