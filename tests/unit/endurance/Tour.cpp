#include "tests/unit/endurance/Tour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "tests/support/CallList.h"
#include "tests/support/Log.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace endurance {

using support::CallList;
using support::FakeObject;
using support::Log;
using support::Outcome;
using support::Value;
using support::Values;

namespace {

constexpr const char* kHandlers[] = {"onChannelChangeError",
                                     "onChannelChangeSucceeded",
                                     "onPlayStateChange",
                                     "onFullScreenChange",
                                     "onFocus",
                                     "onBlur",
                                     "onProgrammesChanged",
                                     "onParentalRatingChange",
                                     "onParentalRatingError",
                                     "onDRMRightsError",
                                     "onStreamEvent"};
constexpr const char* kTypes[] = {"ChannelChangeError",  "ChannelChangeSucceeded", "PlayStateChange",
                                  "FullScreenChange",    "ProgrammesChanged",      "ParentalRatingChange",
                                  "ParentalRatingError", "DrmRightsError"};
constexpr const char* kProperties[] = {"width",
                                       "height",
                                       "fullscreen",
                                       "playState",
                                       "programmes",
                                       "currentChannel",
                                       "COMPONENT_TYPE_VIDEO",
                                       "COMPONENT_TYPE_AUDIO",
                                       "COMPONENT_TYPE_SUBTITLE"};
constexpr const char* kMethods[] = {"addEventListener",
                                    "removeEventListener",
                                    "toString",
                                    "getChannelConfig",
                                    "bindToCurrentChannel",
                                    "createChannelObject",
                                    "setChannel",
                                    "prevChannel",
                                    "nextChannel",
                                    "setFullScreen",
                                    "setVolume",
                                    "getVolume",
                                    "release",
                                    "stop",
                                    "getComponents",
                                    "getCurrentActiveComponents",
                                    "selectComponent",
                                    "unselectComponent",
                                    "addStreamEventListener",
                                    "removeStreamEventListener"};
constexpr const char* kPropertiesOfEvery[] = {"type",    "target",     "currentTarget", "eventPhase",
                                              "bubbles", "cancelable", "namespaceURI"};
constexpr const char* kMethodsOfEvery[] = {"addEventListener", "removeEventListener", "toString"};
constexpr const char* kEventProperties[] = {"channel",     "errorState",      "state", "error", "contentID", "rating",
                                            "DRMSystemID", "rightsIssuerURL", "name",  "data",  "text",      "status"};

// What a step is judged by; the layout, which every change of state asks for, only where it is the matter.
const Lines kTold = {
    "script.", "event ", "exception ",         "setvalue ",           "forceredraw",          "player.",
    "cache.",  "dsmcc.", "browser.SetChannel", "browser.EnableMedia", "browser.DisableMedia", "screen."};

bool IsOperation(const std::string& call) {
    const auto dot = call.find('.');
    return dot != std::string::npos && dot < call.find('(') && !call.starts_with("script.") &&
           !call.starts_with("evaluate ") && !call.starts_with("cairo.") && !call.starts_with("debug.");
}

}  // namespace

Tour::Tour(const Fault& fault, const Prepare& prepare)
    : m_fault(fault), m_platform(support::RecordingPlatform::Instance()) {
    m_platform.Reset();
    m_platform.answers.videoComponents = {"0, 100"};
    m_platform.answers.audioComponents = {"1, 101", "1, 102"};
    m_platform.answers.subtitleComponents = {"2, 103"};
    if (prepare) prepare(m_browser, m_platform.answers);
    m_platform.Apply();
    CallList::Instance().Reset();
    Log::Instance().SetLevel(2);
    if (m_fault.use != 0) Faults().FailNth(m_fault.function, m_fault.use);
    Construct();
    if (m_object->Object() != nullptr) {
        SetHandlersAndListeners();
        ReadWithoutPlayer();
        ReadProperties();
        BindAndStep();
        ShowTheWindow();
        ReadProperties();
        SetChannels();
        HearOfChannels();
        MakeChannelObjects();
        ChangeTheWindow();
        ChooseComponents();
        HearOfRatingsAndRights();
        HearStreamEvents();
        SuspendAndResume();
        StopAndRelease();
        ClearHandlersAndListeners();
    }
    Destroy();
    ExpectNothingHeld();
}

support::FaultPlan& Tour::Faults() {
    return m_fault.function.find('.') != std::string::npos ? m_platform.Faults() : m_browser.Faults();
}

unsigned Tour::Uses(const std::string& function) const {
    return function.find('.') != std::string::npos ? m_platform.Uses(function) : m_browser.Uses(function);
}

