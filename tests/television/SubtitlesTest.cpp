// DVB subtitles: written for the demonstration, decoded, and on the screen for as long as they are to be.
#include <algorithm>
#include <map>

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/SubtitleInjector.h"
#include "television/demonstration/SubtitleWriter.h"
#include "television/subtitles/SubtitleDecoder.h"
#include "television/subtitles/SubtitleTrack.h"
#include "tests/television/Packets.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using demonstration::Drawing;
using demonstration::MakeSubtitles;
using demonstration::SubtitlePage;

constexpr std::uint32_t kBlack = 0xff000000;

// Rows of all lengths of runs in all four colours.
Drawing Runs() {
    Drawing drawing{320, 9, {}};
    for (int y = 0; y < drawing.height; ++y) {
        int length = 1 + y * 3;
        while (drawing.colours.size() < static_cast<std::size_t>((y + 1) * drawing.width)) {
            const auto end = std::min(drawing.colours.size() + static_cast<std::size_t>(length),
                                      static_cast<std::size_t>((y + 1) * drawing.width));
            drawing.colours.resize(end, static_cast<std::uint8_t>(length++ % 4));
        }
    }
    return drawing;
}

SubtitlePage PageWith(const Drawing& drawing) {
    SubtitlePage page{.width = 1280, .height = 720, .x = 100, .y = 600};
    page.drawing = drawing;
    return page;
}

std::vector<std::uint8_t> Data(const SubtitlePage& page) { return MakeSubtitles(page).Data(); }

TEST(DrawnText, IsInTheMiddleOfItsBox) {
    const Drawing drawing = demonstration::DrawText("I", 16, 9, 1, 1, 2);
    const std::string rows[] = {"1111111111111111", "1111112221111111", "1111111211111111"};
    for (int y = 0; y < 3; ++y) {
        std::string row;
        for (int x = 0; x < 16; ++x) row += static_cast<char>('0' + drawing.Row(y)[x]);
        EXPECT_EQ(row, rows[y]);
    }
    const Drawing cut = demonstration::DrawText("MUCH TOO LONG?", 8, 3, 2, 1, 2);
    EXPECT_EQ(cut.colours.size(), 24u);
}

TEST(SubtitleDecoder, BringsBackWhatWasDrawn) {
    const Drawing drawing = Runs();
    SubtitleDecoder decoder(1, 1);
    const auto page = decoder.Decode(Data(PageWith(drawing)));
    ASSERT_TRUE(page && page->subtitles);
    EXPECT_EQ(page->timeOut, std::chrono::seconds(5));
    EXPECT_EQ(page->subtitles->width, 1280);
    EXPECT_EQ(page->subtitles->height, 720);
    ASSERT_EQ(page->subtitles->parts.size(), 1u);
    const auto& part = page->subtitles->parts[0];
    EXPECT_EQ(part.x, 100);
    EXPECT_EQ(part.y, 600);
    EXPECT_EQ(part.width, drawing.width);
    EXPECT_EQ(part.height, drawing.height);
    ASSERT_EQ(part.pixels.size(), drawing.colours.size());
    std::map<std::uint8_t, std::uint32_t> colours;
    for (std::size_t i = 0; i < part.pixels.size(); ++i)
        EXPECT_EQ(colours.try_emplace(drawing.colours[i], part.pixels[i]).first->second, part.pixels[i]) << i;
    EXPECT_EQ(colours[demonstration::kNoColour], 0u);
    EXPECT_EQ(colours[demonstration::kBlackBox], kBlack);
    EXPECT_GT(colours[demonstration::kYellowInk] & 0xff00, 0xb000u);
    EXPECT_LT(colours[demonstration::kYellowInk] & 0xff, 0x60u);
}

TEST(SubtitleDecoder, ReadsThePagesOfItsOwnOnly) {
    SubtitlePage page = PageWith(Runs());
    page.page = 2;
    SubtitleDecoder first(1, 1), second(2, 2);
    const auto other = first.Decode(Data(page));
    EXPECT_TRUE(!other || !other->subtitles);
    EXPECT_TRUE(second.Decode(Data(page))->subtitles);
}

