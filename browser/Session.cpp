#include "browser/Session.h"

#include <QApplication>
#include <QDir>
#include <QWebFrame>
#include <cstdio>
#include <utility>

#include "browser/host/PluginPlace.h"
#include "browser/remote/RemotePath.h"
#include "browser/tour/Tour.h"
#include "television/Television.h"

namespace browser {

using television::Television;

namespace {

constexpr int kFailed = 1;
constexpr int kTestSeconds = 30;

// "scheme://host:port", as the plug-in names a page's origin.
std::string OriginOf(const QUrl& url) {
    return (url.scheme() + QStringLiteral("://") + url.authority(QUrl::FullyEncoded)).toStdString();
}

// A URL or the name of a file.
QUrl UrlOf(const QString& text) {
    return QUrl::fromUserInput(text, QDir::currentPath(), QUrl::AssumeLocalFile);
}

QString DemonstrationFile(const Options& options) {
    return options.demonstration.isEmpty()
               ? QCoreApplication::applicationDirPath() + QStringLiteral("/../demonstration/demonstration.ts")
               : options.demonstration;
}

}  // namespace

Session::Session(const Options& options)
    : m_options(options), m_remote([this](const QString& line) { return RemoteLine(line); }) {
    m_noticeTimer.setSingleShot(true);
    connect(&m_noticeTimer, &QTimer::timeout, this, [this] { ShowNotice(QString()); });
    connect(&m_signals, &Signals::asked, this, [this] { Quit(kFailed); });
}

Session::~Session() = default;

int Session::Run() {
    if (const Failure failure = Prepare()) {
        m_status = Fail(*failure);
    } else {
        OpenFirstPage();
        StartClock();
        m_status = QApplication::exec();
    }
    TearDown();
    return m_status;
}

int Session::Fail(const QString& sentence) {
    m_log.Say(QStringLiteral("error"), sentence);
    return kFailed;
}

Session::Failure Session::Prepare() {
    if (Failure failure = OfferPlugin(m_options.plugin)) {
        return failure;
    }
    if (Failure failure = OpenEvents()) {
        return failure;
    }
    if (Failure failure = OpenRemote()) {
        return failure;
    }
    BuildWindow();
    return StartTelevision();
}

Session::Failure Session::OpenEvents() {
    if (m_options.events.isEmpty()) {
        return std::nullopt;
    }
    ObservePlugin([this](const QString& kind, const QJsonObject& details) { m_log.Add(kind, details); });
    return m_log.WriteTo(m_options.events);
}

// Page tests run side by side: they listen to a remote only where they are told to.
Session::Failure Session::OpenRemote() {
    const bool usual = m_options.remote.isEmpty() && !m_options.test;
    const QString remote = usual ? UsualRemotePath() : m_options.remote;
    const bool none = remote.isEmpty() || remote == QLatin1String("none");
    return none ? std::nullopt : m_remote.Listen(remote);
}

void Session::BuildWindow() {
    m_page = std::make_unique<Page>(*this);
    m_window = std::make_unique<TvWindow>(*m_page);
    m_keys = std::make_unique<ViewerKeys>(*m_page);
    ConnectPage();
    ConnectWindow();
    AddShortcuts();
    if (m_options.fullScreen) {
        m_window->showFullScreen();
    } else {
        m_window->show();
    }
}

Session::Failure Session::StartTelevision() {
    television::Configuration configuration;
    for (const QString& stream : m_options.streams) {
        configuration.streams.push_back(stream.toStdString());
    }
    configuration.demonstration = DemonstrationFile(m_options).toStdString();
    configuration.timetable = m_options.timetable;
    configuration.demonstrationTime = m_options.demonstrationTime;
    configuration.sound = m_options.sound;
    configuration.soundFile = m_options.soundFile.toStdString();
    configuration.pin = m_options.pin.toStdString();
    configuration.audioLanguage = m_options.settings.audioLanguage.toStdString();
    configuration.country = m_options.settings.countryId.toStdString();

    television::Observer observer;
    observer.pictureChanged = [this] { m_window->PictureChanged(); };
    observer.layoutChanged = [this] { m_window->LayoutChanged(); };
    observer.channelChanged = [this] { QMetaObject::invokeMethod(this, [this] { ShowChannel(); }); };
    observer.servicesChanged = [this] { QMetaObject::invokeMethod(m_page.get(), [this] { m_page->ServicesChanged(); }); };
    observer.log = [this](const std::string& line) {
        const QString text = QString::fromUtf8(line.data(), int(line.size()));
        QMetaObject::invokeMethod(this, [this, text] { m_log.Say(QStringLiteral("television"), text); });
    };
    Television::Instance().SetDebugLevel(m_options.logLevel);
    m_televisionRuns = true;
    const auto failure = Television::Instance().Start(configuration, observer, [this](const std::string& progress) {
        const QString text = QString::fromStdString(progress);
        PrintError(text);
        m_window->SetNotice(text);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    m_window->SetNotice(QString());
    return failure ? Failure(QString::fromStdString(*failure)) : std::nullopt;
}

void Session::ConnectPage() {
    connect(m_page.get(), &Page::committed, this, &Session::PageCommitted);
    connect(m_page.get(), &Page::loaded, this, &Session::PageLoaded);
    connect(m_page.get(), &Page::notLoaded, this, &Session::PageNotLoaded);
    connect(m_page.get(), &Page::consoleLine, this, [this](const QString& text, bool isError) {
        m_log.Say(isError ? QStringLiteral("page error") : QStringLiteral("console"), text);
    });
    connect(m_page.get(), &Page::uncaughtException, this, [this](const QString& text) {
        if (m_options.test) {
            Quit(Fail(QStringLiteral("The page test ended with an uncaught exception: ") + text));
        }
    });
    connect(m_page.get(), &Page::requestFailed, this, &Session::RequestFailed);
}

void Session::ConnectWindow() {
    connect(m_window.get(), &TvWindow::keyPressed, this, [this](QKeyEvent* key) { m_keys->KeyboardPressed(*key); });
    connect(m_window.get(), &TvWindow::keyReleased, this, [this](QKeyEvent* key) { m_keys->KeyboardReleased(*key); });
    connect(m_window.get(), &TvWindow::closed, this, [this] { Quit(0); });
    connect(m_keys.get(), &ViewerKeys::notice, this, &Session::ShowNotice);
    connect(m_keys.get(), &ViewerKeys::acted, this, [this](const QString& key, const QString& receiver) {
        m_log.Add(QStringLiteral("key"), {{QStringLiteral("key"), key}, {QStringLiteral("to"), receiver}});
    });
}

void Session::StartClock() {
    const int seconds = m_options.seconds.value_or(m_options.test ? kTestSeconds : 0);
    if (seconds > 0) {
        QTimer::singleShot(seconds * 1000, this, &Session::TimeIsUp);
    }
}

void Session::TimeIsUp() {
    if (m_options.test) {
        Quit(Fail(QStringLiteral("The page test did not call tvTest.done in its time.")));
    } else if (m_tour) {
        Quit(Fail(QStringLiteral("The tour did not end in its time.")));
    } else {
        Quit(0);
    }
}

void Session::OpenFirstPage() {
    m_page->Open(m_options.url.isEmpty() ? QUrl::fromLocalFile(QStringLiteral(TV_BROWSER_DEMONSTRATION_PAGE))
                                         : UrlOf(m_options.url));
}

void Session::PageCommitted(const QUrl& url) {
    ClosePage();
    if (url.isEmpty() || url.scheme() == QLatin1String("about")) {
        return;
    }
    m_keys->SetKeyset(kInitialKeyset);
    m_pageIsOpen = true;
    Television::Instance().PageOpened(m_options.broadcastRelated, {OriginOf(url)});
    m_log.Add(QStringLiteral("page"), {{QStringLiteral("url"), url.toDisplayString()}});
}

// Qt WebKit may destroy the plug-in instances of a page only after the next page is there; without their objects they
// have nothing any more to give back.
void Session::ClosePage() {
    InvalidatePluginObjects();
    if (std::exchange(m_pageIsOpen, false)) {
        Television::Instance().PageClosed();
    }
}

void Session::PageLoaded(const QUrl&) {
    if (!std::exchange(m_firstPageLoaded, true)) {
        RunScripts();
        if (m_options.tour) {
            StartTour();
        }
    }
}

void Session::RequestFailed(const QUrl& url, const QString& reason) {
    m_log.Say(QStringLiteral("network"), QStringLiteral("%1 does not load: %2.").arg(url.toDisplayString(), reason));
}

// The viewer sees the error page of a later one.
void Session::PageNotLoaded(const QUrl& url, const QString& reason) {
    if (m_firstPageLoaded) {
        RequestFailed(url, reason);
    } else {
        Quit(Fail(QStringLiteral("%1 does not load: %2.").arg(url.toDisplayString(), reason)));
    }
}

void Session::RunScripts() {
    for (const QString& script : m_options.evaluate) {
        m_log.Say(QStringLiteral("value"), EvaluateScript(script));
    }
}

void Session::StartTour() {
    m_tour = std::make_unique<Tour>(*m_page, *m_window, m_options.screenshot);
    connect(m_tour.get(), &Tour::scriptEvent, this, &Session::EventFromPage);
    connect(m_tour.get(), &Tour::line, this, &Session::PrintLine);
    connect(m_tour.get(), &Tour::ended, this, [this](bool ok) { Quit(ok ? 0 : kFailed); });
    m_tour->Start();
}

// For the one who watches; standard output belongs to the events when they go there.
void Session::PrintLine(const QString& text) {
    if (m_options.events == QLatin1String("-")) {
        PrintError(text);
    } else {
        std::puts(qPrintable(text));
        std::fflush(stdout);
    }
}

void Session::Quit(int status) {
    if (!m_options.screenshot.isEmpty() && !m_options.tour && m_window) {
        if (const Failure failure = WriteScreenshot(m_options.screenshot)) {
            status = Fail(*failure);
        }
    }
    // Also before the event loop has begun.
    QMetaObject::invokeMethod(qApp, [status] { QApplication::exit(status); }, Qt::QueuedConnection);
}

void Session::TearDown() {
    m_remote.Close();
    m_tour.reset();
    m_inspector.reset();
    if (m_page) {
        disconnect(m_page.get(), &Page::loaded, this, nullptr);
        m_page->Unload();
    }
    ClosePage();
    m_page.reset();
    if (std::exchange(m_televisionRuns, false)) {
        Television::Instance().Stop();
    }
    m_keys.reset();
    m_window.reset();
}

}  // namespace browser