void Tour::Make(const std::string& name, const Act& act) {
    CallList::Instance().Clear();
    Log::Instance().Clear();
    const Outcome outcome = act();
    m_browser.RunAsyncCalls();
    Record(name, outcome);
    NoteTheFault();
}

void Tour::Record(const std::string& name, const Outcome& outcome) {
    Step& step = m_steps.emplace_back(Step{name, {}});
    step.lines.push_back(!outcome.accepted            ? "refused"
                         : !outcome.exception.empty() ? "throws " + outcome.exception
                                                      : "= " + WithoutNumbers(outcome.value.Show()));
    for (const std::string& call : CallList::Instance().Of(kTold)) {
        if (!call.starts_with("exception ")) step.lines.push_back(WithoutNumbers(call));
    }
    for (const std::string& text : Log::Instance().Texts()) step.lines.push_back("log " + text);
    for (const std::string& call : CallList::Instance().All()) {
        if (IsOperation(call)) m_operations.push_back(call.substr(0, call.find('(')));
    }
}

void Tour::NoteTheFault() {
    const unsigned uses = Uses(m_fault.function);
    if (m_struck >= m_steps.size() && m_fault.use != 0 && uses >= m_fault.use) {
        m_struck = m_steps.size() - 1;
        m_useInStep = m_fault.use - m_usesBefore;
    }
    m_usesBefore = uses;
}

// Objects of the same name are told apart by numbers that differ with every object more or less.
std::string Tour::WithoutNumbers(std::string text) const {
    for (auto number = text.find('#'); number != std::string::npos; number = text.find('#', number)) {
        auto end = number + 1;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) ++end;
        text.erase(number, end - number);
    }
    return text;
}

void Tour::Call(const std::string& name, const std::string& method, const Values& arguments) {
    Make(name, [&] { return m_object->Call(method, arguments); });
}

void Tour::Get(const std::string& property) {
    Make("read " + property, [&] { return m_object->Get(property); });
}

void Tour::Set(const std::string& property, const Value& value) {
    Make("set " + property, [&] { return m_object->Set(property, value); });
}

// The platform has nobody to tell when the object holds no player.
void Tour::Hear(const std::string& name, unsigned channelWithHold, const Notification& notification) {
    Make("hear " + name, [&] {
        if (m_platform.Listener() != nullptr && channelWithHold != 0) m_platform.TakeHold(channelWithHold);
        return Outcome{m_platform.Notify(notification), {}, {}};
    });
}

void Tour::Construct() {
    Make("construct", [this] {
        m_object.emplace(m_browser);
        if (m_object->Object() == nullptr) return Outcome{};
        for (const std::string& missing : MissingMembers()) CallList::Instance().Add("script.missing " + missing);
        for (const std::string& name : m_browser.Window().Names()) {
            if (name.starts_with("__OIPF_VBO_")) CallList::Instance().Add("script.window is marked");
        }
        return Outcome{true, {}, {}};
    });
}

Lines Tour::MissingMembers() {
    Lines missing;
    for (const char* name : kHandlers) {
        if (!m_browser.HasProperty(m_object->Object(), name)) missing.push_back("a member");
    }
    for (const char* name : kProperties) {
        if (!m_browser.HasProperty(m_object->Object(), name)) missing.push_back("a member");
    }
    for (const char* name : kMethods) {
        if (!m_browser.HasMethod(m_object->Object(), name)) missing.push_back("a member");
    }
    return missing;
}

std::string Tour::Describe(NPObject* event) {
    std::string properties;
    for (const char* name : kEventProperties) {
        if (!m_browser.HasProperty(event, name)) continue;
        properties +=
            (properties.empty() ? "" : ", ") + std::string(name) + ": " + m_browser.Get(event, name).value.Show();
    }
    std::string missing;
    for (const char* name : kPropertiesOfEvery)
        missing += m_browser.HasProperty(event, name) ? "" : " no " + std::string(name);
    for (const char* name : kMethodsOfEvery)
        missing += m_browser.HasMethod(event, name) ? "" : " no " + std::string(name);
    const bool hasType = m_browser.HasProperty(event, "type");
    return (hasType ? m_browser.Get(event, "type").value.Text() : "") + "{" + properties + "}" + missing;
}

void Tour::SetHandlersAndListeners() {
    const auto describe = [this](const Values& arguments) {
        CallList::Instance().Add("event " + Describe(arguments.at(0).Object()));
    };
    for (std::size_t i = 0; i < std::size(kHandlers); ++i) {
        const bool takesEvent = std::string(kHandlers[i]) == "onStreamEvent";
        m_handlers[i] = takesEvent ? &m_browser.MakeFunction(kHandlers[i], describe)
                                   : &m_browser.MakeFunction(kHandlers[i], [] { return Value("a text"); });
        Set(kHandlers[i], *m_handlers[i]);
    }
    for (std::size_t i = 0; i < std::size(kTypes); ++i) {
        m_listeners[i] = &m_browser.MakeFunction("listener", describe);
        Call("listen to " + std::string(kTypes[i]), "addEventListener", {kTypes[i], *m_listeners[i], false});
    }
    m_streamListener = &m_browser.MakeFunction("stream listener", describe);
}