TEST(SubtitleDecoder, SeesNothingOnAClearedPage) {
    SubtitleDecoder decoder(1, 1);
    ASSERT_TRUE(decoder.Decode(Data(PageWith(Runs())))->subtitles);
    const auto cleared = decoder.Decode(Data({.version = 1, .width = 1280, .height = 720}));
    ASSERT_TRUE(cleared);
    EXPECT_EQ(cleared->subtitles, nullptr);
}

TEST(SubtitleDecoder, KeepsTheSizeOfTheDisplayFromPageToPage) {
    SubtitleDecoder decoder(1, 1);
    SubtitlePage page = PageWith(Runs());
    ASSERT_EQ(decoder.Decode(Data(page))->subtitles->width, 1280);
    page.version = 1;
    EXPECT_EQ(decoder.Decode(Data(page))->subtitles->width, 1280);
}

TEST(SubtitleDecoder, DrawsNoRegionThatIsLargerThanAnyScreen) {
    auto data = Data(PageWith(Runs()));
    const std::uint8_t width[] = {320 >> 8, 320 & 0xff, 0, 9};
    const auto region = std::search(data.begin(), data.end(), std::begin(width), std::end(width));
    ASSERT_NE(region, data.end());
    std::fill_n(region, 4, std::uint8_t{0xff});
    SubtitleDecoder decoder(1, 1);
    const auto page = decoder.Decode(data);
    EXPECT_TRUE(!page || !page->subtitles);
}

TEST(SubtitleDecoder, SurvivesAnythingThatIsNoPage) {
    const auto whole = Data(PageWith(Runs()));
    SubtitleDecoder decoder(1, 1);
    for (std::size_t size = 0; size < whole.size(); size += 7) decoder.Decode({whole.data(), size});
    for (std::size_t i = 0; i < whole.size(); i += 3) {
        auto broken = whole;
        broken[i] ^= 0x55;
        decoder.Decode(broken);
    }
    EXPECT_TRUE(SubtitleDecoder(1, 1).Decode(whole)->subtitles);
}

TEST(PesPackets, HoldTheDataToTheLastByte) {
    for (const std::size_t size : {1u, 100u, 169u, 170u, 171u, 500u}) {
        demonstration::Bytes data;
        for (std::size_t i = 0; i < size; ++i) data.Put8(i & 0xff);
        Packets packets;
        std::uint8_t continuity = 15;
        PacketizePes(demonstration::MakePrivatePes(data, kTimeWrap - 1), 0x105, continuity, packets);
        std::vector<std::uint8_t> pes;
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
            const auto payload = PayloadOf(packets.data() + at);
            pes.insert(pes.end(), payload.begin(), payload.end());
            EXPECT_EQ(ContinuityOf(packets.data() + at), (15 + at / kPacketSize) % 16);
        }
        EXPECT_EQ(pes.size(), 14 + size);
        EXPECT_TRUE(std::equal(pes.begin() + 14, pes.end(), data.Data().begin()));
        if (size >= 100) {
            EXPECT_EQ(TimesOf(packets.data()).presentation, kTimeWrap - 1);
        }
    }
}

// The track with a screen and a thread, without a stream.
class SubtitleTrackTest : public testing::Test {
protected:
    void SetUp() override {
        m_screen.pictureChanged = [this] { m_watch.Notify(); };
        m_screen.Begin(1);
        m_subtitle.encoding = kDvbSubtitles;
        m_subtitle.pid = 0x105;
        m_subtitle.compositionPage = m_subtitle.ancillaryPage = 1;
    }
    void TearDown() override { m_queue.Stop(); }
    void OnThread(const std::function<void()>& task) {
        m_queue.Post(task);
        m_queue.Drain();
    }
    void Take(std::uint16_t pid, unsigned timeOut) {
        SubtitlePage page = PageWith(Runs());
        page.timeOut = timeOut;
        page.version = m_version++;
        OnThread([&] { m_track.Take(1, pid, Data(page)); });
    }
    void Choose(const std::optional<Component>& subtitle) {
        OnThread([&] { m_track.Choose(1, subtitle); });
    }
    bool Seen() const { return m_screen.CurrentSubtitles() != nullptr; }

