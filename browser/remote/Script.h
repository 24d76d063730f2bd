// A script for the remote: lines for it, each with the time at which it is sent.
//
//     # The aerial is out for three seconds.
//     2      aerial out
//     +3     aerial in
//     10.5   channel next
//
// A time is in seconds since the script's beginning, or after "+" since the line above.
#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace browser {

struct ScriptStep {
    int number = 0;         // of its line in the file
    int milliseconds = 0;   // since the beginning
    QString line;
    bool operator==(const ScriptStep&) const = default;
};

struct ScriptFault {
    int number = 0;
    QString sentence;
    bool operator==(const ScriptFault&) const = default;
};

// Says what is wrong with a line for the remote, if anything is.
using LineCheck = std::function<std::optional<QString>(const QString& line)>;

// The steps in order, or the first fault. A script without a step is at fault too.
std::variant<std::vector<ScriptStep>, ScriptFault> ReadScript(const QString& text, const LineCheck& check);

}  // namespace browser
