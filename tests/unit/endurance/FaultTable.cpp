#include "tests/unit/endurance/FaultTable.h"

#include <algorithm>

#include "tests/unit/endurance/FaultRows.h"

namespace endurance {
namespace {

// The lines of `some` that `others` has not, as often as they are more.
Lines Without(const Lines& some, const Lines& others) {
    Lines left = some;
    for (const std::string& line : others) {
        const auto found = std::ranges::find(left, line);
        if (found != left.end()) left.erase(found);
    }
    return left;
}

struct Difference {
    Lines gone;
    Lines come;
};

std::string Text(const Difference& difference) {
    std::string text;
    for (const std::string& line : difference.gone) text += "\n    - " + line;
    for (const std::string& line : difference.come) text += "\n    + " + line;
    return text.empty() ? "nothing" : text;
}

// A listener tells of its call and of the Event, a handler property of its call.
bool IsOneCall(const Lines& lines) {
    const auto calls =
        std::ranges::count_if(lines, [](const std::string& line) { return line.starts_with("script."); });
    const auto events =
        std::ranges::count_if(lines, [](const std::string& line) { return line.starts_with("event "); });
    return calls == 1 && events <= 1 && static_cast<std::ptrdiff_t>(lines.size()) == calls + events;
}

// An Event that cannot be made reaches no listener. Stream events go by a way of their own.
bool IsEventMissing(const Difference& difference) {
    const auto& gone = difference.gone;
    const bool isStreamEvent = gone.size() == 2 && gone[1].starts_with("event StreamEvent");
    Lines logged = {"log CreateEventObject failed"};
    if (isStreamEvent) logged.push_back("log Failed to create DOM stream event object");
    return IsOneCall(gone) && difference.come == logged;
}

bool IsMissingCall(const Difference& difference) {
    const auto& gone = difference.gone;
    return gone.size() == 1 && gone[0].starts_with("script.Array().push(") && difference.come.empty();
}

bool IsOneOtherLine(const Difference& difference) { return difference.gone.size() == 1 && difference.come.size() == 1; }

// Where no row says otherwise.
bool IsUsual(const std::string& function, const Difference& difference, const Step& struck) {
    const auto& [gone, come] = difference;
    if (function == "createobject") return IsEventMissing(difference);
    if (function == "invokeDefault") return IsOneCall(gone) && come.empty();
    if (function == "invoke") return IsMissingCall(difference);
    // A text without memory is undefined; a name without an identifier is not there, nor is what it would call.
    if (function == "getstringidentifier" && IsMissingCall(difference)) return true;
    if (function == "memalloc" || function == "getstringidentifier") return IsOneOtherLine(difference);
    // What was asked for asynchronously does not happen: of a notification nothing is told.
    if (function == "pluginthreadasynccall")
        return come.empty() && (!struck.name.starts_with("hear ") || struck.lines.size() == 1);
    if (function == "setexception") return IsOneOtherLine(difference) && gone[0].starts_with("throws ");
    return gone.empty() && come.empty();
}

const FaultRow* RowOf(const std::string& function, unsigned use, const std::string& step) {
    const auto fits = [&](const FaultRow& row) {
        return row.function == function && (row.use == 0 || row.use == use) &&
               std::ranges::find(row.steps, step) != row.steps.end();
    };
    const auto row = std::ranges::find_if(FaultRows(), fits);
    return row != FaultRows().end() ? &*row : nullptr;
}

// A page without a window evaluates nothing; a property without an identifier cannot be read.
FaultRow RowFor(const Fault& fault, const std::string& step, bool& found) {
    const FaultRow* row = RowOf(fault.function, fault.use, step);
    if (row == nullptr && fault.function == "getstringidentifier") row = RowOf("getproperty", fault.use, step);
    if (row == nullptr && fault.function == "getvalue") row = RowOf("evaluate", fault.use, step);
    found = row != nullptr;
    FaultRow result = found ? *row : FaultRow{};
    if (fault.function != "getvalue") return result;
    for (std::string& line : result.come)
        if (line == "log Failed to get object." || line == "log failed to get document location.")
            line = "log failed to get the window object";
    return result;
}

}  // namespace

std::string WrongIn(const Fault& fault, const Step& sound, const Step& struck) {
    const Difference difference{Without(sound.lines, struck.lines), Without(struck.lines, sound.lines)};
    bool found = false;
    const FaultRow row = RowFor(fault, sound.name, found);
    if (!found) return IsUsual(fault.function, difference, struck) ? "" : "The difference is" + Text(difference);
    if (row.IsWhole())
        return row.come == struck.lines ? "" : "It is" + Text({{}, struck.lines}) + "\nand not" + Text({{}, row.come});
    if (row.gone == difference.gone && row.come == difference.come) return "";
    return "The difference is" + Text(difference) + "\nand not" + Text({row.gone, row.come});
}

}  // namespace endurance
