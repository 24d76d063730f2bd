#include "television/stimuli/Stimuli.h"

#include <algorithm>
#include <array>

#include "television/TelevisionSet.h"

namespace television {
namespace {

using Failure = std::optional<std::string>;

Failure Aerial(TelevisionSet& set, const std::string& argument) {
    if (argument != "out" && argument != "in") return "The aerial is \"out\" or \"in\".";
    set.ConnectAerial(argument == "in");
    return std::nullopt;
}

constexpr std::array kStimuli{
    Stimulus{"aerial", "out|in", "pull the aerial out or plug it in again", Aerial},
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
