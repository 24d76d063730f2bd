// One run of the TV browser: the television, the page and the window, brought together and ended in good order.
#pragma once

#include <QTimer>
#include <memory>

#include "browser/EventLog.h"
#include "browser/Options.h"
#include "browser/Signals.h"
#include "browser/keys/StimulusKeys.h"
#include "browser/keys/ViewerKeys.h"
#include "browser/page/Page.h"
#include "browser/planes/TvWindow.h"
#include "browser/remote/Commands.h"
#include "browser/remote/RemoteSocket.h"

namespace browser {

class Tour;

class Session : public QObject, public BridgeHost, public RemoteTarget {
    Q_OBJECT

public:
    explicit Session(const Options& options);
    ~Session() override;

    // The exit status.
    int Run();

    ViewerSettings Settings() const override { return m_options.settings; }
    QString UserAgent() const override { return m_page->UserAgent(); }
    bool IsTesting() const override { return m_options.test; }
    void LogFromPage(const QString& text) override;
    void EventFromPage(const QJsonObject& event) override;
    void SetKeyset(unsigned int mask) override;
    void OpenUrl(const QString& url) override;
    void Quit(int status) override;
    QImage ComposedPlanes() override { return m_window->Composed(); }
    QString RemoteLine(const QString& line) override { return RunCommand(*this, line); }

    Failure PressKey(const QString& name) override;
    Failure SelectChannel(const QString& channel) override;
    Failure WriteScreenshot(const QString& file) override;
    QString EvaluateScript(const QString& script) override;
    QJsonObject Status() override;
    QJsonArray Services() override;
    std::optional<QJsonArray> Programmes(const QString& service) override;
    std::vector<television::StimulusUse> Stimuli() override;
    Failure Stimulate(const QString& line) override;

private:
    Failure Answered(const std::optional<std::string>& refusal);
    Failure Prepare();
    Failure OpenEvents();
    Failure OpenRemote();
    Failure StartTelevision();
    void BuildWindow();
    void ConnectPage();
    void ConnectWindow();
    void AddShortcuts();
    void OpenFirstPage();
    void StartClock();
    void PageCommitted(const QUrl& url);
    void PageLoaded(const QUrl& url);
    void RequestFailed(const QUrl& url, const QString& reason);
    void PageNotLoaded(const QUrl& url, const QString& reason);
    void ClosePage();
    void RunScripts();
    void StartTour();
    void TimeIsUp();
    void PrintLine(const QString& text);
    void TestDone(const QJsonObject& report);
    void ShowChannel();
    void ShowNotice(const QString& text);
    void ToggleHelp();
    void ShowInspector();
    int Fail(const QString& sentence);
    void TearDown();

    const Options m_options;
    EventLog m_log;
    Signals m_signals;
    RemoteSocket m_remote;
    std::unique_ptr<Page> m_page;
    std::unique_ptr<TvWindow> m_window;
    std::unique_ptr<QWidget> m_inspector;
    std::unique_ptr<ViewerKeys> m_keys;
    StimulusCycle m_stimulusCycle;
    std::unique_ptr<Tour> m_tour;
    QTimer m_noticeTimer;
    bool m_televisionRuns = false;
    bool m_pageIsOpen = false;
    bool m_firstPageLoaded = false;
    bool m_helpShown = false;
    int m_status = 0;
};

}  // namespace browser
