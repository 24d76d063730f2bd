// What the descriptors of a PMT say of each stream.
#include "television/tables/Components.h"

#include <array>
#include <cmath>

#include "television/stream/StreamTypes.h"
#include "television/tables/DescriptorTags.h"

namespace television {
namespace {

constexpr int kUsualChannels = 2;

bool IsVideo(std::uint8_t type) {
    return type == kMpeg1Video || type == kMpeg2Video || type == kH264Video || type == kH265Video;
}

std::string VideoEncoding(std::uint8_t type, bool hd) {
    const std::string format = hd ? "_HD_25" : "_SD_25";
    if (type == kH264Video) return "AVC" + format;
    return (type == kH265Video ? "HEVC" : "MPEG2") + format;
}

// The encoding of sound in such a stream; empty when it is no sound that the television knows.
std::string AudioEncoding(const ElementaryStream& stream) {
    switch (stream.type) {
        case kMpeg1Audio:
        case kMpeg2Audio:
            return "MPEG1_L2";
        case kAacAudio:
        case kLatmAudio:
            return "HEAAC";
        case kPrivateData:
            if (Find(stream.descriptors, kAc3Tag)) return "AC3";
            return Find(stream.descriptors, kEnhancedAc3Tag) ? "E_AC3" : Find(stream.descriptors, kDtsTag) ? "DTS" : "";
        default:
            return "";
    }
}

std::string Letters(const std::uint8_t* code) {
    std::string letters;
    for (std::size_t i = 0; i < 3; ++i)
        if ((code[i] >= 'A' && code[i] <= 'Z') || (code[i] >= 'a' && code[i] <= 'z'))
            letters.push_back(static_cast<char>(code[i]));
    return letters.size() == 3 ? letters : "";
}

// ISO/IEC 13818-1, table 2-60: audio_type.
void ReadLanguage(const ElementaryStream& stream, Component& component) {
    const Descriptor* descriptor = Find(stream.descriptors, kLanguageTag);
    if (!descriptor || descriptor->data.size() < 4) return;
    component.language = Letters(descriptor->data.data());
    component.hearingImpaired = descriptor->data[3] == 0x02;
    component.audioDescription = descriptor->data[3] == 0x03;
}

// ETSI EN 300 468, clause 6.4.11: supplementary_audio_descriptor.
void ReadSupplementary(const ElementaryStream& stream, Component& component) {
    for (const auto& [tag, data] : stream.descriptors) {
        if (tag != kExtensionTag || data.size() < 2 || data[0] != kSupplementaryAudioExtension) continue;
        const int classification = data[1] >> 2 & 0x1f;
        component.audioDescription = component.audioDescription || classification == 1;
        component.hearingImpaired = component.hearingImpaired || classification == 2;
        if (component.language.empty() && (data[1] & 1) && data.size() >= 5)
            component.language = Letters(data.data() + 2);
    }
}

// ETSI EN 300 468, annex D: the component_type of an AC-3 or enhanced AC-3 descriptor, where it has one.
void ReadAc3(const ElementaryStream& stream, Component& component) {
    const Descriptor* ac3 = Find(stream.descriptors, kAc3Tag);
    const Descriptor* descriptor = ac3 ? ac3 : Find(stream.descriptors, kEnhancedAc3Tag);
    if (!descriptor || descriptor->data.size() < 2 || !(descriptor->data[0] & 0x80)) return;
    constexpr std::array<int, 8> channels{1, 2, 2, 2, 6, 8, 2, 2};
    const int type = descriptor->data[1], service = type >> 3 & 7;
    component.audioChannels = channels[type & 7];
    component.audioDescription = component.audioDescription || service == 2;
    component.hearingImpaired = component.hearingImpaired || service == 3;
}

// ETSI EN 300 468, annex H and table 26: the AAC_type, a component_type of stream content 6, where there is one.
void ReadAac(const ElementaryStream& stream, Component& component) {
    const Descriptor* descriptor = Find(stream.descriptors, kAacTag);
    if (!descriptor || descriptor->data.size() < 3 || !(descriptor->data[1] & 0x80)) return;
    const int type = descriptor->data[2];
    if (type == 0x01) component.audioChannels = 1;
    if (type == 0x05) component.audioChannels = 6;
    const bool hearing = type == 0x41 || type == 0x45;
    component.hearingImpaired = component.hearingImpaired || hearing;
    component.audioDescription =
        component.audioDescription || (type >= 0x40 && type <= 0x4a && type != 0x43 && !hearing);
}

// ISO/IEC 13818-1, clause 2.6.16: the CA_descriptor of the stream, else the service's.
void ReadAccess(const MapTable& map, const ElementaryStream& stream, Component& component) {
    const Descriptor* own = Find(stream.descriptors, kCaTag);
    const Descriptor* descriptor = own ? own : Find(map.descriptors, kCaTag);
    component.encrypted = descriptor != nullptr;
    if (descriptor && descriptor->data.size() >= 2)
        component.caSystemId = static_cast<std::uint16_t>(descriptor->data[0] << 8 | descriptor->data[1]);
}

Component Common(const MapTable& map, const ElementaryStream& stream) {
    Component component;
    component.pid = stream.pid;
    component.streamType = stream.type;
    ReadAccess(map, stream, component);
    component.tag = ComponentTag(stream);
    return component;
}

class Lister {
public:
    Lister(const MapTable& map, bool hd) : m_map(map), m_hd(hd) {}

