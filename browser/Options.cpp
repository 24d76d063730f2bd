#include "browser/Options.h"

#include <QDateTime>
#include <QMap>
#include <algorithm>
#include <functional>
#include <vector>

namespace browser {

namespace {

// Returns false when the value is none for this option.
using Setter = std::function<bool(Options&, const QString& value)>;

struct OptionRow {
    const char* name;
    const char* value;  // null: the option takes none
    const char* help;
    Setter set;
};

Setter Text(QString Options::* member) {
    return [member](Options& options, const QString& value) {
        options.*member = value;
        return !value.isEmpty();
    };
}

Setter Switch(bool Options::* member, bool on) {
    return [member, on](Options& options, const QString&) {
        options.*member = on;
        return true;
    };
}

Setter Language(QString ViewerSettings::* member) {
    return [member](Options& options, const QString& value) {
        options.settings.*member = value;
        return value.size() == 3;
    };
}

bool SetPin(Options& options, const QString& value) {
    options.pin = value;
    return value.size() == 4 &&
           std::all_of(value.begin(), value.end(), [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
}

// In UTC, and what the date of a transport stream can tell: its day is a number of 16 bits.
bool SetDemonstrationTime(Options& options, const QString& value) {
    constexpr int kLength = 20;
    const QDateTime time = QDateTime::fromString(value, Qt::ISODate);
    options.demonstrationTime = time.toSecsSinceEpoch();
    return value.size() == kLength && time.timeSpec() == Qt::UTC && time.isValid() && time.date() >= QDate(1970, 1, 1) && time.date() <= QDate(2038, 4, 21);
}

bool SetSeconds(Options& options, const QString& value) {
    bool isNumber = false;
    options.seconds = value.toInt(&isNumber);
    return isNumber && *options.seconds > 0;
}

// By name or, for the plug-in's own levels, by number.
bool SetLogLevel(Options& options, const QString& value) {
    static const QMap<QString, int> s_levels{
        {QStringLiteral("none"), -1},   {QStringLiteral("errors"), 0},  {QStringLiteral("0"), 0},
        {QStringLiteral("warnings"), 2}, {QStringLiteral("2"), 2},      {QStringLiteral("traces"), 3},
        {QStringLiteral("3"), 3},       {QStringLiteral("details"), 4}, {QStringLiteral("4"), 4}};
    const auto level = s_levels.find(value);
    if (level == s_levels.end()) {
        return false;
    }
    options.logLevel = *level;
    return true;
}

Setter AddTo(QStringList Options::* member) {
    return [member](Options& options, const QString& value) {
        options.*member += value;
        return !value.isEmpty();
    };
}

const std::vector<OptionRow>& Rows() {
    static const std::vector<OptionRow> s_rows{
        {"--stream", "FILE|URL", "the transport stream to receive: a file, udp://, http://, https:// or dvb://\n"
                                 "(default: the demonstration multiplex); repeated, each is one more multiplex of\n"
                                 "the same network", AddTo(&Options::streams)},
        {"--no-sound", nullptr, "play no sound", Switch(&Options::sound, false)},
        {"--sound-file", "FILE", "write the sound to a file instead (16-bit stereo samples, 48 kHz)",
         Text(&Options::soundFile)},
        {"--independent", nullptr, "the page is not broadcast related: it may not control the broadcast",
         Switch(&Options::broadcastRelated, false)},
        {"--audio-language", "LNG", "the viewer's preferred language of sound, three letters (default: eng)",
         Language(&ViewerSettings::audioLanguage)},
        {"--subtitle-language", "LNG", "the viewer's preferred language of subtitles (default: eng)",
         Language(&ViewerSettings::subtitleLanguage)},
        {"--country", "CCC", "the television's country, three letters (default: GBR)",
         Language(&ViewerSettings::countryId)},
        {"--pin", "PIN", "the PIN that opens the parental lock, four digits (default: 0000)", SetPin},
        {"--full-screen", nullptr, "fill the screen", Switch(&Options::fullScreen, true)},
        {"--tour", nullptr, "drive the page's video/broadcast object through a fixed tour, check the order of its\n"
                            "events and that a picture is seen through it; the exit status is the verdict",
         Switch(&Options::tour, true)},
        {"--test", nullptr, "run a page test: until the page calls tvTest.done(ok, text), at most 30 seconds or\n"
                            "those of --seconds; the exit status is the page's verdict", Switch(&Options::test, true)},
        {"--evaluate", "SCRIPT", "run a script in the page when it has loaded and print its value (may be repeated)",
         AddTo(&Options::evaluate)},
        {"--seconds", "N", "end after N seconds", SetSeconds},
        {"--screenshot", "FILE", "at the end write the screen, picture and page, into an image file",
         Text(&Options::screenshot)},
        {"--events", "FILE|-", "write script events, console, log, keys and failed requests as JSON lines",
         Text(&Options::events)},
        {"--log", "LEVEL", "the plug-in's log: none, errors, warnings, traces or details (default: errors)",
         SetLogLevel},
        {"--remote", "SOCKET", "where the remote control is listened to, \"none\" for nowhere\n"
                               "(default: tv-browser.remote in $XDG_RUNTIME_DIR or /tmp)", Text(&Options::remote)},
        {"--plugin", "FILE", "the video/broadcast plug-in (default: the one built beside the TV browser)",
         Text(&Options::plugin)},
        {"--demonstration", "FILE", "the demonstration's audio and video (default: the one built beside it)",
         Text(&Options::demonstration)},
        {"--no-timetable", nullptr, "the demonstration's services come, go and become clear by the remote only, and\n"
                                    "not by themselves after the first minute (so it is with --test and --tour)",
         Switch(&Options::timetable, false)},
        {"--demonstration-time", "YYYY-MM-DDThh:mm:ssZ", "the demonstration's clock at the start, until 2038-04-21 (default: "
                                                         "the machine's;\nwith --test and --tour 2030-01-01T20:00:00Z)",
         SetDemonstrationTime},
    };
    return s_rows;
}

const OptionRow* FindRow(const QString& name) {
    const auto& rows = Rows();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const OptionRow& candidate) { return name == QLatin1String(candidate.name); });
    return row == rows.end() ? nullptr : &*row;
}

QString HelpRow(const QString& left, const QString& help) {
    constexpr int kColumn = 28;
    const QString indent(kColumn, QLatin1Char(' '));
    const QString option = QStringLiteral("  ") + left;
    return (option.size() < kColumn ? option.leftJustified(kColumn) : option + QLatin1Char('\n') + indent) +
           QString(help).replace(QLatin1Char('\n'), QLatin1Char('\n') + indent) + QLatin1Char('\n');
}

// "--name value" and "--name=value"; a missing value is a null text.
QString TakeValue(const QString& inlineValue, QStringList& rest) {
    if (!inlineValue.isNull()) {
        return inlineValue;
    }
    return rest.isEmpty() ? QString() : rest.takeFirst();
}

std::optional<QString> ApplyOption(Options& options, const QString& argument, QStringList& rest) {
    const int equals = argument.indexOf(QLatin1Char('='));
    const QString name = argument.left(equals);
    const OptionRow* row = FindRow(name);
    if (row == nullptr) {
        return QStringLiteral("There is no option %1; --help lists them.").arg(name);
    }
    if (row->value == nullptr) {
        row->set(options, QString());
        return std::nullopt;
    }
    const QString value = TakeValue(equals < 0 ? QString() : argument.mid(equals + 1), rest);
    if (value.isNull() || !row->set(options, value)) {
        return QStringLiteral("%1 needs a value of the form %2; --help says more.").arg(name,
                                                                                  QLatin1String(row->value));
    }
    return std::nullopt;
}

std::optional<QString> ApplyUrl(Options& options, const QString& argument) {
    if (!options.url.isEmpty()) {
        return QStringLiteral("Two pages are given, %1 and %2; the TV browser opens one.").arg(options.url, argument);
    }
    options.url = argument;
    return std::nullopt;
}

// At this time the first of each service's programmes begins.
void ExpectTheSameEachTime(Options& options) {
    options.timetable = false;
    if (!options.demonstrationTime) {
        SetDemonstrationTime(options, QStringLiteral("2030-01-01T20:00:00Z"));
    }
}

}  // namespace

std::variant<Options, HelpWanted, UsageError> ReadOptions(const QStringList& arguments) {
    Options options;
    QStringList rest = arguments;
    while (!rest.isEmpty()) {
        const QString argument = rest.takeFirst();
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            return HelpWanted{};
        }
        const bool isOption = argument.startsWith(QLatin1Char('-'));
        if (const auto error = isOption ? ApplyOption(options, argument, rest) : ApplyUrl(options, argument)) {
            return UsageError{*error};
        }
    }
    if (options.tour || options.test) {
        ExpectTheSameEachTime(options);
    }
    if (options.tour && options.test) {
        return UsageError{QStringLiteral("--tour and --test exclude each other: both end with a verdict.")};
    }
    return options;
}

QString HelpText() {
    QString text = QStringLiteral(
        "tv-browser [options] [URL]\n\n"
        "Shows a page of interactive television over the picture of a software television. The page gets its\n"
        "video/broadcast objects from the NPAPI plug-in. Without a URL the demonstration page is opened.\n\nOptions:\n");
    for (const OptionRow& row : Rows()) {
        const QString name = QLatin1String(row.name);
        text += HelpRow(row.value != nullptr ? name + QLatin1Char(' ') + QLatin1String(row.value) : name,
                        QString::fromLatin1(row.help));
    }
    text += HelpRow(QStringLiteral("--help"), QStringLiteral("print this text"));
    text += QStringLiteral(
        "\nIn the window F1 shows the keys. The remote control is driven from outside with tv-remote.\n"
        "The exit status is 0 when all went well, 1 when something failed (one sentence on standard error says\n"
        "what), 2 when the command line is wrong.\n");
    return text;
}

}  // namespace browser
