// What the television receives, and what it says when it cannot.
#include <fstream>
#include <iterator>

#include "television/tables/DescriptorTags.h"
#include "tests/television/Packets.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

class StartTest : public TelevisionTest {
protected:
    StartTest() { m_startDemonstration = false; }

    std::string Refusal(const std::string& stream) { return StartWith(stream).value_or("(it started)"); }
    static bool Contains(const std::string& text, const std::string& part) { return text.find(part) != text.npos; }
};

TEST_F(StartTest, NamesAFileThatIsMissing) {
    const std::string refusal = Refusal("/no/such/stream.ts");
    EXPECT_TRUE(Contains(refusal, "/no/such/stream.ts") && Contains(refusal, "No such file")) << refusal;
}

TEST_F(StartTest, RefusesAFolder) { EXPECT_TRUE(Contains(Refusal("/tmp"), "is a folder")); }

TEST_F(StartTest, RefusesAFileThatIsNoTransportStream) {
    const Packets noise(5000, 'x');
    const TemporaryFile file(noise);
    EXPECT_TRUE(Contains(Refusal(file.Path()), "is not an MPEG transport stream"));
}

TEST_F(StartTest, RefusesAStreamWithoutAClock) {
    Packets packets;
    for (unsigned i = 0; i < 100; ++i) Append(packets, MakePacket({.continuity = i & 15}));
    const TemporaryFile file(packets);
    EXPECT_TRUE(Contains(Refusal(file.Path()), "has no clock"));
}

TEST_F(StartTest, RefusesAStreamWithoutTables) {
    Packets packets;
    for (unsigned i = 0; i < 100; ++i)
        Append(packets, MakePacket({.continuity = i & 15, .clock = i * kClockRate / 25}));
    const TemporaryFile file(packets);
    EXPECT_TRUE(Contains(Refusal(file.Path()), "no programme association table within 5 seconds"));
}

TEST_F(StartTest, RefusesAStreamWithoutServices) {
    using demonstration::Bytes;
    using demonstration::MakeSection;
    const TemporaryFile file(DemonstrationWith({{0, kClockRate / 10, [](std::int64_t) {
                                                     const auto networkOnly = Bytes().Put16(0).Put16(0xe010);
                                                     return std::vector<demonstration::Section>{
                                                         MakeSection({.table = 0, .extension = 1}, networkOnly)};
                                                 }}}));
    const std::string refusal = Refusal(file.Path());
    EXPECT_TRUE(Contains(refusal, "has no services")) << refusal;
}

TEST_F(StartTest, RefusesASchemeThatItDoesNotKnow) {
    EXPECT_TRUE(Contains(Refusal("gopher://host/stream"), "\"gopher://\" cannot be received"));
}

TEST_F(StartTest, SaysThatACardIsNotThere) {
    const std::string refusal = Refusal("dvb://16.3?frequency=506000000&delsys=dvb-t2&bandwidth-hz=8000000");
    EXPECT_TRUE(Contains(refusal, "(Device \"/dev/dvb/adapter16/frontend3\" does not exist)")) << refusal;
    EXPECT_TRUE(Contains(refusal, "check the card and its driver")) << refusal;
}

TEST_F(StartTest, SaysWhatIsWrongWithACardsAddress) {
    EXPECT_TRUE(Contains(Refusal("dvb://first?frequency=1"), "a card is its number"));
    EXPECT_TRUE(Contains(Refusal("dvb://0.x?frequency=1"), "a card is its number"));
    EXPECT_TRUE(Contains(Refusal("dvb://0?delsys=dvb-t2"), "the frequency is missing"));
    EXPECT_TRUE(Contains(Refusal("dvb://0"), "the frequency is missing"));
    EXPECT_TRUE(Contains(Refusal("dvb://0?freq=1"), "no \"freq\" with the value \"1\""));
    EXPECT_TRUE(Contains(Refusal("dvb://0?frequency=high"), "no \"frequency\" with the value \"high\""));
    EXPECT_TRUE(Contains(Refusal("dvb://0?frequency=1&delsys=dvb-x"), "no \"delsys\" with the value \"dvb-x\""));
    EXPECT_TRUE(Contains(Refusal("dvb://0?frequency=1&name=card"), "no \"name\""));
}

TEST_F(StartTest, SaysThatAnAddressDoesNotLoad) {
    EXPECT_TRUE(Contains(Refusal("http://127.0.0.1:1/stream.ts"), "does not load"));
}

TEST_F(StartTest, TellsWhatItReads) {
    Configuration configuration;
    configuration.demonstration = DEMONSTRATION_STREAM;
    configuration.sound = false;
    std::vector<std::string> progress;
    EXPECT_EQ(m_television.Start(configuration, {}, [&](const std::string& what) { progress.push_back(what); }),
              std::nullopt);
    ASSERT_GE(progress.size(), 3u);
    EXPECT_EQ(progress.back(), "5 services found");
}

TEST_F(StartTest, PlaysAStreamWithoutServiceInformation) {
    using demonstration::Bytes;
    using demonstration::MakeSection;
    using Sections = std::vector<demonstration::Section>;
    const TemporaryFile file(DemonstrationWith(
        {{0, kClockRate / 10,
          [](std::int64_t) {
              return Sections{MakeSection({.table = 0, .extension = 1}, Bytes().Put16(77).Put16(0xe300))};
          }},
         {0x300, kClockRate / 10, [](std::int64_t) {
              const Bytes body = Bytes().Put16(0xe301).PutLoop({}).Put8(2).Put16(0xe301).PutLoop({});
              return Sections{MakeSection({.table = 2, .extension = 77}, body)};
          }}}));
    ASSERT_EQ(StartWith(file.Path()), std::nullopt);
    const auto services = m_television.Services();
    ASSERT_EQ(services.size(), 1u);
    EXPECT_EQ(services[0].name, "Service 77");
    EXPECT_EQ(services[0].type, ServiceType::Television);
    EXPECT_TRUE(WaitForPicture(Shown::Boreal));
}

TEST_F(StartTest, StartsAgainAfterAStop) {
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(StartWith(""), std::nullopt);
        EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
        m_television.Stop();
        EXPECT_EQ(m_television.CurrentPicture(), nullptr);
        EXPECT_TRUE(m_television.Services().empty());
        EXPECT_EQ(m_browser.GetBroadcastPlayer(), nullptr);
    }
}

}  // namespace
}  // namespace television::test
