// The local socket on which the remote control is listened to.
#pragma once

#include <QLocalServer>
#include <QLocalSocket>
#include <functional>
#include <optional>

namespace browser {

class RemoteSocket : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<QString(const QString& line)>;

    explicit RemoteSocket(Handler handler, QObject* parent = nullptr);

    // Nothing on success, else one sentence. A socket that a dead process left behind is taken over.
    std::optional<QString> Listen(const QString& path);
    // Removes the socket.
    void Close() { m_server.close(); }

private:
    void Accept();
    void ReadLines(QLocalSocket& client);

    Handler m_handler;
    QLocalServer m_server;
};

}  // namespace browser
