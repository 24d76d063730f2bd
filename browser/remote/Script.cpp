#include "browser/remote/Script.h"

#include <QStringList>
#include <cmath>

namespace browser {

namespace {

constexpr double kLongestTime = 7 * 24 * 3600;  // seconds

QString Unfit(const QString& time) {
    return QStringLiteral("\"%1\" is no time: write seconds since the beginning, such as 2 or 2.5, or after \"+\" since "
                          "the line above.").arg(time);
}

// Digits and at most one point: no sign, no exponent.
std::optional<int> Milliseconds(const QString& seconds) {
    for (const QChar character : seconds) {
        if ((character < QLatin1Char('0') || character > QLatin1Char('9')) && character != QLatin1Char('.')) {
            return std::nullopt;
        }
    }
    bool isNumber = false;
    const double value = seconds.toDouble(&isNumber);
    return isNumber && value <= kLongestTime ? std::optional(int(std::lround(value * 1000))) : std::nullopt;
}

std::variant<ScriptStep, QString> ReadStep(const QString& text, int number, int before, const LineCheck& check) {
    const QString time = text.section(QLatin1Char(' '), 0, 0);
    const QString line = text.mid(time.size()).trimmed();
    const bool isRelative = time.startsWith(QLatin1Char('+'));
    const auto milliseconds = Milliseconds(isRelative ? time.mid(1) : time);
    if (!milliseconds) {
        return Unfit(time);
    }
    const int at = isRelative ? before + *milliseconds : *milliseconds;
    if (at < before || at > kLongestTime * 1000) {
        return QStringLiteral("The time %1 lies before that of the line above, or too late: sort the lines by their "
                              "times.").arg(time);
    }
    if (line.isEmpty()) {
        return QStringLiteral("There is nothing to do at %1: write a line for the remote behind the time.").arg(time);
    }
    if (const auto fault = check(line)) {
        return *fault;
    }
    return ScriptStep{number, at, line};
}

}  // namespace

std::variant<std::vector<ScriptStep>, ScriptFault> ReadScript(const QString& text, const LineCheck& check) {
    std::vector<ScriptStep> steps;
    int number = 0;
    for (QString line : text.split(QLatin1Char('\n'))) {
        ++number;
        line = line.replace(QLatin1Char('\t'), QLatin1Char(' ')).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        auto step = ReadStep(line, number, steps.empty() ? 0 : steps.back().milliseconds, check);
        if (const auto* fault = std::get_if<QString>(&step)) {
            return ScriptFault{number, *fault};
        }
        steps.push_back(std::get<ScriptStep>(step));
    }
    if (steps.empty()) {
        return ScriptFault{1, QStringLiteral("The script has no line to play.")};
    }
    return steps;
}

}  // namespace browser
