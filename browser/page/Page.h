// A page of the TV browser: user agent, page environment, and what it reports of itself.
#pragma once

#include <QUrl>

#include "browser/host/PatientPage.h"
#include "browser/page/PageBridge.h"
#include "browser/page/PageNetwork.h"

namespace browser {

class Page : public PatientPage {
    Q_OBJECT

public:
    explicit Page(BridgeHost& host);

    QString UserAgent() const { return userAgentForUrl(QUrl()); }
    void Open(const QUrl& url);
    // Leaves the page: its unload handlers run, its plug-in instances are destroyed. Returns when that is done.
    void Unload();
    // Runs a script in the page's window.
    QVariant Evaluate(const QString& script);
    // True while the viewer types into a text field of the page.
    bool HasTextFocus() const { return inputMethodQuery(Qt::ImEnabled).toBool(); }
    // Tells the page's scripts that the channel list is another.
    void ServicesChanged();

Q_SIGNALS:
    // The window of a new page is there; none of its scripts has run.
    void committed(const QUrl& url);
    void loaded(const QUrl& url);
    void notLoaded(const QUrl& url, const QString& reason);
    void consoleLine(const QString& text, bool isError);
    void uncaughtException(const QString& text);
    // Something else that the page asked the network for.
    void requestFailed(const QUrl& url, const QString& reason);

protected:
    QString userAgentForUrl(const QUrl& url) const override;
    void javaScriptAlert(QWebFrame* frame, const QString& text) override;
    bool javaScriptConfirm(QWebFrame* frame, const QString& text) override;
    bool javaScriptPrompt(QWebFrame* frame, const QString& text, const QString& initial, QString* result) override;
    bool acceptNavigationRequest(QWebFrame* frame, const QNetworkRequest& request, NavigationType type) override;
    bool supportsExtension(Extension extension) const override;
    bool extension(Extension extension, const ExtensionOption* option, ExtensionReturn* output) override;

private:
    void ConfigureSettings();
    void WatchFrame(QWebFrame* frame);
    void WindowCleared(QWebFrame* frame);
    void ReportConsole(MessageSource source, MessageLevel level, const QString& message, int line,
                       const QString& file);
    void ReportFailure(const QUrl& url, const QString& reason);
    void RefuseContent(QNetworkReply* reply);
    void LoadFinished(bool ok);

    BridgeHost& m_host;
    PageNetwork m_network;
    QUrl m_failedUrl;  // of the main frame's last load, if it failed
};

}  // namespace browser
