// The other end of the remote's socket: sends lines, gets answers.
#pragma once

#include <QLocalSocket>
#include <QString>
#include <optional>

namespace browser {

class RemoteClient {
public:
    // Nothing on success, else one sentence.
    std::optional<QString> Connect(const QString& path);

    struct Answer {
        bool ok = false;
        QString text;  // the whole line; where none came, a sentence that says so
        bool came = false;
    };
    // Waits for the answer, however long it is; not longer than half a minute for the next piece of it.
    Answer Ask(const QString& line);

private:
    QLocalSocket m_socket;
};

}  // namespace browser