void Tour::ReadWithoutPlayer() {
    for (const char* handler : kHandlers) Get(handler);
    Call("say what it is", "toString");
    Set("onFocus", 7);
    m_platform.answers.players = 0;
    Call("bind without a player", "bindToCurrentChannel");
    Call("step without a player", "nextChannel");
    m_platform.answers.players = 1;
}

void Tour::ReadProperties() {
    for (const char* property : kProperties) Get(property);
}

void Tour::BindAndStep() {
    Call("bind", "bindToCurrentChannel");
    Call("next", "nextChannel");
    Call("previous", "prevChannel");
    Hear("of the step's success", 7, [](auto& listener) { listener.TuneSuccess(7); });
}

void Tour::SetChannels() {
    FakeObject& cached = m_browser.MakeObject("channel").Set("mid", 9);
    FakeObject& triplet = m_browser.MakeObject("channel");
    triplet.Set("idType", 12).Set("onid", 1).Set("tsid", 2).Set("sid", 3);
    FakeObject& descriptor = m_browser.MakeObject("channel");
    descriptor.Set("dsd", "5a0B").Set("idType", 12).Set("sid", 3);
    Call("set a cached channel", "setChannel", {cached});
    Hear("of its success", 7, [](auto& listener) { listener.TuneSuccess(7); });
    Call("set a channel by triplet", "setChannel", {triplet});
    Hear("of its failure", 2, [](auto& listener) { listener.TuneFail(2); });
    Call("set a channel by descriptor", "setChannel", {descriptor});
    Call("set a number as channel", "setChannel", {5});
    Call("set no channel", "setChannel", {nullptr});
    Call("set a cached channel again", "setChannel", {cached});
}

void Tour::HearOfChannels() {
    Hear("of the television's change", 0, [](auto& listener) { listener.ChannelChanged(); });
    Hear("of a scrambled tune", 7, [](auto& listener) { listener.ScrambledTune(7); });
    Hear("of the scrambling's end", 0, [](auto& listener) { listener.Unscrambled(9); });
    Hear("of scrambling", 0, [](auto& listener) { listener.Scrambled(9); });
    Hear("of the scrambling's end again", 0, [](auto& listener) { listener.Unscrambled(9); });
    Hear("of a block", 7, [](auto& listener) { listener.ParentalRatingBlocked(7, false); });
    Hear("of a block while presenting", 0, [](auto& listener) { listener.ParentalRatingBlocked(7, true); });
    Hear("of the block's end", 0, [](auto& listener) { listener.ParentalRatingUnblocked(7); });
    Hear("of a lost signal", 0, [](auto& listener) { listener.NoSignal(); });
    Hear("of an absent service", 7, [](auto& listener) { listener.ServiceNotAvailable(7); });
    Hear("of new programmes", 0, [](auto& listener) { listener.ProgrammeChanged(); });
}

void Tour::MakeChannelObjects() {
    Call("make a channel by triplet", "createChannelObject", {12, 1, 2, 3});
    Call("make a channel by descriptor", "createChannelObject", {12, "Z", 6});
    Call("make an ATSC channel", "createChannelObject", {30, 1, 2, 3, 4});
    Call("make an IPTV channel", "createChannelObject", {41, 1, 2, 3, 4, "id"});
    Call("make a channel of a text", "createChannelObject", {"x", 1, 2, 3});
    Call("get the configuration", "getChannelConfig");
}

void Tour::ShowTheWindow() {
    char visual = 0;
    NPSetWindowCallbackStruct information{};
    information.visual = reinterpret_cast<Visual*>(&visual);
    Make("show the window", [&] {
        NPWindow window{};
        window.x = 10, window.y = 20, window.width = 640, window.height = 360;
        window.ws_info = &information;
        return Outcome{m_object->Functions().setwindow(m_object->Npp(), &window) == NPERR_NO_ERROR, {}, {}};
    });
    Make("paint", [&] {
        XEvent event{};
        event.type = GraphicsExpose;
        event.xgraphicsexpose.width = 640;
        event.xgraphicsexpose.height = 360;
        return Outcome{m_object->Functions().event(m_object->Npp(), &event) == 1, {}, {}};
    });
}

