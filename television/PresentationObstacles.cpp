// What keeps a channel that is received from being presented: the parental lock, and scrambling. On the television's
// thread.
#include <utility>

#include "platform/IBroadcastPlayerListener.h"
#include "television/Log.h"
#include "television/Presentation.h"
#include "television/interfaces/ChannelCache.h"

namespace television {

std::optional<Presentation::Phase> Presentation::Obstacle() const {
    const auto id = Selected();
    if (m_around.lock.Blocks(id, m_around.directory.Events(id))) return Phase::Blocked;
    const auto access = AccessOf(PlanOf(m_route));
    const auto& scrambling = m_around.multiplex(m_route.multiplex).Scrambling();
    const bool scrambled = access && scrambling.Of(access->pid) == ScramblingWatch::State::Scrambled;
    return scrambled ? std::optional(Phase::Scrambled) : std::nullopt;
}

void Presentation::Reconsider() {
    std::unique_lock lock(m_mutex);
    const Phase phase = m_state.phase;
    const std::uint64_t session = m_state.session;
    const bool running = !m_state.suspended && session == m_routeSession;
    lock.unlock();

    if (!running || phase == Phase::Idle || phase == Phase::Failed) return;
    const auto obstacle = Obstacle();
    const bool obstructed = phase == Phase::Blocked || phase == Phase::Scrambled;
    if (obstructed && obstacle != phase)
        Restart();
    else if (!obstructed && obstacle)
        Obstruct(session, *obstacle);
}

void Presentation::Obstruct(std::uint64_t session, Phase obstacle) {
    std::unique_lock lock(m_mutex);
    if (m_state.session != session || m_state.suspended) return;
    const Report report = NextReport();
    m_state.phase = obstacle;
    m_state.report = Report::Nothing;
    m_routeSession = ++m_state.session;
    const auto request = m_state.request;
    const auto id = m_state.selected;
    lock.unlock();

    CloseDecoder();
    m_around.screen.Begin(m_routeSession);
    Log("Channel " + std::to_string(id) +
        (obstacle == Phase::Blocked ? " is blocked by the parental lock."
                                    : " is scrambled, by CA system " + std::to_string(CaSystemId()) + "."));
    if (obstacle == Phase::Blocked)
        ReportBlocked(report, request, id);
    else
        ReportScrambled(report, request, id);
    TellAboutProgramme(request);
}

void Presentation::ReportBlocked(Report report, std::uint64_t request, unsigned int id) {
    if (report == Report::Channel)
        Tell(request, [id](IBroadcastPlayerListener& listener) {
            listener.ParentalRatingBlocked(ChannelCache::TheCache().Hold(id), false);
        });
    else if (report == Report::OnlyFailure)
        Tell(request, [id](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(id, true); });
    else if (report != Report::Nothing && report != Report::Unblocking)
        Tell(request, [](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(0, false); });
}

void Presentation::ReportScrambled(Report report, std::uint64_t request, unsigned int id) {
    if (report == Report::Nothing || report == Report::Unscrambling) return;
    Tell(request, [=, this](IBroadcastPlayerListener& listener) {
        m_knowsScrambled = &listener;
        m_scrambledBy = CaSystemId();
        if (report == Report::Channel)
            listener.ScrambledTune(ChannelCache::TheCache().Hold(id));
        else if (report == Report::OnlySuccess)
            listener.ScrambledTune(0);
        else
            listener.Scrambled(m_scrambledBy);
    });
}

// A listener that was told of scrambling counts every channel as scrambled until it is told that one is clear.
void Presentation::TellClear(std::uint64_t request) {
    Tell(request, [this](IBroadcastPlayerListener& listener) {
        if (std::exchange(m_knowsScrambled, nullptr) == &listener) listener.Unscrambled(m_scrambledBy);
    });
}

// Of the presented picture or sound; 0 when the service names none.
std::uint16_t Presentation::CaSystemId() const {
    const auto access = AccessOf(PlanOf(m_route));
    return access ? access->caSystemId : std::uint16_t{0};
}

}  // namespace television
