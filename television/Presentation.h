// Which channel is selected and what becomes of its presentation. Operations begin something and return; it is carried
// out, and reported to the page's listener, on the television's thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "television/ComponentChoice.h"
#include "television/ListenerGate.h"
#include "television/Multiplex.h"
#include "television/ParentalLock.h"
#include "television/Screen.h"
#include "television/ServiceDirectory.h"
#include "television/TaskQueue.h"
#include "television/playback/Decoder.h"
#include "television/subtitles/SubtitleTrack.h"

namespace television {

class Presentation {
public:
    struct Surroundings {
        ServiceDirectory& directory;
        Screen& screen;
        ListenerGate& gate;
        TaskQueue& queue;
        const ParentalLock& lock;
        std::function<Multiplex&(std::size_t place)> multiplex;
        std::function<void()> channelChanged;  // Selected answers differently
    };
    // `language`: the viewer's preferred one for sound, three letters or empty.
    Presentation(Surroundings surroundings, SoundOutput sound, const std::string& language);
    ~Presentation();

    // By the page. The outcome is reported once, unless another operation comes first.
    bool SelectByPage(unsigned int id);
    bool StepByPage(int steps);
    // Presents the selected channel. Only a failure is reported.
    void Bind();
    void Stop();
    void StopChannel();
    // The page has no player any more: the channel is presented again, and nothing is reported.
    void Unbind();

    // By the viewer: the page's listener is told that the channel changes, and then the outcome.
    bool SelectByViewer(unsigned int id);
    bool StepByViewer(int steps);
    // By the television itself.
    bool SelectSilently(unsigned int id);

    // Media playback mode. These do not wait for a listener call.
    void Suspend();
    bool Resume();
    bool IsSuspended() const;

    // 0 when no channel is selected.
    unsigned int Selected() const;
    bool IsPresented() const;
    TuneTimes LastTune() const;
    // What of the selected service is presented. A component that the service does not have changes nothing.
    bool Presents(const Component& component) const;
    bool SelectComponent(ComponentType type, unsigned int index);
    bool UnselectComponent(ComponentType type, unsigned int index);
    // From 0 to 100; beyond is the nearer one. Muted nothing is heard, and the volume stays.
    void SetVolume(int volume);
    int Volume() const;
    void Mute(bool muted);
    bool IsMuted() const;

    // What the receiver found. On the television's thread, as is Close, which ends all decoding.
    void Close() { CloseDecoder(); }
    void TablesChanged();
    // The parental lock, or what is scrambled, is another: the channel may have to be blocked, or may be presented.
    void Reconsider();
    void StreamBroke();
    void SignalLost();
    void SignalReturned();

private:
    using Clock = std::chrono::steady_clock;
    enum class Phase { Idle, Tuning, Presented, Failed, Blocked, Scrambled };
    // What the listener is told of the session's outcome. The last four follow from what it knows: that the channel is
    // presented, failed, is blocked by the parental lock, is scrambled.
    enum class Report { Nothing, Channel, OnlyFailure, OnlySuccess, Unblocking, Unscrambling };
    enum class Fault { NoPicture, NotInStream };

    // Each operation of the page or the viewer is a request: a report of an older one is not given any more. Each
    // attempt to present is a session: what an older one still brings is dropped.
    struct State {
        unsigned int selected = 0, last = 0;
        std::uint64_t request = 0, session = 0;
        Phase phase = Phase::Idle;
        Report report = Report::Nothing;
        bool suspended = false;
        Clock::time_point since;
        TuneTimes times;
        int volume = 100;
        bool muted = false;
        ComponentChoice choice;
    };

    using ChoiceOperation = bool (ComponentChoice::*)(const std::vector<Component>&, ComponentType, unsigned int);

    bool Select(unsigned int id, Report report, bool announce);
    bool Choose(ComponentType type, unsigned int index, ChoiceOperation operation);
    bool Step(int steps, const std::function<bool(unsigned int)>& select);
    bool Continues(unsigned int id) const;
    Report NextReport() const;
    bool IsTuned() const;
    void BeginSession(Report report);
    void Halt(bool deselect);
    void PostSession(std::uint64_t session);
    bool IsCurrent(std::uint64_t session) const;
    Clock::time_point Since() const;

    // On the television's thread.
    void Announce(std::uint64_t request);
    void RunSession(std::uint64_t session);
    void Restart();
    void OpenDecoder(std::uint64_t session);
    DecoderEvents Events(std::uint64_t session, bool hasVideo);
    DecoderPlan PlanOf(const Route& route) const;
    // What the presentation begins with: the picture, or a sound where there is none.
    static std::optional<Component> AccessOf(const DecoderPlan& plan);
    void ApplyChoice();
    void CloseDecoder();
    void CloseUnless(std::uint64_t session);
    void Succeed(std::uint64_t session, Clock::time_point when);
    void Fail(std::uint64_t session, Fault fault);
    std::optional<Phase> Obstacle() const;
    void Obstruct(std::uint64_t session, Phase obstacle);
    void ReportBlocked(Report report, std::uint64_t request, unsigned int id);
    void ReportScrambled(Report report, std::uint64_t request, unsigned int id);
    void TellClear(std::uint64_t request);
    std::uint16_t CaSystemId() const;
    void TellAboutProgramme(std::uint64_t request);
    int HeardVolume() const;
    void ApplyVolume();
    void SoundFailed(std::uint64_t session);
    void DecodingFailed(std::uint64_t session);
    void ReportSuccess(Report report, std::uint64_t request, unsigned int id);
    void ReportFailure(Report report, Fault fault, std::uint64_t request, unsigned int id);
    void Tell(std::uint64_t request, const std::function<void(IBroadcastPlayerListener&)>& call);
    void WatchProgrammes();
    void TellRating(std::uint64_t request);

    Surroundings m_around;
    mutable std::mutex m_mutex;
    State m_state;

    // The television's thread only.
    SoundOutput m_sound;
    SubtitleTrack m_subtitles;
    std::unique_ptr<Decoder> m_decoder;
    StreamBuffer* m_buffer = nullptr;     // that feeds it
    std::uint16_t m_videoPid = kNullPid;  // that it decodes
    Route m_route;
    std::uint64_t m_routeSession = 0;  // that m_route is of
    // The listener that knows the channel as scrambled, and by which CA system.
    const IBroadcastPlayerListener* m_knowsScrambled = nullptr;
    std::uint16_t m_scrambledBy = 0;
    unsigned int m_watchedId = 0;
    std::vector<Event> m_watchedEvents;
    std::optional<std::uint8_t> m_toldRating;
};

}  // namespace television
