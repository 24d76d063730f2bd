// The television as the program around it sees it: everything goes to the set that is switched on.
#include "television/Television.h"

#include "television/Core.h"
#include "television/Log.h"
#include "television/interfaces/ChannelCache.h"
#include "television/interfaces/DebugFramework.h"
#include "television/interfaces/ObjectKeys.h"
#include "television/stimuli/Stimuli.h"

namespace television {
namespace {

constexpr const char* kOff = "The television is off.";

// The directory knows what the stream says; the parental lock is the television's own.
std::optional<Service> WithLock(const TelevisionSet& set, std::optional<Service> service) {
    if (service) service->locked = set.IsLocked(*service);
    return service;
}

// A recording needs the receiver: no more than a page may the viewer take it away.
std::optional<std::string> Refusal() {
    const std::string sentence = "A recording is running and needs the receiver: stop the recorder to change the channel.";
    Log(sentence);
    return sentence;
}

std::optional<std::string> ViewerSteps(int steps) {
    const auto set = Core::Instance().Set();
    if (!set) return kOff;
    if (set->TheResources().IsRecording()) return Refusal();
    if (!set->ThePresentation().StepByViewer(steps)) return "There is no other channel.";
    return std::nullopt;
}

}  // namespace

Television::Television() = default;
Television::~Television() { Stop(); }

Television& Television::Instance() {
    static Television television;
    return television;
}

std::optional<std::string> Television::Start(const Configuration& configuration, const Observer& observer,
                                             const std::function<void(const std::string&)>& progress) {
    return Core::Instance().SwitchOn(configuration, observer, progress);
}

void Television::Stop() {
    PageClosed();
    Core::Instance().SwitchOff();
}

std::vector<Service> Television::Services() {
    const auto set = Core::Instance().Set();
    auto services = set ? set->Directory().Services() : std::vector<Service>{};
    for (Service& service : services) service.locked = set->IsLocked(service);
    return services;
}

std::optional<Service> Television::FindService(unsigned int id) {
    const auto set = Core::Instance().Set();
    return set ? WithLock(*set, set->Directory().Describe(id)) : std::nullopt;
}

std::optional<Service> Television::CurrentService() {
    const auto set = Core::Instance().Set();
    return set ? WithLock(*set, set->Directory().Describe(set->ThePresentation().Selected())) : std::nullopt;
}

std::vector<Programme> Television::Programmes(unsigned int id) {
    const auto set = Core::Instance().Set();
    return set ? set->Directory().Programmes(id) : std::vector<Programme>{};
}

TPTRect Television::VideoRectangle() {
    const auto set = Core::Instance().Set();
    return set ? set->TheScreen().Rectangle() : TPTRect{0, 0, kPlaneWidth, kPlaneHeight};
}

std::shared_ptr<const Picture> Television::CurrentPicture() {
    const auto set = Core::Instance().Set();
    return set ? set->TheScreen().CurrentPicture() : nullptr;
}

std::shared_ptr<const Subtitles> Television::CurrentSubtitles() {
    const auto set = Core::Instance().Set();
    return set ? set->TheScreen().CurrentSubtitles() : nullptr;
}

TuneTimes Television::LastTune() {
    const auto set = Core::Instance().Set();
    return set ? set->ThePresentation().LastTune() : TuneTimes{};
}

double Television::SinceStreamEvent() {
    const auto set = Core::Instance().Set();
    return set ? set->Events().SinceLastEvent() : 0;
}

Condition Television::TheCondition() {
    const auto set = Core::Instance().Set();
    if (!set) return {};
    const Presentation& presentation = set->ThePresentation();
    return {.presented = presentation.IsPresented(),
            .mediaPlays = set->TheResources().IsMediaPlaying(),
            .records = set->TheResources().IsRecording(),
            .volume = presentation.Volume(),
            .muted = presentation.IsMuted()};
}

std::optional<std::string> Television::ViewerSelects(unsigned int id) {
    const auto set = Core::Instance().Set();
    if (!set) return kOff;
    if (set->TheResources().IsRecording() && id != set->ThePresentation().Selected()) return Refusal();
    if (!set->ThePresentation().SelectByViewer(id)) return "There is no such channel.";
    return std::nullopt;
}

std::optional<std::string> Television::ViewerSelectsNext() { return ViewerSteps(1); }
std::optional<std::string> Television::ViewerSelectsPrevious() { return ViewerSteps(-1); }

std::optional<std::string> Television::Stimulate(const std::string& line) {
    const auto set = Core::Instance().Set();
    return set ? RunStimulus(*set, line) : kOff;
}

std::vector<StimulusUse> Television::Stimuli() {
    std::vector<StimulusUse> uses;
    for (const Stimulus& stimulus : AllStimuli())
        uses.push_back({stimulus.name, stimulus.argument ? stimulus.argument : "", stimulus.meaning});
    return uses;
}

void Television::PageOpened(bool broadcastRelated, const std::vector<std::string>& origins) {
    Core::Instance().Page().Open(broadcastRelated, origins);
}

void Television::PageClosed() {
    if (const auto set = Core::Instance().Set()) set->Events().EndAll();
    Core::Instance().GiveBackPlayer();
    Core::Instance().Page().Close();
    ChannelCache::TheCache().ReleaseAll();
    ObjectKeys::TheKeys().Clear();
}

bool Television::IsKey(const std::string& key) { return ObjectKeys::TheKeys().IsKey(key); }

void Television::SetDebugLevel(int level) { SetPluginDebugLevel(level); }

}  // namespace television
