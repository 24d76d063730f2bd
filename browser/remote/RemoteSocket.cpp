#include "browser/remote/RemoteSocket.h"

namespace browser {

namespace {

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
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { ReadLines(*client); });
        ReadLines(*client);
    }
}

void RemoteSocket::ReadLines(QLocalSocket& client) {
    while (client.canReadLine()) {
        const QString line = QString::fromUtf8(client.readLine()).trimmed();
        if (!line.isEmpty()) {
            client.write(m_handler(line).replace(QLatin1Char('\n'), QLatin1Char(' ')).toUtf8() + '\n');
            client.flush();
        }
    }
}

}  // namespace browser
