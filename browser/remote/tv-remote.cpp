// tv-remote: sends lines to the TV browser's remote control and prints the answers.
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

#include "browser/keys/KeyTable.h"
#include "browser/remote/Commands.h"
#include "browser/remote/Play.h"
#include "browser/remote/RemoteClient.h"
#include "browser/remote/RemotePath.h"

namespace {

using namespace browser;

constexpr int kFailed = 1, kWrongUsage = 2;

struct Call {
    QString socket = UsualRemotePath();
    bool json = false;
    QStringList words;  // behind the options
};

void Print(const QString& text) {
    std::puts(qPrintable(text));
}

int Complain(const QString& sentence, int status) {
    std::fprintf(stderr, "tv-remote: %s\n", qPrintable(sentence));
    return status;
}

// The same table that a running TV browser answers from.
std::vector<CommandText> AllCommands() {
    return CommandTexts(television::Television::Stimuli());
}

QString HelpRow(const QString& left, const QString& sentence) {
    constexpr int kColumn = 44;
    return (QStringLiteral("  ") + left).leftJustified(kColumn - 1) + QLatin1Char(' ') + sentence;
}

int PrintHelp() {
    Print(QStringLiteral("tv-remote [--remote SOCKET] [--json] COMMAND...\n"
                         "tv-remote [--remote SOCKET] play FILE\n\n"
                         "Sends a command to the TV browser and prints its answer: \"ok\" and what was asked for, or\n"
                         "\"error\" and a sentence. With --json the answer is a JSON object. \"play\" sends the lines of a\n"
                         "script, each behind its time: in seconds since the beginning, or after \"+\" since the line above.\n"
                         "The exit status is 0 when all was done, 1 when something was not, 2 when it is written wrongly.\n\n"
                         "Commands:"));
    for (const CommandText& command : AllCommands()) {
        Print(HelpRow(command.name + QLatin1Char(' ') + command.argument, command.sentence));
    }
    return 0;
}

QStringList KeyNamesList() {
    QStringList names;
    for (const RemoteKey& key : RemoteKeys()) {
        names += QString::fromLatin1(key.name);
    }
    return names;
}

// Of the TV browser that runs, if one does.
QStringList ServiceNames(const QString& socket) {
    RemoteClient remote;
    QStringList names;
    if (remote.Connect(socket)) {
        return names;
    }
    const QString answer = remote.Ask(QStringLiteral("services")).text.section(QLatin1Char(' '), 1);
    for (const QJsonValue& service : QJsonDocument::fromJson(answer.toUtf8()).array()) {
        names += service.toObject().value(QStringLiteral("name")).toString();
    }
    return names;
}

// For the shell; the words begin behind the program's name.
int PrintCompletions(const QStringList& words) {
    const int option = words.indexOf(QStringLiteral("--remote"));
    const QString socket = option >= 0 && option + 1 < words.size() ? words.at(option + 1) : UsualRemotePath();
    for (const QString& candidate : Complete(words, {AllCommands(), KeyNamesList(), [&] { return ServiceNames(socket); }})) {
        Print(candidate);
    }
    return 0;
}

int Send(const Call& call) {
    RemoteClient remote;
    if (const auto failure = remote.Connect(call.socket)) {
        return Complain(*failure, kFailed);
    }
    const auto answer = remote.Ask((call.json ? QStringLiteral("json ") : QString()) + call.words.join(QLatin1Char(' ')));
    if (!answer.came) {
        return Complain(answer.text, kFailed);
    }
    Print(answer.text);
    return answer.ok ? 0 : kFailed;
}

int Run(const Call& call) {
    if (call.words.first() == QLatin1String("play")) {
        return call.words.size() == 2 ? Play(call.socket, call.words.at(1), AllCommands())
                                      : Complain(QStringLiteral("Write it as: play FILE"), kWrongUsage);
    }
    return Send(call);
}

// Takes the options from the words' front. False when one of them is wrong.
bool ReadOptions(QStringList words, Call& call) {
    while (!words.isEmpty() && words.first().startsWith(QLatin1Char('-'))) {
        const QString option = words.takeFirst();
        if (option == QLatin1String("--json")) {
            call.json = true;
        } else if (option == QLatin1String("--remote") && !words.isEmpty()) {
            call.socket = words.takeFirst();
        } else {
            return false;
        }
    }
    call.words = words;
    return !words.isEmpty();
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList words = application.arguments().mid(1);
    if (words.value(0) == QLatin1String("--complete")) {
        return PrintCompletions(words.mid(1));
    }
    if (words.value(0) == QLatin1String("--help") || words.value(0) == QLatin1String("-h")) {
        return PrintHelp();
    }
    Call call;
    if (!ReadOptions(words, call)) {
        return Complain(QStringLiteral("Say a command, behind --remote SOCKET or --json at most; --help lists all."),
                        kWrongUsage);
    }
    return Run(call);
}