    std::vector<Component> List() {
        for (const ElementaryStream& stream : m_map.streams) Take(stream);
        return std::move(m_components);
    }

private:
    void Take(const ElementaryStream& stream) {
        Component component = Common(m_map, stream);
        if (IsVideo(stream.type)) {
            component.encoding = VideoEncoding(stream.type, m_hd);
            Add(component, ComponentType::Video);
        } else if (component.encoding = AudioEncoding(stream); !component.encoding.empty()) {
            component.audioChannels = kUsualChannels;
            ReadLanguage(stream, component);
            ReadSupplementary(stream, component);
            ReadAc3(stream, component);
            ReadAac(stream, component);
            Add(component, ComponentType::Audio);
        } else if (stream.type == kPrivateData) {
            AddSubtitles(stream, component);
        }
    }

    // ETSI EN 300 468, clauses 6.2.41 and 6.2.43: a stream may carry subtitles in several languages.
    void AddSubtitles(const ElementaryStream& stream, Component component) {
        if (const Descriptor* subtitling = Find(stream.descriptors, kSubtitlingTag)) {
            component.encoding = kDvbSubtitles;
            for (std::size_t at = 0; at + 8 <= subtitling->data.size(); at += 8)
                AddDvbSubtitle(component, subtitling->data.data() + at);
        }
        if (const Descriptor* teletext = Find(stream.descriptors, kTeletextTag)) {
            component.encoding = kTeletextSubtitles;
            for (std::size_t at = 0; at + 5 <= teletext->data.size(); at += 5)
                if (const int type = teletext->data[at + 3] >> 3; type == 2 || type == 5)
                    AddSubtitle(component, teletext->data.data() + at, type == 5);
        }
    }

    // A language, the type (table 26), and the pages.
    void AddDvbSubtitle(Component component, const std::uint8_t* entry) {
        component.compositionPage = static_cast<std::uint16_t>(entry[4] << 8 | entry[5]);
        component.ancillaryPage = static_cast<std::uint16_t>(entry[6] << 8 | entry[7]);
        AddSubtitle(component, entry, entry[3] >= 0x20 && entry[3] < 0x30);
    }

    void AddSubtitle(Component component, const std::uint8_t* language, bool hearingImpaired) {
        component.language = Letters(language);
        component.hearingImpaired = hearingImpaired;
        Add(component, ComponentType::Subtitle);
    }

    void Add(Component component, ComponentType type) {
        component.type = type;
        component.index = m_counts[static_cast<std::size_t>(type)]++;
        m_components.push_back(std::move(component));
    }

    const MapTable& m_map;
    bool m_hd;
    std::vector<Component> m_components;
    std::array<unsigned int, 3> m_counts{};
};

const char* Text(bool value) { return value ? "true" : "false"; }

// With two decimals and a point, whatever the locale: 1.78.
std::string Decimal(double ratio) {
    const long hundredths = std::lround(ratio * 100);
    const std::string digits = std::to_string(hundredths % 100);
    return std::to_string(hundredths / 100) + "." + (digits.size() < 2 ? "0" : "") + digits;
}

}  // namespace

std::optional<int> ComponentTag(const ElementaryStream& stream) {
    const Descriptor* identifier = Find(stream.descriptors, kStreamIdentifierTag);
    return identifier && !identifier->data.empty() ? std::optional<int>(identifier->data[0]) : std::nullopt;
}

std::vector<Component> ListComponents(const MapTable& map, bool hd) { return Lister(map, hd).List(); }

std::string ArgumentText(const Component& component, std::optional<double> aspectRatio, bool active) {
    std::string text = std::to_string(static_cast<int>(component.type));
    const auto add = [&text](const std::string& argument) { text += ", " + argument; };
    add(std::to_string(component.index));
    add(std::to_string(component.pid));
    add(std::to_string(component.tag.value_or(-1)));
    add("'" + component.language + "'");
    add(Text(component.encrypted));
    add("'" + component.encoding + "'");
    add(aspectRatio ? Decimal(*aspectRatio) : "null");
    add(Text(component.audioDescription));
    add(std::to_string(component.audioChannels));
    add(Text(component.hearingImpaired));
    add(Text(active));
    return text;
}

}  // namespace television
