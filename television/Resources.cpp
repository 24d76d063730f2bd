// The media player's turns with the screen.
#include "television/Resources.h"

namespace television {
namespace {

bool Always() { return true; }

}  // namespace

bool Resources::StartMediaPlayer() {
    std::lock_guard lock(m_turn);
    if (m_mediaPlays.exchange(true)) return false;
    m_presentation.Suspend();
    TellSuspended();
    return true;
}

bool Resources::StopMediaPlayer() {
    std::lock_guard lock(m_turn);
    if (!m_mediaPlays.exchange(false)) return false;
    TellResumed();
    return true;
}

void Resources::PageBound() {
    std::lock_guard lock(m_turn);
    if (m_mediaPlays) TellSuspended();
}

void Resources::TellSuspended() {
    m_queue.Post([this] { m_gate.Tell(Always, [](IBroadcastPlayerListener& listener) { listener.Suspend(); }); });
}

// The page's object restores the broadcast when it hears of it. Where there is none, nobody else would.
void Resources::TellResumed() {
    m_queue.Post([this] {
        const bool told = m_gate.Tell(Always, [](IBroadcastPlayerListener& listener) { listener.Resume(); });
        if (!told && !m_mediaPlays) m_presentation.Resume();
    });
}

}  // namespace television
