// Arguments read, and handed to what the demonstration has on the air.
#include "television/stimuli/BroadcastStimuli.h"

#include <charconv>
#include <functional>

#include "television/TelevisionSet.h"

namespace television {
namespace {

using demonstration::Broadcast;
using Failure = std::optional<std::string>;

Failure OnDemonstration(TelevisionSet& set, const std::function<Failure(Broadcast&)>& act) {
    if (Broadcast* broadcast = set.Demonstration()) return act(*broadcast);
    return "Only the demonstration's services and programmes can be changed: start without a stream.";
}

// 0 where the text is no number.
int NumberIn(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && behind == end ? number : 0;
}

struct TwoWords {
    std::string first, rest;
};

TwoWords Split(const std::string& text) {
    const auto blank = text.find_first_of(" \t");
    const auto rest = text.find_first_not_of(" \t", blank);
    return {text.substr(0, blank), rest == std::string::npos ? "" : text.substr(rest)};
}

}  // namespace

Failure ServiceAppears(TelevisionSet& set, const std::string& number) {
    return OnDemonstration(set, [&](Broadcast& broadcast) { return broadcast.Appear(NumberIn(number)); });
}

Failure ServiceDisappears(TelevisionSet& set, const std::string& number) {
    return OnDemonstration(set, [&](Broadcast& broadcast) { return broadcast.Disappear(NumberIn(number)); });
}

Failure ServiceRenamed(TelevisionSet& set, const std::string& numberAndName) {
    const auto [number, name] = Split(numberAndName);
    if (name.empty()) return "The name is missing: write the service's number and its new name.";
    return OnDemonstration(set, [&number = number, &name = name](Broadcast& broadcast) {
        return broadcast.Rename(NumberIn(number), name);
    });
}

Failure ServiceRenumbered(TelevisionSet& set, const std::string& numbers) {
    const auto [number, to] = Split(numbers);
    return OnDemonstration(set, [&number = number, &to = to](Broadcast& broadcast) {
        return broadcast.Renumber(NumberIn(number), NumberIn(to));
    });
}

Failure MoveProgramme(TelevisionSet& set, const std::string& where) {
    if (where != "next") return "The programmes move on to the \"next\" one only.";
    return OnDemonstration(set, [](Broadcast& broadcast) {
        broadcast.SkipProgramme();
        return Failure();
    });
}

}  // namespace television