void Tour::ChangeTheWindow() {
    Call("present for the window", "bindToCurrentChannel");
    Set("width", 1280);
    Set("height", 720);
    Call("fill the screen", "setFullScreen", {true});
    Set("width", 640);
    Call("leave the full screen", "setFullScreen", {false});
    Call("turn the volume", "setVolume", {30});
    Call("get the volume", "getVolume");
    Call("turn the volume by text", "setVolume", {"loud"});
    Hear("of the panel's change", 0, [](auto& listener) { listener.UpdateLayout(); });
}

void Tour::ChooseComponents() {
    for (int type = 0; type < 3; ++type) {
        const std::string which = type == 0 ? "video" : type == 1 ? "audio" : "subtitles";
        FakeObject& component = m_browser.MakeObject("component").Set("type", type).Set("index", 0).Set("pid", 100);
        Call("list " + which, "getComponents", {type});
        Call("list active " + which, "getCurrentActiveComponents", {type});
        Call("select " + which, "selectComponent", {component});
        Call("unselect " + which, "unselectComponent", {component});
    }
}

void Tour::HearOfRatingsAndRights() {
    Hear("of a rating", 0, [](auto& listener) { listener.ParentalRatingChanged(9); });
    Hear("of a rating that is none", 0, [](auto& listener) { listener.ParentalRatingChanged(0); });
    Hear("of rights", 0, [](auto& listener) {
        dynamic_cast<ISASListener&>(listener).OnSASMessageReceived(new SASMessage{4, 9, 0, {{7, {1}}, {6, {'x'}}}});
    });
}

void Tour::HearStreamEvents() {
    const auto deliver = [this](const std::string& name, unsigned long job, const std::string& data) {
        Make("hear " + name, [&] { return Outcome{m_platform.DeliverStreamEvent(job, "an event", data), {}, {}}; });
    };
    Call("listen to the carousel", "addStreamEventListener", {"dvb:/events", "an event", *m_streamListener});
    Call("listen to the page's directory", "addStreamEventListener", {"events", "an event", *m_streamListener});
    deliver("a stream event", 1, "Z\x01");
    deliver("a stream event without data", 2, "");
    Call("listen no more", "removeStreamEventListener", {"events", "an event", *m_streamListener});
    deliver("a stream event too late", 2, "");
    Call("listen with a number", "addStreamEventListener", {"events", "an event", 7});
}

void Tour::SuspendAndResume() {
    Hear("of suspension", 0, [](auto& listener) { listener.Suspend(); });
    Hear("of resumption", 0, [](auto& listener) { listener.Resume(); });
}

void Tour::StopAndRelease() {
    Call("stop", "stop");
    Call("release", "release");
    Call("bind once more", "bindToCurrentChannel");
    Hear("of a second suspension", 0, [](auto& listener) { listener.Suspend(); });
}

// What the page cannot take back, it leaves with the object.
void Tour::ClearHandlersAndListeners() {
    for (std::size_t i = 0; i < std::size(kHandlers); ++i) Set(kHandlers[i], nullptr);
    for (std::size_t i = 0; i < std::size(kTypes); ++i) {
        Call("ignore " + std::string(kTypes[i]), "removeEventListener", {kTypes[i], *m_listeners[i], false});
        if (m_steps.back().lines.front() != "= undefined") m_browser.MayKeep(*m_listeners[i]);
    }
}

// One notification is on its way, with a hold.
void Tour::Destroy() {
    Make("destroy", [this] {
        if (m_object->Object() == nullptr) return Outcome{};
        if (m_platform.Listener() != nullptr) m_platform.TakeHold(7);
        m_platform.Notify([](auto& listener) { listener.TuneSuccess(7); });
        m_object->Invalidate();
        return Outcome{m_object->Destroy() == NPERR_NO_ERROR, {}, {}};
    });
    m_object.reset();
}

void Tour::ExpectNothingHeld() {
    m_browser.ExpectBalanced();
    EXPECT_EQ(m_browser.GetLedger().BlocksInUse(), 0u);
    EXPECT_EQ(m_platform.HandedOut(), 0u);
    EXPECT_EQ(m_platform.Registrations(), 0u);
    const bool serviceKeptOne = m_fault.function == "dsmcc.UnsubscribeStreamEvent";
    EXPECT_LE(m_platform.Subscriptions().size(), serviceKeptOne ? 1u : 0u);
    // The page's channels keep their holds.
    for (const unsigned id : {1u, 2u, 3u, 7u, 9u}) {
        int holds = 0;
        for (const FakeObject* channel : m_browser.Created("Channel")) {
            holds += channel->ConstructorText().ends_with("\", " + std::to_string(id)) ? 1 : 0;
        }
        EXPECT_EQ(m_platform.Holds(id), holds) << "of channel " << id;
    }
}

}  // namespace endurance
