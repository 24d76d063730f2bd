// Ends the program in good order when it is asked to by a signal.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace browser {

class Signals : public QObject {
    Q_OBJECT

public:
    explicit Signals(QObject* parent = nullptr);

Q_SIGNALS:
    // SIGINT, SIGTERM or SIGHUP came.
    void asked();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

}  // namespace browser
