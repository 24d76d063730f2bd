// What the decoder hands out, and when.
#include "television/playback/Decoder.h"

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/DemonstrationSource.h"
#include "television/stream/RandomAccess.h"
#include "television/stream/StreamTypes.h"
#include "tests/television/Packets.h"
#include "tests/television/RecordingListener.h"

namespace television::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint16_t kVideoPid = 0x101;
constexpr double kTolerance = 60;  // milliseconds; a picture lasts 40

// Atlas One from its first random access point on, for some seconds, and the times in it in 90 kHz.
struct Excerpt {
    Packets packets;
    std::vector<std::int64_t> pictures, subtitles;
};

Excerpt ReadExcerpt(std::size_t seconds) {
    demonstration::DemonstrationSource source(DEMONSTRATION_STREAM);
    EXPECT_EQ(source.Open(), std::nullopt);
    Excerpt excerpt;
    while (excerpt.pictures.size() < seconds * 25) {
        Packets read;
        source.Read(read);
        for (std::size_t at = 0; at < read.size(); at += kPacketSize) {
            const std::uint8_t* packet = read.data() + at;
            const bool begins = PidOf(packet) == kVideoPid && BeginsRandomAccess(packet, kH264Video);
            const bool wanted = !excerpt.pictures.empty() || begins || PidOf(packet) < 0x20 || PidOf(packet) == 0x100;
            if (!wanted) continue;
            excerpt.packets.insert(excerpt.packets.end(), packet, packet + kPacketSize);
            const auto time = TimesOf(packet).presentation;
            if (time && PidOf(packet) == kVideoPid) excerpt.pictures.push_back(*time);
            if (time && PidOf(packet) == demonstration::kGermanSubtitlePid) excerpt.subtitles.push_back(*time);
        }
    }
    return excerpt;
}

double Milliseconds(Clock::duration duration) { return std::chrono::duration<double, std::milli>(duration).count(); }

class DecoderTest : public testing::Test {
protected:
    void SetUp() override {
        gst_init(nullptr, nullptr);
        m_plan.sid = 0x6e01;
        m_plan.video.emplace().pid = kVideoPid;
        m_plan.video->streamType = kH264Video;
        m_plan.subtitlePids = {demonstration::kGermanSubtitlePid};
        m_events.picture = [this](auto) { Note(m_pictures); };
        m_events.firstSound = [] {};
        m_events.subtitle = [this](std::uint16_t pid, auto&& data) {
            EXPECT_EQ(pid, demonstration::kGermanSubtitlePid);
            EXPECT_EQ(data.front(), 0x20) << "the data identifier of DVB subtitles";
            Note(m_subtitles);
        };
        m_events.fault = [](const std::string& text, bool) { ADD_FAILURE() << text; };
    }
    void Note(std::vector<Clock::time_point>& list) {
        {
            std::lock_guard lock(m_mutex);
            list.push_back(Clock::now());
        }
        m_watch.Notify();
    }
    bool WaitForSubtitles(std::size_t count) {
        return m_watch.WaitFor([&] {
            std::lock_guard lock(m_mutex);
            return m_subtitles.size() >= count && m_pictures.size() > count * 25;
        });
    }

    DecoderPlan m_plan;
    DecoderEvents m_events;
    Watch m_watch;
    std::mutex m_mutex;
    std::vector<Clock::time_point> m_pictures, m_subtitles;
};

// The times between two pages on the screen and in the stream must agree, and so must those between a page and the
// picture that it belongs to. The first picture does not count: it is shown as soon as it is there.
TEST_F(DecoderTest, HandsOutSubtitlesInTimeWithThePictures) {
    Excerpt excerpt = ReadExcerpt(5);
    ASSERT_GE(excerpt.subtitles.size(), 3u);
    Decoder decoder(m_plan, m_events);
    decoder.Feed(std::move(excerpt.packets));
    ASSERT_TRUE(WaitForSubtitles(3));
    std::lock_guard lock(m_mutex);
    const auto shown = std::ranges::min_element(
        excerpt.pictures, {}, [&](std::int64_t time) { return std::abs(time - excerpt.subtitles[1]); });
    // The first one is handed out twice: when it is there, and when it is its time.
    const auto index = static_cast<std::size_t>(shown - excerpt.pictures.begin()) + 1;
    ASSERT_LT(index, m_pictures.size());
    EXPECT_LT(std::abs(Milliseconds(m_subtitles[1] - m_pictures[index])), kTolerance);
    const auto between = static_cast<double>(excerpt.subtitles[2] - excerpt.subtitles[1]) / 90;
    EXPECT_LT(std::abs(Milliseconds(m_subtitles[2] - m_subtitles[1]) - between), kTolerance);
}

// One packet in twenty: of the pictures that others refer to, hardly one comes whole.
TEST_F(DecoderTest, MakesPicturesThoughPacketsAreLost) {
    const Excerpt excerpt = ReadExcerpt(5);
    std::mt19937 random(1);
    Packets received;
    for (std::size_t at = 0; at < excerpt.packets.size(); at += kPacketSize)
        if (PidOf(&excerpt.packets[at]) != kVideoPid || random() % 20 != 0)
            received.insert(received.end(), &excerpt.packets[at], &excerpt.packets[at] + kPacketSize);
    m_plan.subtitlePids.clear();
    Decoder decoder(m_plan, m_events);
    decoder.Feed(std::move(received));
    EXPECT_TRUE(m_watch.WaitFor([&] {
        std::lock_guard lock(m_mutex);
        return m_pictures.size() >= 25;
    }));
}

}  // namespace
}  // namespace television::test