    Watch m_watch;
    Screen m_screen;
    TaskQueue m_queue;
    SubtitleTrack m_track{m_screen, m_queue};
    Component m_subtitle;
    unsigned m_version = 0;
};

TEST_F(SubtitleTrackTest, ShowsTheChosenOnesOnly) {
    Take(0x105, 5);
    EXPECT_FALSE(Seen());
    Choose(m_subtitle);
    Take(0x106, 5);
    EXPECT_FALSE(Seen());
    Take(0x105, 5);
    EXPECT_TRUE(Seen());
    Choose(std::nullopt);
    EXPECT_FALSE(Seen());
}

TEST_F(SubtitleTrackTest, IsClearedByAnEmptyPage) {
    Choose(m_subtitle);
    Take(0x105, 5);
    ASSERT_TRUE(Seen());
    OnThread([&] { m_track.Take(1, 0x105, Data({.version = 7})); });
    EXPECT_FALSE(Seen());
}

TEST_F(SubtitleTrackTest, IsClearedWhenItsTimeIsOver) {
    Choose(m_subtitle);
    const auto start = std::chrono::steady_clock::now();
    Take(0x105, 1);
    ASSERT_TRUE(Seen());
    EXPECT_TRUE(m_watch.WaitFor([&] { return !Seen(); }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST_F(SubtitleTrackTest, IsClearedWithTheSessionsPicture) {
    Choose(m_subtitle);
    Take(0x105, 5);
    ASSERT_TRUE(Seen());
    m_screen.Begin(2);
    EXPECT_FALSE(Seen());
    Take(0x105, 5);
    EXPECT_FALSE(Seen()) << "what an older session brings is dropped";
}

class SubtitlesOnTelevision : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
    bool WaitForSubtitles(bool seen) {
        return m_watch.WaitFor([&] { return (m_television.CurrentSubtitles() != nullptr) == seen; });
    }
};

TEST_F(SubtitlesOnTelevision, AreSeenWhileTheyAreSelected) {
    EXPECT_EQ(m_player->GetSubtitleComponents(false).size(), 2u);
    EXPECT_TRUE(m_player->GetSubtitleComponents(true).empty());
    EXPECT_EQ(m_television.CurrentSubtitles(), nullptr);
    m_player->SelectSubtitleComponent(1);
    EXPECT_TRUE(WaitForSubtitles(true));
    EXPECT_EQ(m_television.CurrentSubtitles()->width, 1280);
    const auto active = m_player->GetSubtitleComponents(true);
    ASSERT_EQ(active.size(), 1u);
    EXPECT_EQ(active[0].ParamString().substr(0, 21), "2, 1, 262, 6, 'eng', ");
    EXPECT_EQ(m_television.LastTune().count, 1u) << "the picture was not interrupted";
    m_player->UnselectSubtitleComponent(1);
    EXPECT_TRUE(WaitForSubtitles(false));
}

TEST_F(SubtitlesOnTelevision, GoWithTheChannel) {
    m_player->SelectSubtitleComponent(0);
    ASSERT_TRUE(WaitForSubtitles(true));
    m_player->SetChannel(IdOf("Atlas Two"), false);
    EXPECT_EQ(m_television.CurrentSubtitles(), nullptr);
    ASSERT_TRUE(WaitForPicture(Shown::AtlasTwo));
    m_player->SetChannel(IdOf("Atlas One"), false);
    ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(m_player->GetSubtitleComponents(true).empty()) << "another channel forgets the choice";
}

}  // namespace
}  // namespace television::test
