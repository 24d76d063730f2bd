#include "browser/remote/RemoteSocket.h"

namespace browser {

namespace {

constexpr int kLongestLine = 1 << 20;
constexpr const char* kTooLong = "tooLong";  // a client's property: the beginning of its line was dropped
constexpr const char* kTooLongAnswer = "error The line is too long: send lines of less than 1 MiB.";

bool SomeoneListens(const QString& path) {
    constexpr int kPatience = 1000;
    QLocalSocket socket;
    socket.connectToServer(path);
    return socket.waitForConnected(kPatience);
}

}  // namespace

RemoteSocket::RemoteSocket(Handler handler, QObject* parent) : QObject(parent), m_handler(std::move(handler)) {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &RemoteSocket::Accept);
}

std::optional<QString> RemoteSocket::Listen(const QString& path) {
    if (SomeoneListens(path)) {
        return QStringLiteral("Another TV browser listens to the remote %1 already: end it, or give this one another "
                              "socket with --remote.").arg(path);
    }
    QLocalServer::removeServer(path);
    if (!m_server.listen(path)) {
        return QStringLiteral("The remote's socket %1 cannot be made: %2.").arg(path, m_server.errorString());
    }
    return std::nullopt;
}

void RemoteSocket::Accept() {
    while (QLocalSocket* client = m_server.nextPendingConnection()) {
        client->setReadBufferSize(kLongestLine);
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { ReadLines(*client); });
        ReadLines(*client);
    }
}

void RemoteSocket::ReadLines(QLocalSocket& client) {
    if (!client.canReadLine() && client.bytesAvailable() >= kLongestLine) {
        client.readAll();
        client.setProperty(kTooLong, true);
    }
    while (client.canReadLine()) {
        const QString line = QString::fromUtf8(client.readLine()).trimmed();
        const bool tooLong = client.property(kTooLong).toBool();
        client.setProperty(kTooLong, false);
        if (!line.isEmpty() || tooLong) {
            const QString answer = tooLong ? QString::fromLatin1(kTooLongAnswer) : m_handler(line);
            client.write(QString(answer).replace(QLatin1Char('\n'), QLatin1Char(' ')).toUtf8() + '\n');
            client.flush();
        }
    }
}

}  // namespace browser
