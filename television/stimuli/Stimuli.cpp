#include "television/stimuli/Stimuli.h"

#include <algorithm>
#include <array>

#include "television/TelevisionSet.h"
#include "television/demonstration/MessageEvents.h"

namespace television {
namespace {

using Failure = std::optional<std::string>;

Failure Aerial(TelevisionSet& set, const std::string& argument) {
    if (argument != "out" && argument != "in") return "The aerial is \"out\" or \"in\".";
    set.ConnectAerial(argument == "in");
    return std::nullopt;
}

// A choice between two words, of which a failure says that it is so already.
Failure Already(bool done, const std::string& sentence) { return done ? std::nullopt : Failure(sentence); }

Failure MediaPlayer(TelevisionSet& set, const std::string& argument) {
    Resources& resources = set.TheResources();
    if (argument == "start") return Already(resources.StartMediaPlayer(), "The media player plays already.");
    if (argument == "stop") return Already(resources.StopMediaPlayer(), "The media player does not play.");
    return "The media player takes \"start\" or \"stop\".";
}

Failure Recorder(TelevisionSet& set, const std::string& argument) {
    Resources& resources = set.TheResources();
    if (argument == "start") return Already(resources.SetRecording(true), "The recorder records already.");
    if (argument == "stop") return Already(resources.SetRecording(false), "The recorder does not record.");
    return "The recorder takes \"start\" or \"stop\".";
}

Failure Aspect(TelevisionSet& set, const std::string& argument) {
    if (argument != "4:3" && argument != "16:9" && argument != "auto")
        return "The aspect ratio is \"4:3\", \"16:9\", or \"auto\" for the picture's own.";
    const double ratio = argument == "4:3" ? 4.0 / 3.0 : 16.0 / 9.0;
    set.TheScreen().ForceAspectRatio(argument == "auto" ? std::nullopt : std::optional(ratio));
    return std::nullopt;
}

Failure StreamEvent(TelevisionSet&, const std::string& argument) {
    return demonstration::MessageEvents::Instance().Send(argument);
}

constexpr std::array kStimuli{
    Stimulus{"aerial", "out|in", "pull the aerial out or plug it in again", Aerial},
    Stimulus{"mediaplayer", "start|stop", "give the screen to a media player, or back to the broadcast", MediaPlayer},
    Stimulus{"recorder", "start|stop", "begin or end a recording that no page may disturb", Recorder},
    Stimulus{"aspect", "4:3|16:9|auto", "show pictures with another aspect ratio, or with their own", Aspect},
    Stimulus{"stream-event", "TEXT", "let the demonstration send its stream event \"message\" with a text", StreamEvent},
};

std::string Trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r\n";
    const auto from = text.find_first_not_of(kBlanks);
    return from == std::string::npos ? "" : text.substr(from, text.find_last_not_of(kBlanks) + 1 - from);
}

std::string Usage(const Stimulus& stimulus) {
    return stimulus.name + (stimulus.argument ? std::string(" ") + stimulus.argument : "");
}

}  // namespace

std::span<const Stimulus> AllStimuli() { return kStimuli; }

Failure RunStimulus(TelevisionSet& set, const std::string& line) {
    const std::string text = Trimmed(line), name = text.substr(0, text.find_first_of(" \t"));
    const auto found = std::ranges::find(kStimuli, name, &Stimulus::name);
    if (found == kStimuli.end()) return "Nothing called \"" + name + "\" can happen to the television.";
    const std::string argument = Trimmed(text.substr(name.size()));
    if (argument.empty() != (found->argument == nullptr)) return "Write it as: " + Usage(*found);
    return found->run(set, argument);
}

}  // namespace television
