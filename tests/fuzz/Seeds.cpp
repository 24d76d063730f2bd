// Writes what the fuzzers begin with, from our own writers and from streams: fuzz_seeds FOLDER [STREAM...].
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "television/demonstration/DemonstrationTables.h"
#include "television/demonstration/SubtitleWriter.h"
#include "television/events/CarouselMessages.h"
#include "television/tables/DescriptorTags.h"
#include "tests/fuzz/Chunks.h"
#include "tests/television/CarouselWriter.h"

namespace television::fuzz {
namespace {

using demonstration::Section;
using Writer = demonstration::Bytes;

constexpr std::int64_t kNoon = 1'700'000'000;

class Seeds {
public:
    explicit Seeds(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    void Add(const std::string& fuzzer, const Bytes& bytes) {
        const auto folder = m_folder / fuzzer;
        std::filesystem::create_directories(folder);
        std::ofstream(folder / ("seed-" + std::to_string(m_count++)), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    void Add(const std::string& fuzzer, const std::string& text) { Add(fuzzer, Bytes(text.begin(), text.end())); }

private:
    std::filesystem::path m_folder;
    int m_count = 0;
};

bool IsLong(const Section& section) { return section[1] & 0x80; }

void AddTables(Seeds& seeds) {
    std::vector<Chunk> all, cut{{0, {0, 100, 181, 3}}};
    for (const auto& table : demonstration::Tables())
        for (const Section& section : table.make(kNoon)) {
            if (!IsLong(section)) continue;
            const Chunk chunk{table.pid, WithoutCrc(section)};
            seeds.Add("Tables", Join({chunk}));
            if (section[0] == 0x3d) seeds.Add("StreamEvents", Join({chunk}));
            all.push_back(chunk);
            if (section[0] == 0x4e) all.push_back(chunk);  // a table of one section is believed the second time
            cut.push_back(chunk);
        }
    seeds.Add("Tables", Join(all));
    seeds.Add("Sections", Join(cut));
    cut[0].bytes.clear();
    seeds.Add("Sections", Join(cut));
}

Writer Ascii(const std::string& text) { return Writer().Put(text); }

// A loop of descriptors as a chunk.
Chunk Loop(std::uint16_t number, const Writer& loop) { return {number, loop.Data()}; }

Chunk StreamLoop(unsigned type, const Writer& loop) { return Loop(static_cast<std::uint16_t>(type << 3 | 4), loop); }

void AddDescriptors(Seeds& seeds) {
    const Writer eleven = Ascii(std::string(11, '\x11'));
    Writer service, network, event, sound, subtitles;
    service.PutDescriptor(kServiceTag, Writer().Put8(0x19).PutText("Atlas").PutText("Café"));
    network.PutDescriptor(kPrivateDataSpecifierTag, Writer().Put32(kSpecifierNordig));
    network.PutDescriptor(kLogicalChannelTag, Writer().Put16(5).Put16(0x83e8));
    for (const unsigned tag : {kTerrestrialDeliveryTag, kCableDeliveryTag, kSatelliteDeliveryTag})
        network.PutDescriptor(tag, eleven);
    for (const unsigned extension : {kT2DeliveryExtension, kC2DeliveryExtension})
        network.PutDescriptor(kExtensionTag, Writer().Put8(extension).Put32(0));
    event.PutDescriptor(kShortEventTag, Ascii("eng").PutText("News").PutText("Of the day."));
    event.PutDescriptor(kExtendedEventTag, Writer().Put8(0).Put("eng").Put8(2).Put16(0).PutText("Long."));
    event.PutDescriptor(kParentalRatingTag, Ascii("DEU").Put8(9).Put("FRA").Put8(0x11));
    sound.PutDescriptor(kLanguageTag, Ascii("deu").Put8(3)).PutDescriptor(kStreamIdentifierTag, Writer().Put8(7));
    sound.PutDescriptor(kExtensionTag, Writer().Put8(kSupplementaryAudioExtension).Put8(0x85));
    sound.PutDescriptor(kCaTag, Writer().Put16(1).Put16(0xe100));
    subtitles.PutDescriptor(kSubtitlingTag, Ascii("eng").Put8(0x10).Put32(1).Put("fra").Put8(0x24).Put32(2));
    subtitles.PutDescriptor(kTeletextTag, Ascii("deu").Put8(0x11).Put8(0x50).Put("deu").Put8(0x29).Put8(0x51));
    Writer ac3, dts;
    ac3.PutDescriptor(kAc3Tag, Writer().Put8(0x80).Put8(0x44)).PutDescriptor(kEnhancedAc3Tag, Writer().Put8(0));
    dts.PutDescriptor(kDtsTag, Writer().Put8(0));
    seeds.Add("Descriptors", Join({Loop(0, sound), Loop(1, service), Loop(2, network), Loop(3, event)}));
    seeds.Add("Descriptors", Join({StreamLoop(0x1b, sound), StreamLoop(3, sound), StreamLoop(6, subtitles),
                                   StreamLoop(6, ac3), StreamLoop(6, dts), StreamLoop(0x11, {})}));
    Writer own, deferred;
    own.PutDescriptor(kAssociationTag, Writer().Put16(0x1001).Put16(0).Put8(0));
    deferred.PutDescriptor(kDeferredAssociationsTag,
                           Writer().Put8(4).Put16(0x1001).Put16(0x2007).Put16(1).Put16(6).Put16(2));
    const Chunk other{0x0b << 3 | 5, Writer(own).Put(sound).Data()};
    seeds.Add("Descriptors", Join({Loop(0, deferred), StreamLoop(0x0b, own), other}));
    for (const unsigned tag : {kTerrestrialDeliveryTag, kCableDeliveryTag, kSatelliteDeliveryTag})
        seeds.Add("Delivery", Writer().PutDescriptor(tag, eleven).Data());
}

void AddTexts(Seeds& seeds) {
    for (const unsigned selector : {0x01, 0x05, 0x09, 0x0b, 0x11, 0x12, 0x13, 0x14, 0x15, 0x1f, 0x41})
        seeds.Add("Text", Writer().Put8(selector).Put("Caf\xc2 e\x86 \xa4\x8a\xb0\xa1z\x87").Data());
    for (unsigned part = 1; part < 17; ++part)
        seeds.Add("Text", Writer().Put8(0x10).Put16(part).Put("\xa1\xe4\xff" "abc").Data());
    seeds.Add("Text", Writer().Put8(0x15).Put("Café \xee\x82\x8a naïve").Data());
}

void AddCarousels(Seeds& seeds) {
    using test::CarouselShape;
    for (const CarouselShape& shape : {CarouselShape{}, CarouselShape{.streamInfo = 11},
                                       CarouselShape{.compressed = true}, CarouselShape{.blockSize = 4000}}) {
        std::vector<Chunk> chunks;
        for (const Section& section : test::CarouselSections(shape)) {
            chunks.push_back({0, WithoutCrc(section)});
            const auto read = ReadSection(section);
            const auto block = shape.blockSize == 4000 && read ? ReadBlock(*read) : std::nullopt;
            if (block) seeds.Add("Objects", Bytes(block->data.begin(), block->data.end()));
        }
        seeds.Add("Carousel", Join(chunks));
    }
}

void AddLines(Seeds& seeds) {
    for (const char* line : {"key VK_RED", "channel 3", "channel next", "open http://127.0.0.1/ a", "screenshot x.png",
                             "evaluate document.title", "quit", "help", "helpless", "  key  ", "quit now", "json status",
                             "json evaluate {\"a\":[1]}", "json json help", "programmes", "programmes 5", "services",
                             "aerial out", "aerial"})
        seeds.Add("Commands", line);
    seeds.Add("Script", "# The aerial\n2 aerial out\n+3\taerial in\n\n10.5   channel next\n");
    seeds.Add("Script", "1 key VK_RED\n0.5 quit\n");
    seeds.Add("Script", "channel Atlas");
    seeds.Add("Script", "aerial ");
    for (const char* url : {"dvb://1.44d.6E01.b/folder/scores", "dvb://1.2.3.4/", "dvb://1.2.10000.4/x", "http://a/b"})
        seeds.Add("Target", url);
    seeds.Add("Declaration",
              "<?xml version=\"1.0\"?><dsmcc xmlns=\"urn:dvb:mis:dsmcc:2009\"><dsmcc_object component_tag=\"0x0a\">"
              "<stream_event stream_event_id=\"1\" stream_event_name=\"t&#228;ick &amp; tock\"/></dsmcc_object></dsmcc>");
    seeds.Add("Declaration",
              "<!DOCTYPE d [<!ENTITY a \"b&lt;\">]><a:dsmcc xmlns:a=\"urn:dvb:mis:dsmcc:2009\">"
              "<a:dsmcc_object component_tag=\"255\">"
              "<a:stream_event stream_event_id=\"0xFFFF\" stream_event_name=\"&a;\"><!-- - --></a:stream_event>"
              "</a:dsmcc_object></a:dsmcc>");
}

void AddSubtitles(Seeds& seeds) {
    std::vector<Chunk> pages;
    for (unsigned version = 0; version < 3; ++version) {
        demonstration::SubtitlePage page{.version = version, .x = 20, .y = 30};
        if (version < 2) page.drawing = demonstration::Drawing{8, 4, std::vector<std::uint8_t>(32, version + 1)};
        pages.push_back({1, demonstration::MakeSubtitles(page).Data()});
        seeds.Add("Subtitles", Join({pages.back()}));
    }
    seeds.Add("Subtitles", Join(pages));
}

Bytes Slice(const Bytes& packets, std::size_t first, std::size_t count) {
    const auto begin = packets.begin() + static_cast<std::ptrdiff_t>(first * kPacketSize);
    return {begin, begin + static_cast<std::ptrdiff_t>(count * kPacketSize)};
}

// A few packets at a time, from the first ones of a stream.
void AddStream(Seeds& seeds, const std::string& path) {
    constexpr std::size_t kSlice = 9, kSlices = 12;
    std::ifstream file(path, std::ios::binary);
    const Bytes packets{std::istreambuf_iterator<char>(file), {}};
    std::vector<Chunk> batches;
    for (std::size_t i = 0; i < kSlices && (i + 1) * kSlice * kPacketSize <= packets.size(); ++i) {
        const Bytes slice = Slice(packets, i * kSlice, kSlice);
        seeds.Add("Packets", slice);
        seeds.Add("Restamper", slice);
        Bytes pieces{static_cast<std::uint8_t>(i * 20)};
        pieces.insert(pieces.end(), slice.begin(), slice.end());
        seeds.Add("Aligner", pieces);
        batches.push_back({static_cast<std::uint16_t>(i * 20), slice});
        if (i % 3 == 1) batches.push_back({0, {static_cast<std::uint8_t>(i)}});
    }
    seeds.Add("Buffer", Join(batches));
}

}  // namespace
}  // namespace television::fuzz

int main(int argc, char** argv) {
    using namespace television::fuzz;
    if (argc < 2) {
        std::fputs("fuzz_seeds FOLDER [STREAM...]: say into which folder the seeds go.\n", stderr);
        return 2;
    }
    Seeds seeds(argv[1]);
    AddTables(seeds);
    AddDescriptors(seeds);
    AddTexts(seeds);
    AddCarousels(seeds);
    AddLines(seeds);
    AddSubtitles(seeds);
    for (int i = 2; i < argc; ++i) AddStream(seeds, argv[i]);
    return 0;
}
