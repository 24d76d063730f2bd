// What the page, the viewer and the television ask for, on any thread. PresentationSession.cpp carries it out.
#include "television/Presentation.h"

#include <algorithm>
#include <utility>

namespace television {

Presentation::Presentation(Surroundings surroundings, SoundOutput sound, const std::string& language)
    : m_around(std::move(surroundings)), m_sound(std::move(sound)), m_subtitles(m_around.screen, m_around.queue) {
    m_state.choice = ComponentChoice(language);
}

Presentation::~Presentation() = default;

bool Presentation::SelectByPage(unsigned int id) { return Select(id, Report::Channel, false); }
bool Presentation::SelectByViewer(unsigned int id) { return Select(id, Report::Channel, true); }
bool Presentation::SelectSilently(unsigned int id) { return Select(id, Report::Nothing, false); }

bool Presentation::StepByPage(int steps) {
    return Step(steps, [this](unsigned int id) { return SelectByPage(id); });
}

bool Presentation::StepByViewer(int steps) {
    return Step(steps, [this](unsigned int id) { return SelectByViewer(id); });
}

bool Presentation::Step(int steps, const std::function<bool(unsigned int)>& select) {
    unsigned int from = 0;
    {
        std::lock_guard lock(m_mutex);
        from = m_state.selected ? m_state.selected : m_state.last;
    }
    const auto service = m_around.directory.Neighbour(from, steps);
    return service && select(service->id);
}

// True when what is going on already leads to this channel. Under the lock.
bool Presentation::Continues(unsigned int id) const {
    const bool underWay = m_state.phase == Phase::Tuning || m_state.phase == Phase::Presented;
    return m_state.selected == id && underWay && !m_state.suspended;
}

// Presented, or to be presented but for an obstacle. Under the lock.
bool Presentation::IsTuned() const {
    const Phase phase = m_state.phase;
    return !m_state.suspended && (phase == Phase::Presented || phase == Phase::Blocked || phase == Phase::Scrambled);
}

// Of the next attempt, by what the listener knows of this one. Under the lock.
Presentation::Report Presentation::NextReport() const {
    switch (m_state.phase) {
        case Phase::Idle:
            return Report::Nothing;
        case Phase::Tuning:
            return m_state.report;
        case Phase::Presented:
            return Report::OnlyFailure;
        case Phase::Failed:
            return Report::OnlySuccess;
        case Phase::Blocked:
            return Report::Unblocking;
        case Phase::Scrambled:
            return Report::Unscrambling;
    }
    return Report::Nothing;
}

// Under the lock.
void Presentation::BeginSession(Report report) {
    ++m_state.session;
    m_state.phase = Phase::Tuning;
    m_state.report = report;
    m_state.since = Clock::now();
}

bool Presentation::Select(unsigned int id, Report report, bool announce) {
    if (!m_around.directory.Find(id)) return false;
    auto closed = m_around.gate.Close();
    std::unique_lock lock(m_mutex);
    const std::uint64_t request = ++m_state.request;
    const bool continues = Continues(id), presented = m_state.phase == Phase::Presented;
    const bool changed = m_state.selected != id;
    m_state.selected = id;
    if (changed) m_state.choice.Reset();
    if (!continues)
        BeginSession(report);
    else if (!presented)
        m_state.report = report;
    const std::uint64_t session = m_state.session;
    lock.unlock();
    closed.unlock();

    if (announce && !(continues && presented)) m_around.queue.Post([=, this] { Announce(request); });
    if (!continues) {
        m_around.screen.Begin(session);
        PostSession(session);
    } else if (presented && !announce) {
        m_around.queue.Post([=, this] { ReportSuccess(report, request, id); });
    }
    if (changed) m_around.channelChanged();
    return true;
}

void Presentation::Bind() {
    const auto closed = m_around.gate.Close();
    std::lock_guard lock(m_mutex);
    if (m_state.selected == 0 || m_state.phase == Phase::Presented) return;
    if (m_state.phase == Phase::Tuning) {
        m_state.report = Report::OnlyFailure;
        return;
    }
    ++m_state.request;
    BeginSession(Report::OnlyFailure);
    PostSession(m_state.session);
}

void Presentation::Stop() { Halt(false); }
void Presentation::StopChannel() { Halt(true); }

void Presentation::Halt(bool deselect) {
    auto closed = m_around.gate.Close();
    std::unique_lock lock(m_mutex);
    ++m_state.request;
    const std::uint64_t session = ++m_state.session;
    m_state.phase = Phase::Idle;
    m_state.report = Report::Nothing;
    if (deselect && m_state.selected != 0) m_state.last = std::exchange(m_state.selected, 0);
    lock.unlock();
    closed.unlock();

    m_around.screen.Begin(session);
    m_around.queue.Post([=, this] { CloseUnless(session); });
    if (deselect) m_around.channelChanged();
}

void Presentation::Unbind() {
    bool reselected = false;
    {
        std::lock_guard lock(m_mutex);
        ++m_state.request;
        m_state.report = Report::Nothing;
        m_state.choice.Reset();
        reselected = m_state.selected == 0 && m_state.last != 0;
        if (reselected) m_state.selected = m_state.last;
        if (m_state.selected != 0 && m_state.phase == Phase::Idle) {
            BeginSession(Report::Nothing);
            PostSession(m_state.session);
        }
    }
    m_around.queue.Post([this] { ApplyChoice(); });
    m_around.screen.SetFullScreen();
    if (reselected) m_around.channelChanged();
}

void Presentation::Suspend() {
    std::unique_lock lock(m_mutex);
    m_state.suspended = true;
    const std::uint64_t session = ++m_state.session;
    lock.unlock();
    m_around.screen.Begin(session);
    m_around.queue.Post([=, this] { CloseUnless(session); });
}

bool Presentation::Resume() {
    const bool known = m_around.directory.Find(Selected()).has_value();
    std::lock_guard lock(m_mutex);
    if (!std::exchange(m_state.suspended, false) || m_state.phase == Phase::Idle) return true;
    if (!known) return false;
    // The page's object counts a channel as presented again, unless it knows it as scrambled.
    const Report report = NextReport();
    BeginSession(report == Report::Unblocking     ? Report::OnlyFailure
                 : report == Report::Unscrambling ? Report::OnlySuccess
                                                  : report);
    PostSession(m_state.session);
    return true;
}

bool Presentation::IsSuspended() const {
    std::lock_guard lock(m_mutex);
    return m_state.suspended;
}

unsigned int Presentation::Selected() const {
    std::lock_guard lock(m_mutex);
    return m_state.selected;
}

bool Presentation::IsPresented() const {
    std::lock_guard lock(m_mutex);
    return m_state.phase == Phase::Presented && !m_state.suspended;
}

TuneTimes Presentation::LastTune() const {
    std::lock_guard lock(m_mutex);
    return m_state.times;
}

int Presentation::Volume() const {
    std::lock_guard lock(m_mutex);
    return m_state.volume;
}

void Presentation::SetVolume(int volume) {
    {
        std::lock_guard lock(m_mutex);
        m_state.volume = std::clamp(volume, 0, 100);
    }
    ApplyVolume();
}

bool Presentation::IsMuted() const {
    std::lock_guard lock(m_mutex);
    return m_state.muted;
}

void Presentation::Mute(bool muted) {
    {
        std::lock_guard lock(m_mutex);
        m_state.muted = muted;
    }
    ApplyVolume();
}

int Presentation::HeardVolume() const { return IsMuted() ? 0 : Volume(); }

void Presentation::ApplyVolume() {
    m_around.queue.Post([this] {
        if (m_decoder) m_decoder->SetVolume(HeardVolume());
    });
}

bool Presentation::Presents(const Component& component) const {
    const auto components = m_around.directory.RouteTo(Selected()).components;
    std::lock_guard lock(m_mutex);
    if (m_state.phase != Phase::Presented || m_state.suspended) return false;
    const auto presented = m_state.choice.Presented(components, component.type);
    return presented && presented->index == component.index;
}

bool Presentation::SelectComponent(ComponentType type, unsigned int index) {
    return Choose(type, index, &ComponentChoice::Select);
}

bool Presentation::UnselectComponent(ComponentType type, unsigned int index) {
    return Choose(type, index, &ComponentChoice::Unselect);
}

bool Presentation::Choose(ComponentType type, unsigned int index, ChoiceOperation operation) {
    const auto components = m_around.directory.RouteTo(Selected()).components;
    {
        std::lock_guard lock(m_mutex);
        if (!(m_state.choice.*operation)(components, type, index)) return false;
    }
    m_around.queue.Post([this] { ApplyChoice(); });
    return true;
}

bool Presentation::IsCurrent(std::uint64_t session) const {
    std::lock_guard lock(m_mutex);
    return m_state.session == session && !m_state.suspended;
}

Presentation::Clock::time_point Presentation::Since() const {
    std::lock_guard lock(m_mutex);
    return m_state.since;
}

void Presentation::PostSession(std::uint64_t session) {
    m_around.queue.Post([=, this] { RunSession(session); });
}

}  // namespace television
