#include "browser/remote/Play.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <cstdio>

#include "browser/remote/Commands.h"
#include "browser/remote/RemoteClient.h"
#include "browser/remote/Script.h"

namespace browser {

namespace {

constexpr int kFailed = 1, kFaulty = 2;

int Complain(const QString& sentence, int status) {
    std::fprintf(stderr, "tv-remote: %s\n", qPrintable(sentence));
    return status;
}

// What does not come is said; the lines after it are sent all the same, for they may put things right again.
int PlaySteps(RemoteClient& remote, const std::vector<ScriptStep>& steps) {
    QElapsedTimer clock;
    clock.start();
    int status = 0;
    for (const ScriptStep& step : steps) {
        QThread::msleep(static_cast<unsigned long>(qMax(qint64(0), step.milliseconds - clock.elapsed())));
        const auto answer = remote.Ask(step.line);
        std::printf("%.3f %s: %s\n", double(clock.elapsed()) / 1000, qPrintable(step.line), qPrintable(answer.text));
        std::fflush(stdout);
        status = answer.ok ? status : kFailed;
        if (!answer.came) {
            return kFailed;
        }
    }
    return status;
}

}  // namespace

int Play(const QString& socket, const QString& name, const std::vector<CommandText>& commands) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        return Complain(QStringLiteral("The script %1 cannot be read: %2.").arg(name, file.errorString()), kFaulty);
    }
    const auto script = ReadScript(QString::fromUtf8(file.readAll()),
                                   [&](const QString& line) { return FaultOf(line, commands); });
    if (const auto* fault = std::get_if<ScriptFault>(&script)) {
        return Complain(QStringLiteral("%1:%2: %3").arg(name).arg(fault->number).arg(fault->sentence), kFaulty);
    }
    RemoteClient remote;
    if (const auto failure = remote.Connect(socket)) {
        return Complain(*failure, kFailed);
    }
    return PlaySteps(remote, std::get<std::vector<ScriptStep>>(script));
}

}  // namespace browser
