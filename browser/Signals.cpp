#include "browser/Signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace browser {

namespace {

int s_pipe[2] = {-1, -1};

extern "C" void NoteSignal(int) {
    const char byte = 0;
    [[maybe_unused]] const auto written = write(s_pipe[1], &byte, 1);
}

}  // namespace

Signals::Signals(QObject* parent) : QObject(parent) {
    if (pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(s_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(s_pipe[0], &byte, 1) > 0) {
        }
        Q_EMIT asked();
    });
    struct sigaction action {};
    action.sa_handler = NoteSignal;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(number, &action, nullptr);
    }
}

}  // namespace browser
