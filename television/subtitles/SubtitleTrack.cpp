// Pages come and go.
#include "television/subtitles/SubtitleTrack.h"

namespace television {
namespace {

bool SameTrack(const std::optional<Component>& a, const std::optional<Component>& b) {
    if (!a || !b) return a.has_value() == b.has_value();
    return a->pid == b->pid && a->compositionPage == b->compositionPage && a->ancillaryPage == b->ancillaryPage;
}

}  // namespace

bool IsDrawn(const Component& subtitle) { return subtitle.encoding == kDvbSubtitles; }

void SubtitleTrack::Choose(std::uint64_t session, const std::optional<Component>& subtitle) {
    if (m_session == session && SameTrack(m_chosen, subtitle)) return;
    m_session = session;
    m_chosen = subtitle;
    m_decoder.reset();
    if (subtitle) m_decoder = std::make_unique<SubtitleDecoder>(subtitle->compositionPage, subtitle->ancillaryPage);
    ++m_page;
    m_screen.ShowSubtitles(session, nullptr);
}

void SubtitleTrack::Take(std::uint64_t session, std::uint16_t pid, const std::vector<std::uint8_t>& data) {
    if (session != m_session || !m_decoder || m_chosen->pid != pid) return;
    const auto page = m_decoder->Decode(data);
    if (!page) return;
    ++m_page;
    m_screen.ShowSubtitles(session, page->subtitles);
    if (page->subtitles) EndAfter(session, page->timeOut);
}

void SubtitleTrack::EndAfter(std::uint64_t session, std::chrono::milliseconds time) {
    m_queue.PostAt(TaskQueue::Clock::now() + time, [=, this, page = m_page] {
        if (page == m_page) m_screen.ShowSubtitles(session, nullptr);
    });
}

}  // namespace television
