// tv-remote: sends a line to the TV browser's remote control and prints the answer.
#include <QCoreApplication>
#include <QLocalSocket>
#include <cstdio>

#include "browser/remote/RemotePath.h"

namespace {

constexpr int kPatience = 30000;  // milliseconds; a script may take its time

int Fail(const QString& sentence) {
    std::fprintf(stderr, "tv-remote: %s\n", qPrintable(sentence));
    return 1;
}

int Send(const QString& path, const QString& line) {
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(kPatience)) {
        return Fail(QStringLiteral("No TV browser listens to %1: start one, or name its socket with --remote.")
                        .arg(path));
    }
    socket.write(line.toUtf8() + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(kPatience)) {
            return Fail(QStringLiteral("The TV browser did not answer."));
        }
    }
    const QByteArray answer = socket.readLine();
    std::fputs(answer.constData(), stdout);
    return answer.startsWith("ok") ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QStringList words = application.arguments().mid(1);
    QString path = browser::UsualRemotePath();
    if (words.size() >= 2 && words.first() == QLatin1String("--remote")) {
        path = words.at(1);
        words = words.mid(2);
    }
    if (words.isEmpty() || words.first().startsWith(QLatin1Char('-'))) {
        std::puts("tv-remote [--remote SOCKET] COMMAND...\n"
                  "Sends a command to the TV browser's remote control; \"tv-remote help\" lists them.");
        return words.isEmpty() || words.first() != QLatin1String("--help") ? 2 : 0;
    }
    return Send(path, words.join(QLatin1Char(' ')));
}
