// Streams of other makers, and ours, read by the television and by other readers: they must find the same.
#include <gst/gst.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>

#include "television/demonstration/DemonstrationSource.h"
#include "television/stream/PacketAligner.h"
#include "television/tables/ServiceList.h"
#include "television/tables/TableReader.h"
#include "tests/television/GeneratedTables.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

namespace fs = std::filesystem;

// What a reader says of a service, as far as it says anything.
struct Found {
    unsigned mapPid = 0, clockPid = 0;
    std::string name, provider;
    std::map<unsigned, unsigned> streams;  // types by PID
};
using Findings = std::map<unsigned, Found>;  // by sid

class Folder {
public:
    Folder() { mkdtemp(m_path.data()); }
    ~Folder() { fs::remove_all(m_path); }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path = "/tmp/television-test-XXXXXX";
};

// What a command writes; a command that fails is a failure.
std::string Output(const std::string& command) {
    std::string output;
    FILE* pipe = popen((command + " </dev/null").c_str(), "r");
    char piece[4096];
    while (const std::size_t count = fread(piece, 1, sizeof piece, pipe)) output.append(piece, count);
    EXPECT_EQ(pclose(pipe), 0) << command << "\n" << output;
    return output;
}

bool IsInstalled(const std::string& tool) { return system(("command -v " + tool + " >/dev/null").c_str()) == 0; }

// Calls `use` with the groups of each match.
void ForEach(const std::string& text, const std::string& pattern, const std::function<void(const std::smatch&)>& use) {
    const std::regex regex(pattern);
    for (auto match = std::sregex_iterator(text.begin(), text.end(), regex); match != std::sregex_iterator(); ++match)
        use(*match);
}

unsigned Number(const std::string& text) { return static_cast<unsigned>(std::stoul(text, nullptr, 0)); }

Tables Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const Packets bytes{std::istreambuf_iterator<char>(file), {}};
    Packets packets;
    PacketAligner aligner;
    aligner.Push(bytes, packets);
    TableReader reader([](const Tables&) {});
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) reader.Push(packets.data() + at);
    return reader.Current();
}

Findings FoundByTelevision(const Tables& tables) {
    Findings findings;
    ServiceIds ids;
    for (const Service& service : ListServices(tables, ids))
        findings[service.sid] = {.name = service.name, .provider = service.provider, .streams = {}};
    for (const auto& entry : tables.association->services) findings[entry.sid].mapPid = entry.pid;
    for (const auto& [sid, map] : tables.maps) {
        findings[sid].clockPid = map.clockPid;
        for (const auto& stream : map.streams) findings[sid].streams[stream.pid] = stream.type;
    }
    return findings;
}

