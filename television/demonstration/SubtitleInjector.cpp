// When a page is due, what it says, and which packet can carry it.
#include "television/demonstration/SubtitleInjector.h"

#include <algorithm>
#include <cstdio>

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/SubtitleWriter.h"

namespace television::demonstration {
namespace {

// Pages are sent so long before they are shown, which is about as long as the pictures are.
constexpr std::int64_t kAhead = kClockRate / 2;

std::string TimeOfDay(std::int64_t now) {
    const int seconds = static_cast<int>(now % 86'400);
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    return text;
}

SubtitlePage PageWith(const std::string& text, unsigned version) {
    SubtitlePage page{.page = kSubtitlePage, .version = version, .width = 1280, .height = 720, .x = 200, .y = 600};
    page.drawing = DrawText(text, 880, 64, 5, kBlackBox, kYellowInk);
    return page;
}

}  // namespace

SubtitleInjector::SubtitleInjector(std::uint16_t clockPid, std::vector<Track> tracks, TableInjector::WallClock wallClock)
    : m_clockPid(clockPid), m_wallClock(std::move(wallClock)) {
    for (Track& track : tracks) m_tracks.push_back({std::move(track), 0});
}

void SubtitleInjector::Process(std::vector<std::uint8_t>& packets) {
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        std::uint8_t* packet = packets.data() + at;
        const auto clock = PidOf(packet) == m_clockPid ? ClockOf(packet) : std::nullopt;
        if (clock && m_queue.empty()) Queue(*clock);
        if (PidOf(packet) != kNullPid || m_queue.empty()) continue;
        const auto end = m_queue.begin() + kPacketSize;
        std::copy(m_queue.begin(), end, packet);
        m_queue.erase(m_queue.begin(), end);
    }
}

void SubtitleInjector::Queue(std::int64_t clock) {
    if (m_lastPage) {
        const auto since = WrappedDifference(clock, *m_lastPage, kClockWrap);
        if (since >= 0 && since < kClockRate) return;
    }
    m_lastPage = clock;
    ++m_version;
    const std::int64_t presentation = Wrapped(clock + kAhead, kClockWrap) / 300;
    for (Sent& sent : m_tracks) {
        std::vector<std::uint8_t> packets;
        const Bytes page = MakeSubtitles(PageWith(sent.track.text(m_wallClock()), m_version));
        PacketizePes(MakePrivatePes(page, presentation), sent.track.pid, sent.continuity, packets);
        m_queue.insert(m_queue.end(), packets.begin(), packets.end());
    }
}

SubtitleInjector MakeSubtitleInjector(TableInjector::WallClock wallClock) {
    const auto german = [](std::int64_t now) { return "GUTEN TAG. ES IST " + TimeOfDay(now); };
    const auto english = [](std::int64_t now) { return "HELLO. THE TIME IS " + TimeOfDay(now); };
    return {Services().front().clockPid, {{kGermanSubtitlePid, german}, {kEnglishSubtitlePid, english}}, std::move(wallClock)};
}

}  // namespace television::demonstration
