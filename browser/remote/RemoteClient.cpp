#include "browser/remote/RemoteClient.h"

namespace browser {

namespace {

constexpr int kPatience = 30000;  // milliseconds; a script may take its time

}  // namespace

std::optional<QString> RemoteClient::Connect(const QString& path) {
    m_socket.connectToServer(path);
    if (m_socket.waitForConnected(kPatience)) {
        return std::nullopt;
    }
    return QStringLiteral("No TV browser listens to %1: start one, or name its socket with --remote.").arg(path);
}

RemoteClient::Answer RemoteClient::Ask(const QString& line) {
    m_socket.write(line.toUtf8() + '\n');
    QByteArray answer;
    while (!answer.endsWith('\n')) {
        if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(kPatience)) {
            return {false, QStringLiteral("The TV browser ended, or did not answer \"%1\" within half a minute.")
                               .arg(line.left(60)), false};
        }
        answer += m_socket.readLine();
    }
    const QString text = QString::fromUtf8(answer).trimmed();
    const bool ok = text == QLatin1String("ok") || text.startsWith(QLatin1String("ok ")) ||
                    text.startsWith(QLatin1String("{\"ok\":true"));
    return {ok, text, true};
}

}  // namespace browser
