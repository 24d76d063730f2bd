#include "browser/page/Page.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <QWebFrame>
#include <QWebSettings>

#include "browser/Resource.h"
#include "browser/host/FunctionTable.h"
#include "browser/page/Environment.h"

namespace browser {

namespace {

// QWebSettings takes a style sheet by URL only.
QUrl UserStyleSheet() {
    const QByteArray sheet = ReadResource(QStringLiteral("environment/page.css")).toUtf8();
    return QUrl(QStringLiteral("data:text/css;charset=utf-8;base64,") + QString::fromLatin1(sheet.toBase64()));
}

QString ErrorPage(const QUrl& url, const QString& reason) {
    return QStringLiteral("<!DOCTYPE html><title>Not loaded</title><body style='margin:80px;background:#101828;"
                          "color:#fff;font:28px sans-serif'><h1>This page does not load</h1><p>%1</p><p>%2</p>")
        .arg(url.toDisplayString().toHtmlEscaped(), reason.toHtmlEscaped());
}

}  // namespace

Page::Page(BridgeHost& host) : m_host(host) {
    setNetworkAccessManager(&m_network);
    ConfigureSettings();
    setLinkDelegationPolicy(DontDelegateLinks);
    WatchFrame(mainFrame());
    mainFrame()->setScrollBarPolicy(Qt::Horizontal, Qt::ScrollBarAlwaysOff);
    mainFrame()->setScrollBarPolicy(Qt::Vertical, Qt::ScrollBarAlwaysOff);
    connect(this, &QWebPage::frameCreated, this, &Page::WatchFrame);
    connect(this, &QWebPage::loadFinished, this, &Page::LoadFinished);
    setForwardUnsupportedContent(true);
    connect(this, &QWebPage::unsupportedContent, this, &Page::RefuseContent);
    connect(&m_network, &PageNetwork::failed, this, &Page::ReportFailure);
    connect(this, &QWebPage::consoleMessageReceived, this, &Page::ReportConsole);
}

void Page::ConfigureSettings() {
    settings()->setAttribute(QWebSettings::PluginsEnabled, true);
    settings()->setAttribute(QWebSettings::DeveloperExtrasEnabled, true);
    settings()->setAttribute(QWebSettings::LocalContentCanAccessRemoteUrls, true);
    // Layers of their own would be painted past the graphics plane's record of what changed.
    settings()->setAttribute(QWebSettings::AcceleratedCompositingEnabled, false);
    settings()->setUserStyleSheetUrl(UserStyleSheet());
}

void Page::Open(const QUrl& url) {
    m_failedUrl.clear();
    // Qt WebKit announces new windows of a frame only once a script has run there.
    Evaluate(QStringLiteral("0"));
    mainFrame()->load(url);
}

void Page::Unload() {
    constexpr int kPatience = 2000;  // milliseconds: a page must not keep the program from ending
    QEventLoop loop;
    bool gone = false;
    connect(this, &QWebPage::loadFinished, &loop, [&] {
        gone = true;
        loop.quit();
    });
    QTimer::singleShot(kPatience, &loop, &QEventLoop::quit);
    Open(QUrl(QStringLiteral("about:blank")));
    if (!gone) {
        loop.exec();
    }
}

QVariant Page::Evaluate(const QString& script) {
    return mainFrame()->evaluateJavaScript(script);
}

void Page::ServicesChanged() {
    for (PageBridge* bridge : findChildren<PageBridge*>()) {
        Q_EMIT bridge->servicesChanged();
    }
}

void Page::WatchFrame(QWebFrame* frame) {
    connect(frame, &QWebFrame::javaScriptWindowObjectCleared, this, [this, frame] { WindowCleared(frame); });
}

void Page::WindowCleared(QWebFrame* frame) {
    if (frame == mainFrame()) {
        Q_EMIT committed(frame->url());
    }
    // The first page of a frame may keep the window of the empty document before it, with what that had: the
    // environment is another, the functions stay.
    delete frame->findChild<PageBridge*>(QString(), Qt::FindDirectChildrenOnly);
    InstallFunctionTable(*frame);
    InstallEnvironment(*frame, *new PageBridge(m_host, frame));
}

QString Page::userAgentForUrl(const QUrl& url) const {
    return QStringLiteral("HbbTV/1.2.1 (;Software;Television;1.0;1.0;) ") + QWebPage::userAgentForUrl(url);
}

void Page::ReportConsole(MessageSource source, MessageLevel level, const QString& message, int line,
                         const QString& file) {
    const QString place = file.isEmpty() ? QString() : QStringLiteral("%1:%2: ").arg(file).arg(line);
    Q_EMIT consoleLine(place + message, level == ErrorMessageLevel);
    if (source == JSMessageSource && level == ErrorMessageLevel) {
        Q_EMIT uncaughtException(place + message);
    }
}

// Televisions have no message boxes, and nobody may be there to close one. Calls that wait for the page's thread run
// while an alert is shown, as in other browsers.
void Page::javaScriptAlert(QWebFrame*, const QString& text) {
    m_host.LogFromPage(QStringLiteral("alert: ") + text);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool Page::javaScriptConfirm(QWebFrame*, const QString& text) {
    m_host.LogFromPage(QStringLiteral("confirm (answered with OK): ") + text);
    return true;
}

bool Page::javaScriptPrompt(QWebFrame*, const QString& text, const QString& initial, QString* result) {
    m_host.LogFromPage(QStringLiteral("prompt (answered with the initial text): ") + text);
    *result = initial;
    return true;
}

bool Page::acceptNavigationRequest(QWebFrame* frame, const QNetworkRequest& request, NavigationType type) {
    // The error page that takes the place of a page comes by here too, under that page's URL.
    if (frame == mainFrame() && request.url() != m_failedUrl) {
        m_failedUrl.clear();
    }
    return PatientPage::acceptNavigationRequest(frame, request, type);
}

bool Page::supportsExtension(Extension extension) const {
    return extension == ErrorPageExtension;
}

bool Page::extension(Extension extension, const ExtensionOption* option, ExtensionReturn* output) {
    const auto* error = static_cast<const ErrorPageExtensionOption*>(option);
    constexpr int kInterrupted = 102, kPluginLoads = 203;  // Qt WebKit's: the load goes on elsewhere
    const bool harmless = error->domain == WebKit && (error->error == kInterrupted || error->error == kPluginLoads);
    if (extension != ErrorPageExtension || harmless || error->frame != mainFrame()) {
        return false;
    }
    static_cast<ErrorPageExtensionReturn*>(output)->content = ErrorPage(error->url, error->errorString).toUtf8();
    ReportFailure(error->url, error->errorString);
    return true;
}

// A failed request for the page itself is heard of from the network and, if it brought no content, from the page.
void Page::ReportFailure(const QUrl& url, const QString& reason) {
    if (!m_failedUrl.isEmpty() && url == m_failedUrl) {
        return;
    }
    if (url != mainFrame()->requestedUrl()) {
        Q_EMIT requestFailed(url, reason);
        return;
    }
    m_failedUrl = url;
    Q_EMIT notLoaded(url, reason);
}

void Page::RefuseContent(QNetworkReply* reply) {
    const QString type = reply->header(QNetworkRequest::ContentTypeHeader).toString();
    ReportFailure(reply->request().url(), QStringLiteral("its content type is \"%1\", which is no page's").arg(type));
    reply->abort();
    reply->deleteLater();
}

void Page::LoadFinished(bool ok) {
    if (ok && m_failedUrl.isEmpty()) {
        Q_EMIT loaded(mainFrame()->url());
    }
}

}  // namespace browser
