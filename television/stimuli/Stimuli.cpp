#include "television/stimuli/Stimuli.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "television/TelevisionSet.h"
#include "television/demonstration/MessageEvents.h"
#include "television/stimuli/BroadcastStimuli.h"

namespace television {
namespace {

using Failure = std::optional<std::string>;

constexpr int kVolumeStep = 5;

// A whole number, hexadecimal behind "0x"; none when the text is anything else.
std::optional<unsigned int> Number(const std::string& text) {
    const bool hexadecimal = text.starts_with("0x");
    unsigned int number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + (hexadecimal ? 2 : 0), end, number, hexadecimal ? 16 : 10);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

// The text up to the first blank, which is taken from it.
std::string TakeWord(std::string& text) {
    const auto blank = std::min(text.find(' '), text.size());
    const std::string word = text.substr(0, blank);
    text.erase(0, std::min(text.find_first_not_of(' ', blank), text.size()));
    return word;
}

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

Failure Lock(TelevisionSet& set, const std::string& argument) {
    const auto age = Number(argument);
    if (argument != "off" && (!age || *age > 18)) return "The lock is \"off\" or an age up to 18.";
    set.SetLock(age ? std::optional(static_cast<int>(*age)) : std::nullopt);
    return std::nullopt;
}

Failure Pin(TelevisionSet& set, const std::string& argument) { return set.EnterPin(argument); }

Failure Scrambling(TelevisionSet& set, const std::string& argument) {
    if (argument != "on" && argument != "off") return "Scrambling is \"on\" or \"off\".";
    return set.SetScrambling(argument == "on");
}

Failure ReportRights(TelevisionSet& set, const std::string& argument) {
    std::string rest = argument;
    const std::string status = TakeWord(rest), system = TakeWord(rest);
    if (status != "none" && status != "valid") return "Rights are \"none\" or \"valid\".";
    const auto id = Number(system);
    if (!system.empty() && (!id || *id > 0xffff)) return "A CA system is a number up to 65535 (0xffff).";
    return set.TellRights({status == "valid", id ? std::optional(static_cast<std::uint16_t>(*id)) : std::nullopt, rest});
}

Failure Volume(TelevisionSet& set, const std::string& argument) {
    Presentation& presentation = set.ThePresentation();
    const auto number = Number(argument);
    if (number && *number <= 100) presentation.SetVolume(static_cast<int>(*number));
    else if (argument == "up") presentation.SetVolume(presentation.Volume() + kVolumeStep);
    else if (argument == "down") presentation.SetVolume(presentation.Volume() - kVolumeStep);
    else return "The volume is a number from 0 to 100, \"up\" or \"down\".";
    return std::nullopt;
}

Failure Mute(TelevisionSet& set, const std::string& argument) {
    if (argument != "on" && argument != "off") return "Mute is \"on\" or \"off\".";
    set.ThePresentation().Mute(argument == "on");
    return std::nullopt;
}

constexpr std::array kStimuli{
    Stimulus{"aerial", "out|in", "pull the aerial out or plug it in again", Aerial},
    Stimulus{"volume", "0-100|up|down", "make the sound louder or softer, for pages too", Volume},
    Stimulus{"mute", "on|off", "silence the sound, or let it be heard again", Mute},
    Stimulus{"mediaplayer", "start|stop", "give the screen to a media player, or back to the broadcast", MediaPlayer},
    Stimulus{"recorder", "start|stop", "begin or end a recording; meanwhile the channel cannot be changed", Recorder},
    Stimulus{"aspect", "4:3|16:9|auto", "show pictures with another aspect ratio, or with their own", Aspect},
    Stimulus{"stream-event", "TEXT", "let the demonstration send its stream event \"message\" with a text", StreamEvent},
    Stimulus{"lock", "AGE|off", "block programmes rated above this age, or none", Lock},
    Stimulus{"pin", "PIN", "open the programme that the lock blocks; 0000 unless set with --pin", Pin},
    Stimulus{"scrambling", "on|off", "scramble the demonstration's service Atlas Key, or clear it", Scrambling},
    Stimulus{"rights", "none|valid [CASYSTEM [TEXT]]", "the CA module reports the rights to the channel", ReportRights},
    Stimulus{"service-appears", "NUMBER",
             "let a service of the demonstration come on the air: 5 (Atlas Pop-up), 90 (Atlas Data)", ServiceAppears},
    Stimulus{"service-disappears", "NUMBER", "take a service of the demonstration off the air", ServiceDisappears},
    Stimulus{"service-renamed", "NUMBER NAME", "give a service of the demonstration another name", ServiceRenamed},
    Stimulus{"service-renumbered", "NUMBER NUMBER", "give a service of the demonstration another channel number",
             ServiceRenumbered},
    Stimulus{"programme", "next", "let the demonstration's next programmes begin", MoveProgramme},
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
