#include "browser/EventLog.h"

#include <QJsonDocument>
#include <cstdio>

namespace browser {

EventLog::EventLog() {
    m_clock.start();
}

std::optional<QString> EventLog::WriteTo(const QString& file) {
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text;
    m_file.setFileName(file);
    const bool open = file == QLatin1String("-") ? m_file.open(stdout, mode) : m_file.open(mode);
    if (!open) {
        return QStringLiteral("The events cannot be written to %1: %2.").arg(file, m_file.errorString());
    }
    return std::nullopt;
}

void EventLog::Add(const QString& kind, QJsonObject details) {
    if (!m_file.isOpen()) {
        return;
    }
    details.insert(QStringLiteral("kind"), kind);
    details.insert(QStringLiteral("time"), double(m_clock.elapsed()));
    m_file.write(QJsonDocument(details).toJson(QJsonDocument::Compact) + '\n');
    m_file.flush();
}

void EventLog::Say(const QString& kind, const QString& text) {
    PrintError(kind + QStringLiteral(": ") + text);
    Add(kind, {{QStringLiteral("text"), text}});
}

void PrintError(const QString& line) {
    const QByteArray text = line.toLocal8Bit() + '\n';
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stderr);
    std::fflush(stderr);
}

}  // namespace browser
