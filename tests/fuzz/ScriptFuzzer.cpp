// A script for the remote, and what a shell is offered behind its words.
#include "browser/remote/Script.h"

#include "browser/remote/Completion.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

void DemandInOrder(const std::vector<browser::ScriptStep>& steps) {
    Demand(!steps.empty(), "a script without a fault has a step");
    int number = 0, milliseconds = 0;
    for (const browser::ScriptStep& step : steps) {
        Demand(step.number > number && step.milliseconds >= milliseconds, "steps come in their order");
        Demand(!step.line.isEmpty(), "a step has something to do");
        number = step.number;
        milliseconds = step.milliseconds;
    }
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(input.data()), static_cast<int>(input.size()));
    const auto check = [](const QString& line) { return line.startsWith('x') ? std::optional(line) : std::nullopt; };
    const auto script = browser::ReadScript(text, check);
    if (const auto* steps = std::get_if<0>(&script)) DemandInOrder(*steps);
    if (const auto* fault = std::get_if<1>(&script))
        Demand(fault->number > 0 && !fault->sentence.isEmpty(), "a fault has its line and its sentence");
    const browser::Vocabulary vocabulary{
        {{"key", "KEY", ""}, {"aerial", "in|out", ""}, {"channel", "NUMBER|SERVICE|next", ""}, {"quit", "", ""}},
        {"VK_RED"},
        [] { return QStringList{"Atlas One"}; }};
    browser::Complete(text.split(' '), vocabulary);
}

}  // namespace television::fuzz
