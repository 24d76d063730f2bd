// The command line of the TV browser.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <variant>

#include "browser/page/BridgeHost.h"

namespace browser {

struct Options {
    QString url;             // empty: the demonstration page
    QStringList streams;     // the multiplexes of a network; empty: the demonstration multiplex
    QString demonstration;   // the file with the demonstration's audio and video; empty: where the build puts it
    QString plugin;          // empty: where the build puts it
    QString remote;          // the remote's socket; empty: the usual place, "none": no remote
    QString screenshot;
    QString events;
    QStringList evaluate;    // scripts to run in the page when it has loaded
    std::optional<int> seconds;
    int logLevel = 0;
    bool timetable = true;   // of the demonstration; none where a test or the tour must find the same each time
    std::optional<std::int64_t> demonstrationTime;  // its clock at the start, seconds since 1970; none: the machine's
    bool sound = true;
    QString soundFile;
    bool broadcastRelated = true;
    bool tour = false;
    bool test = false;
    bool fullScreen = false;
    QString pin = QStringLiteral("0000");  // that opens the parental lock
    ViewerSettings settings;
};

struct HelpWanted {};
struct UsageError {
    QString sentence;
};

// `arguments` without the program's name.
std::variant<Options, HelpWanted, UsageError> ReadOptions(const QStringList& arguments);

QString HelpText();

}  // namespace browser