Findings FoundByFfprobe(const std::string& path) {
    const std::string text = Output("ffprobe -v error -show_programs -of flat " + path);
    std::map<std::string, unsigned> sids;
    ForEach(text, R"(programs\.program\.(\d+)\.program_id=(\d+))",
            [&](const auto& match) { sids[match[1]] = Number(match[2]); });
    Findings findings;
    const auto at = [&](const std::string& index) -> Found& { return findings[sids.at(index)]; };
    ForEach(text, R"(program\.(\d+)\.pmt_pid=(\d+))", [&](const auto& m) { at(m[1]).mapPid = Number(m[2]); });
    ForEach(text, R"(program\.(\d+)\.pcr_pid=(\d+))", [&](const auto& m) { at(m[1]).clockPid = Number(m[2]); });
    ForEach(text, R"(program\.(\d+)\.tags\.service_name="([^"]*)\")", [&](const auto& m) { at(m[1]).name = m[2]; });
    ForEach(text, R"(program\.(\d+)\.tags\.service_provider="([^"]*)\")",
            [&](const auto& m) { at(m[1]).provider = m[2]; });
    ForEach(text, R"(program\.(\d+)\.streams\.stream\.\d+\.id="(\w+)\")",
            [&](const auto& m) { at(m[1]).streams[Number(m[2])] = 0; });
    return findings;
}

// libdvbpsi's own program, which prints its tables one after the other.
Findings FoundByDvbinfo(const std::string& text) {
    Findings findings;
    ForEach(text, R"(\|\s+(\d+) @ pid: (0x\w+))", [&](const auto& match) {
        if (const unsigned sid = Number(match[1]); sid != 0) findings[sid].mapPid = Number(match[2]);
    });
    unsigned sid = 0;
    ForEach(text, R"(Program number : (\d+)|PCR_PID\s+: (0x\w+)|(0x\w+) @ pid (0x\w+) \()", [&](const auto& match) {
        if (match[1].matched) sid = Number(match[1]);
        if (match[2].matched) findings[sid].clockPid = Number(match[2]);
        if (match[3].matched) findings[sid].streams[Number(match[4])] = Number(match[3]);
    });
    return findings;
}

// One line a service; types and names where the other reader tells them.
std::string Text(const Findings& findings, bool names) {
    std::ostringstream text;
    text << std::hex;
    for (const auto& [sid, found] : findings) {
        text << sid << ": map " << found.mapPid << ", clock " << found.clockPid;
        if (names) text << ", \"" << found.name << "\" of \"" << found.provider << '"';
        for (const auto& [pid, type] : found.streams) {
            text << ", " << pid;
            if (!names) text << " type " << type;
        }
        text << '\n';
    }
    return text.str();
}

class OtherReadersTest : public testing::Test {
protected:
    // `named`: a service without a name has the television's own, which no other reader can know.
    void Compare(const std::string& path, bool named = true) {
        const Tables tables = Read(path);
        ASSERT_TRUE(tables.association) << path;
        const Findings ours = FoundByTelevision(tables);
        if (named) {
            EXPECT_EQ(Text(ours, true), Text(FoundByFfprobe(path), true)) << path << ", ffprobe";
        }
        CompareWithDvbinfo(path, tables, ours);
    }
    static void CompareWithDvbinfo(const std::string& path, const Tables& tables, const Findings& ours) {
        if (!IsInstalled("dvbinfo")) GTEST_SKIP() << "dvbinfo is not installed: install dvbpsi-utils.";
        const std::string text = Output("timeout 20 dvbinfo -d none -f " + path + " --summary=table 2>/dev/null");
        EXPECT_EQ(Text(ours, false), Text(FoundByDvbinfo(text), false)) << path << ", dvbinfo";
        std::set<unsigned> listed, described;
        if (tables.description)
            for (const auto& service : tables.description->services) described.insert(service.sid);
        ForEach(text, R"(Service id   : (0x\w+))", [&](const auto& match) { listed.insert(Number(match[1])); });
        EXPECT_EQ(described, listed) << path;
        ForEach(text, R"(Network id     : (\d+))",
                [&](const auto& match) { EXPECT_EQ(tables.description->onid, Number(match[1])) << path; });
    }
    static void MakeWithFfmpeg(const std::string& options, const std::string& path) {
        Output("ffmpeg -nostdin -loglevel error -y -f lavfi -i testsrc=s=320x240:r=25:d=2 -f lavfi -i sine=d=2 " +
               options + " -f mpegts " + path);
    }
    static void MakeWithGStreamer(const std::string& path) {
        gst_init(nullptr, nullptr);
        const std::string sound = "audiotestsrc num-buffers=100 ! audio/x-raw,rate=48000,channels=2 ! avenc_mp2 ! ";
        GstElement* pipeline = gst_parse_launch(
            ("mpegtsmux name=mux prog-map=\"program_map,sink_256=(int)7,sink_257=(int)9\" ! filesink location=" + path +
             " " + sound + "mux.sink_256 " + sound + "mux.sink_257")
                .c_str(),
            nullptr);
        ASSERT_NE(pipeline, nullptr);
        gst_element_set_state(pipeline, GST_STATE_PLAYING);
        GstMessage* end = gst_bus_timed_pop_filtered(GST_ELEMENT_BUS(pipeline), 10 * GST_SECOND,
                                                     GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
        EXPECT_TRUE(end && GST_MESSAGE_TYPE(end) == GST_MESSAGE_EOS);
        if (end) gst_message_unref(end);
        gst_element_set_state(pipeline, GST_STATE_NULL);
        gst_object_unref(pipeline);
    }
    Folder m_folder;
};

TEST_F(OtherReadersTest, FindTheSameInAStreamOfSeveralServices) {
    const std::string path = m_folder / "ffmpeg.ts";
    MakeWithFfmpeg(
        "-map 0 -map 1 -map 0 -c:v mpeg2video -c:a mp2 -program title=Éins:program_num=11:st=0:st=1 "
        "-program title=Two:program_num=12:st=2 -mpegts_flags +nit -mpegts_transport_stream_id 77 "
        "-mpegts_original_network_id 88",
        path);
    Compare(path);
    const Tables tables = Read(path);
    ASSERT_TRUE(tables.network);
    ServiceIds ids;
    const auto services = ListServices(tables, ids);
    ASSERT_EQ(services.size(), 2u);
    EXPECT_EQ(services[0].name, "Éins");
    EXPECT_EQ(services[0].tsid, 77);
    EXPECT_EQ(services[0].onid, 88);
}

TEST_F(OtherReadersTest, FindTheSameInAStreamOfADefaultKindAndOthersStreams) {
    const std::string path = m_folder / "plain.ts";
    MakeWithFfmpeg("-map 0 -map 1 -map 1 -c:v libx264 -preset ultrafast -c:a:0 aac -c:a:1 ac3 "
                   "-metadata service_name='Überall & Umgebung' -metadata service_provider=Jemand "
                   "-mpegts_service_type advanced_codec_digital_hdtv -mpegts_flags system_b+initial_discontinuity",
                   path);
    Compare(path);
    ServiceIds ids;
    EXPECT_TRUE(ListServices(Read(path), ids).at(0).hd);
}

TEST_F(OtherReadersTest, FindTheSameInAStreamWithoutDescriptionsOfItsServices) {
    const std::string path = m_folder / "gstreamer.ts";
    MakeWithGStreamer(path);
    Compare(path, false);
    EXPECT_EQ(FoundByTelevision(Read(path)).size(), 2u);
}

// The multiplex comes several times, as other readers want some length.
TEST_F(OtherReadersTest, FindTheSameInTablesOfOtherGenerators) {
    const std::string path = m_folder / "generated.ts";
    const Packets packets = generated::Multiplex();
    std::ofstream file(path, std::ios::binary);
    for (int i = 0; i < 100; ++i)
        file.write(reinterpret_cast<const char*>(packets.data()), static_cast<std::streamsize>(packets.size()));
    file.close();
    Compare(path);
    EXPECT_EQ(FoundByTelevision(Read(path)).size(), 2u);
}

TEST_F(OtherReadersTest, FindTheSameInTheDemonstrationWithAllItsServices) {
    const std::string path = m_folder / "demonstration.ts";
    const auto broadcast = std::make_shared<demonstration::Broadcast>();
    for (const auto& service : demonstration::OccasionalServices()) broadcast->Appear(service.number);
    demonstration::DemonstrationSource source(DEMONSTRATION_STREAM, broadcast, [](std::int64_t) { return 1'893'528'000; });
    ASSERT_EQ(source.Open(), std::nullopt);
    source.Scramble(false);
    Packets packets;
    while (Count(packets) < 20'000) {
        Packets some;
        source.Read(some);
        Append(packets, some);
    }
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(packets.data()), static_cast<std::streamsize>(packets.size()));
    Compare(path);
    EXPECT_EQ(FoundByTelevision(Read(path)).size(),
              demonstration::Services().size() + demonstration::OccasionalServices().size());
}

}  // namespace
}  // namespace television::test
