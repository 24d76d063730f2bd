// The video, audio and subtitle components of a service, as its PMT tells them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "television/tables/Tables.h"

namespace television {

enum class ComponentType { Video = 0, Audio = 1, Subtitle = 2 };

struct Component {
    ComponentType type = ComponentType::Video;
    unsigned int index = 0;  // among those of its type
    std::uint16_t pid = 0;
    std::uint8_t streamType = 0;
    std::optional<int> tag;
    std::string language;  // three letters, or empty
    std::string encoding;  // OIPF media formats, clause 3; with letters, digits and underscores only
    bool encrypted = false;
    std::uint16_t caSystemId = 0;  // of what is encrypted (ETSI TS 101 162)
    bool audioDescription = false;
    bool hearingImpaired = false;
    int audioChannels = 0;
    std::uint16_t compositionPage = 0, ancillaryPage = 0;  // of DVB subtitles: the pages of the stream that carry them
};

inline constexpr const char* kDvbSubtitles = "DVB_SUBT";
inline constexpr const char* kTeletextSubtitles = "EBU_SUBT";

// The tag that a service calls a stream by, if it gives it one.
std::optional<int> ComponentTag(const ElementaryStream& stream);

// In the PMT's order. `hd` names the encoding of video.
std::vector<Component> ListComponents(const MapTable& map, bool hd = false);

// The arguments of the page's AVComponent class. `aspectRatio` is the presented picture's, where it is known.
std::string ArgumentText(const Component& component, std::optional<double> aspectRatio, bool active);

}  // namespace television
