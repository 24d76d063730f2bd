// How a channel comes to be presented, and what is reported of it: the part on the television's thread.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

#include "television/Log.h"
#include "television/Presentation.h"
#include "television/interfaces/ChannelCache.h"
#include "television/tables/ProgrammeList.h"

namespace television {
namespace {

// A channel without a picture, or without sound if it has no picture, for this long cannot be presented.
constexpr auto kPatience = std::chrono::seconds(3);
// A pipeline that broke is made anew after this.
constexpr auto kAfterFault = std::chrono::seconds(1);

std::optional<Component> FirstOf(const Route& route, ComponentType type) {
    for (const Component& component : route.components)
        if (component.type == type) return component;
    return std::nullopt;
}

ServiceSelection SelectionOf(const Route& route, const DecoderPlan& plan, const std::optional<Component>& access) {
    ServiceSelection selection;
    selection.tablePid = route.mapPid;
    selection.accessPid = access ? access->pid : kNullPid;
    selection.accessType = access ? access->streamType : std::uint8_t{0};
    selection.accessAnywhere = !plan.video;
    selection.pids = {route.clockPid};
    if (plan.video) selection.pids.insert(plan.video->pid);
    for (const Component& sound : plan.sounds) selection.pids.insert(sound.pid);
    selection.pids.insert(plan.subtitlePids.begin(), plan.subtitlePids.end());
    return selection;
}

double Milliseconds(std::chrono::steady_clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

}  // namespace

void Presentation::Tell(std::uint64_t request, const std::function<void(IBroadcastPlayerListener&)>& call) {
    const auto wanted = [=, this] {
        std::lock_guard lock(m_mutex);
        return m_state.request == request;
    };
    m_around.gate.Tell(wanted, call);
}

void Presentation::Announce(std::uint64_t request) {
    Tell(request, [](IBroadcastPlayerListener& listener) { listener.ChannelChanged(); });
}

void Presentation::RunSession(std::uint64_t session) {
    if (!IsCurrent(session)) return;
    WatchProgrammes();
    m_around.screen.Continue(session);
    CloseDecoder();
    m_route = m_around.directory.RouteTo(Selected());
    m_routeSession = session;
    if (m_route.state == Route::State::NotInStream) {
        Fail(session, Fault::NotInStream);
        return;
    }
    if (const auto obstacle = Obstacle()) {
        Obstruct(session, *obstacle);
        return;
    }
    if (m_route.state == Route::State::Ready) OpenDecoder(session);
    m_around.queue.PostAt(Since() + kPatience, [=, this] { Fail(session, Fault::NoPicture); });
}

// Begins again after something in the stream changed. The page hears only if what it knows is not true any more.
void Presentation::Restart() {
    std::uint64_t session = 0;
    {
        std::lock_guard lock(m_mutex);
        if (m_state.phase == Phase::Idle || m_state.suspended) return;
        const auto since = m_state.phase == Phase::Tuning ? m_state.since : Clock::now();
        BeginSession(NextReport());
        m_state.since = since;
        session = m_state.session;
    }
    RunSession(session);
}

// All sounds and subtitles of the service are decoded; of its pictures, those that are presented.
DecoderPlan Presentation::PlanOf(const Route& route) const {
    DecoderPlan plan;
    plan.sid = route.sid;
    for (const Component& component : route.components) {
        if (component.type == ComponentType::Audio) plan.sounds.push_back(component);
        if (component.type == ComponentType::Subtitle && IsDrawn(component)) plan.subtitlePids.insert(component.pid);
    }
    plan.output = m_sound;
    plan.volume = HeardVolume();
    std::lock_guard lock(m_mutex);
    plan.video = m_state.choice.Presented(route.components, ComponentType::Video);
    if (!plan.video) plan.video = FirstOf(route, ComponentType::Video);  // unseen, but its time goes on
    if (const auto heard = m_state.choice.Presented(route.components, ComponentType::Audio)) plan.heard = heard->pid;
    return plan;
}

std::optional<Component> Presentation::AccessOf(const DecoderPlan& plan) {
    if (plan.video || plan.sounds.empty()) return plan.video;
    const auto heard = std::find_if(plan.sounds.begin(), plan.sounds.end(),
                                    [&](const Component& sound) { return sound.pid == plan.heard; });
    return heard == plan.sounds.end() ? plan.sounds.front() : *heard;
}

void Presentation::OpenDecoder(std::uint64_t session) {
    const DecoderPlan plan = PlanOf(m_route);
    ApplyChoice();
    m_videoPid = plan.video ? plan.video->pid : kNullPid;
    m_decoder = std::make_unique<Decoder>(plan, Events(session, plan.video.has_value()));
    m_buffer = &m_around.multiplex(m_route.multiplex).Buffer();
    m_buffer->Attach(
        SelectionOf(m_route, plan, AccessOf(plan)),
        [decoder = m_decoder.get()](std::vector<std::uint8_t>&& packets) { decoder->Feed(std::move(packets)); });
}

DecoderEvents Presentation::Events(std::uint64_t session, bool hasVideo) {
    const auto first = [=, this, seen = std::make_shared<std::atomic<bool>>(false)] {
        if (!seen->exchange(true)) m_around.queue.Post([=, this, when = Clock::now()] { Succeed(session, when); });
    };
    DecoderEvents events;
    events.picture = [=, this](std::shared_ptr<const Picture> picture) {
        m_around.screen.Show(session, std::move(picture));
        first();
    };
    events.firstSound = [=] {
        if (!hasVideo) first();
    };
    events.subtitle = [=, this](std::uint16_t pid, std::vector<std::uint8_t>&& data) {
        m_around.queue.Post([=, this, data = std::move(data)] { m_subtitles.Take(session, pid, data); });
    };
    events.fault = [=, this](const std::string& text, bool soundDevice) {
        Log((soundDevice ? "The sound device failed: " : "Decoding failed: ") + text + ".");
        if (soundDevice)
            m_around.queue.Post([=, this] { SoundFailed(session); });
        else
            m_around.queue.PostAt(Clock::now() + kAfterFault, [=, this] { DecodingFailed(session); });
    };
    return events;
}

// What the page chose, as far as it needs no new decoder.
void Presentation::ApplyChoice() {
    const DecoderPlan plan = PlanOf(m_route);
    std::unique_lock lock(m_mutex);
    const bool seen = m_state.choice.Presented(m_route.components, ComponentType::Video).has_value();
    const auto subtitle = m_state.choice.Presented(m_route.components, ComponentType::Subtitle);
    const std::uint64_t session = m_state.session;
    lock.unlock();
    m_subtitles.Choose(session, subtitle);
    m_around.screen.ShowVideo(seen || !plan.video);
    if (!m_decoder) return;
    if (plan.video && plan.video->pid != m_videoPid)
        Restart();
    else
        m_decoder->Hear(plan.heard);
}

void Presentation::CloseDecoder() {
    if (m_buffer) std::exchange(m_buffer, nullptr)->Detach();
    m_decoder.reset();
    m_subtitles.Choose(0, std::nullopt);
}

// Ends what was presented before `session`, unless a newer one has taken its place already.
void Presentation::CloseUnless(std::uint64_t session) {
    std::unique_lock lock(m_mutex);
    const bool newer = m_state.session != session;
    lock.unlock();
    if (!newer) CloseDecoder();
}

void Presentation::SoundFailed(std::uint64_t session) {
    if (!IsCurrent(session) || (m_sound.file.empty() && m_sound.element == "fakesink")) return;
    m_sound = {};
    Restart();
}

void Presentation::DecodingFailed(std::uint64_t session) {
    if (IsCurrent(session)) Restart();
}

void Presentation::Succeed(std::uint64_t session, Clock::time_point when) {
    std::unique_lock lock(m_mutex);
    if (m_state.session != session || m_state.suspended || m_state.phase == Phase::Presented) return;
    const bool late = m_state.phase == Phase::Failed;
    const Report report = late ? Report::OnlySuccess : m_state.report;
    m_state.phase = Phase::Presented;
    m_state.report = Report::Nothing;
    m_state.times = {m_state.times.count + 1, Milliseconds(when - m_state.since)};
    const auto request = m_state.request;
    const auto id = m_state.selected;
    const double duration = m_state.times.toFirstPicture;
    lock.unlock();

    Log("Channel " + std::to_string(id) + " is presented, after " + std::to_string(std::lround(duration)) + " ms.");
    ReportSuccess(report, request, id);
    TellAboutProgramme(request);
}

void Presentation::Fail(std::uint64_t session, Fault fault) {
    std::unique_lock lock(m_mutex);
    if (m_state.session != session || m_state.suspended || m_state.phase != Phase::Tuning) return;
    const Report report = std::exchange(m_state.report, Report::Nothing);
    m_state.phase = Phase::Failed;
    const auto request = m_state.request;
    const auto id = m_state.selected;
    lock.unlock();

    m_around.screen.Begin(session);
    Log("Channel " + std::to_string(id) +
        (fault == Fault::NotInStream ? " is not in the stream." : " brought no picture or sound within 3 seconds."));
    ReportFailure(report, fault, request, id);
}

void Presentation::ReportSuccess(Report report, std::uint64_t request, unsigned int id) {
    if (report == Report::Channel)
        Tell(request,
             [id](IBroadcastPlayerListener& listener) { listener.TuneSuccess(ChannelCache::TheCache().Hold(id)); });
    else if (report == Report::OnlySuccess)
        Tell(request, [](IBroadcastPlayerListener& listener) { listener.TuneSuccess(0); });
    else if (report == Report::Unblocking)
        Tell(request, [id](IBroadcastPlayerListener& listener) { listener.ParentalRatingUnblocked(id); });
    TellClear(request);
}

void Presentation::ReportFailure(Report report, Fault fault, std::uint64_t request, unsigned int id) {
    if (report == Report::Nothing || report == Report::OnlySuccess) return;
    Tell(request, [=](IBroadcastPlayerListener& listener) {
        if (fault == Fault::NotInStream)
            listener.ServiceNotAvailable(ChannelCache::TheCache().Hold(id));
        else if (report == Report::Channel)
            listener.TuneFail(ChannelCache::TheCache().Hold(id));
        else
            listener.NoSignal();
    });
}

void Presentation::TablesChanged() {
    std::unique_lock lock(m_mutex);
    const bool idle = m_state.phase == Phase::Idle || m_state.suspended;
    lock.unlock();
    if (!idle && !m_around.directory.RouteTo(Selected()).SameStreams(m_route)) Restart();
    WatchProgrammes();
    Reconsider();
}

void Presentation::StreamBroke() { Restart(); }

void Presentation::SignalLost() {
    std::unique_lock lock(m_mutex);
    if (!IsTuned()) return;
    m_state.phase = Phase::Failed;
    const std::uint64_t session = ++m_state.session;
    const auto request = m_state.request;
    lock.unlock();

    Log("The signal was lost.");
    CloseDecoder();
    m_around.screen.Begin(session);
    Tell(request, [](IBroadcastPlayerListener& listener) { listener.NoSignal(); });
}

void Presentation::SignalReturned() {
    std::unique_lock lock(m_mutex);
    const bool failed = m_state.phase == Phase::Failed;
    lock.unlock();
    if (failed) Restart();
}

// Tells that the present or following event changed, if it is still the same channel's. What changes while the channel is
// not presented, because it is tuned to, lost or suspended, is told once it is: the page may have asked for it before.
void Presentation::WatchProgrammes() {
    std::unique_lock lock(m_mutex);
    const auto id = m_state.selected;
    const auto request = m_state.request;
    const bool tuned = IsTuned();
    lock.unlock();

    auto events = m_around.directory.Events(id);
    const bool changed = m_watchedId == id && events != m_watchedEvents;
    if (changed && !tuned) return;
    if (m_watchedId != id) m_toldRating.reset();
    m_watchedId = id;
    m_watchedEvents = std::move(events);
    if (!changed) return;
    Tell(request, [](IBroadcastPlayerListener& listener) { listener.ProgrammeChanged(); });
    TellRating(request);
}

// What is told of the programme when the channel is tuned to.
void Presentation::TellAboutProgramme(std::uint64_t request) {
    m_toldRating.reset();
    WatchProgrammes();
    TellRating(request);
}

void Presentation::TellRating(std::uint64_t request) {
    const auto rating = PresentRating(m_watchedEvents, m_around.directory.Country());
    if (m_toldRating == rating) return;
    m_toldRating = rating;
    if (!rating) return;
    Tell(request, [rating](IBroadcastPlayerListener& listener) {
        listener.ParentalRatingChanged(static_cast<char>(*rating));
    });
}

}  // namespace television
