// What happens, for people (lines on standard error) and for programs (JSON lines with --events).
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QString>
#include <optional>

namespace browser {

class EventLog {
public:
    EventLog();

    // JSON lines go to that file too, "-" for standard output. One sentence when it cannot be written.
    std::optional<QString> WriteTo(const QString& file);

    // One event: its kind ("script", "console", "key", ...) and what there is to tell about it.
    void Add(const QString& kind, QJsonObject details);
    // An event with a text, which people read as well.
    void Say(const QString& kind, const QString& text);

private:
    QElapsedTimer m_clock;
    QFile m_file;
};

// A line on standard error.
void PrintError(const QString& line);

}  // namespace browser
