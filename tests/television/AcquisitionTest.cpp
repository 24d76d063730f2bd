// What is told of a stream whose tables take their time.
#include <gst/gst.h>
#include <gtest/gtest.h>

#include <atomic>

#include "television/TelevisionSet.h"
#include "television/demonstration/SectionWriter.h"
#include "tests/television/Packets.h"
#include "tests/television/RecordingListener.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::Section;

constexpr unsigned kTsid = 1, kFirstSid = 0x11, kSecondSid = 0x12;

Section Association() {
    const Bytes body = Bytes().Put16(0).Put16(0xe010).Put16(kFirstSid).Put16(0xe100).Put16(kSecondSid).Put16(0xe200);
    return MakeSection({.table = 0, .extension = kTsid}, body);
}

Section Map(unsigned sid) {
    return MakeSection({.table = 2, .extension = sid}, Bytes().Put16(0xffff).PutLoop({}));
}

// Brings one table after the other, each when the test says so, as a live stream would.
class SlowSource : public PacketSource {
public:
    explicit SlowSource(const std::atomic<int>& tables) : m_wanted(tables) {}
    std::optional<std::string> Open() override { return std::nullopt; }
    bool NeedsPacing() const override { return false; }
    Result Read(Packets& packets) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));  // as a socket waits
        const std::vector<std::pair<std::uint16_t, Section>> tables{
            {0, Association()},
            {0x100, Map(kFirstSid)},
            {0x200, Map(kSecondSid)},
            {0x11, MakeSection({.table = 0x42, .extension = kTsid}, Bytes().Put16(1).Put8(0xff))},
            {0x10, MakeSection({.table = 0x40, .extension = 1}, Bytes().PutLoop({}).PutLoop({}))}};
        for (; m_sent < m_wanted && m_sent < static_cast<int>(tables.size()); ++m_sent) {
            std::uint8_t continuity = 0;
            const auto& [pid, section] = tables[static_cast<std::size_t>(m_sent)];
            demonstration::Packetize(section, pid, continuity, packets);
        }
        return Result::Packets;
    }

private:
    const std::atomic<int>& m_wanted;
    int m_sent = 0;
};

TEST(Acquisition, TellsWhatHasBeenReadOfAStreamThatTakesItsTime) {
    gst_init(nullptr, nullptr);
    std::atomic<int> tables = 0;
    ListenerGate gate;
    TelevisionSet set(gate, {}, {}, "");
    std::vector<std::string> told;
    const auto progress = [&](const std::string& text) {
        told.push_back(text);
        if (text.find("PAT") != text.npos) ++tables;
    };
    EXPECT_EQ(set.Start(std::make_unique<SlowSource>(tables), progress), std::nullopt);
    const std::string reading = "Reading the stream's service information";
    EXPECT_EQ(told, (std::vector<std::string>{reading,
                                              reading + ": no PAT yet, no SDT yet, no NIT yet",
                                              reading + ": PAT, 0 of 2 PMTs, no SDT yet, no NIT yet",
                                              reading + ": PAT, 1 of 2 PMTs, no SDT yet, no NIT yet",
                                              reading + ": PAT, 2 of 2 PMTs, no SDT yet, no NIT yet",
                                              reading + ": PAT, 2 of 2 PMTs, SDT, no NIT yet", "2 services found"}));
    set.Shutdown();
}

}  // namespace
}  // namespace television::test
