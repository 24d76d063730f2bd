// The TV browser: reads the command line, looks for a display, and runs a session.
#include <QApplication>
#include <cstdio>
#include <memory>

#include "browser/EventLog.h"
#include "browser/Memory.h"
#include "browser/Options.h"
#include "browser/Session.h"
#include "browser/host/Display.h"

namespace {

constexpr int kFailed = 1, kWrongUsage = 2;

QStringList Arguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    return arguments;
}

// Qt's warnings are for programmers: they show with the most detailed log only.
void InstallMessageHandler(int logLevel) {
    constexpr int kDetails = 4;
    if (logLevel < kDetails) {
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtCriticalMsg || type == QtFatalMsg) {
                browser::PrintError(text);
            }
        });
    }
}

int RunSession(char** argv, const browser::Options& options) {
    auto probe = std::make_unique<browser::DisplayProbe>();
    if (!probe->HasDisplay()) {
        browser::PrintError(QStringLiteral("There is no X display: set DISPLAY to one, or start the TV browser with "
                                           "./tv, which makes a virtual one."));
        return kFailed;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    InstallMessageHandler(options.logLevel);
    int count = 1;  // the options are all ours; Qt would take some of them for its own
    QApplication application(count, argv);
    probe.reset();
    return browser::Session(options).Run();
}

}  // namespace

int main(int argc, char** argv) {
    const auto read = browser::ReadOptions(Arguments(argc, argv));
    if (std::holds_alternative<browser::HelpWanted>(read)) {
        std::fputs(qPrintable(browser::HelpText()), stdout);
        return 0;
    }
    if (const auto* error = std::get_if<browser::UsageError>(&read)) {
        browser::PrintError(error->sentence);
        return kWrongUsage;
    }
    browser::ShareMemoryAmongThreads();
    return RunSession(argv, std::get<browser::Options>(read));
}
