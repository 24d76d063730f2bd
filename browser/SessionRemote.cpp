// What the page, the remote and the viewer ask of a session.
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QShortcut>
#include <QWebFrame>
#include <QWebInspector>

#include "browser/Session.h"
#include "browser/keys/HelpText.h"
#include "browser/remote/Queries.h"
#include "television/Television.h"

namespace browser {

using television::Television;

namespace {

constexpr int kNoticeTime = 3000;

QJsonValue ValueOf(const QVariant& value) {
    return value.isValid() ? QJsonValue::fromVariant(value) : QJsonValue();
}

// A single value as JSON; QJsonDocument writes arrays and objects only.
QString JsonText(const QVariant& value) {
    const QByteArray array = QJsonDocument(QJsonArray{ValueOf(value)}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

}  // namespace

void Session::LogFromPage(const QString& text) {
    m_log.Say(QStringLiteral("page"), text);
}

void Session::EventFromPage(const QJsonObject& event) {
    m_log.Add(QStringLiteral("script"), {{QStringLiteral("event"), event}});
    if (m_options.test && event.value(QStringLiteral("test")) == QLatin1String("done")) {
        TestDone(event);
    }
}

void Session::TestDone(const QJsonObject& report) {
    const bool ok = report.value(QStringLiteral("ok")).toBool();
    PrintError((ok ? QStringLiteral("passed: ") : QStringLiteral("failed: ")) +
               report.value(QStringLiteral("text")).toString());
    Quit(ok ? 0 : 1);
}

void Session::SetKeyset(unsigned int mask) {
    m_keys->SetKeyset(mask);
}

void Session::OpenUrl(const QString& url) {
    const QUrl absolute = m_page->mainFrame()->baseUrl().resolved(QUrl(url));
    // Not within the script that asked for it.
    QMetaObject::invokeMethod(m_page.get(), [this, absolute] { m_page->Open(absolute); }, Qt::QueuedConnection);
}

Session::Failure Session::PressKey(const QString& name) {
    const RemoteKey* key = FindKey(name);
    if (key == nullptr) {
        return QStringLiteral("There is no key \"%1\"; the keys are: %2.").arg(name, KeyNames());
    }
    m_keys->Act(*key, KeyAction::Stroke);
    return std::nullopt;
}

Session::Failure Session::SelectChannel(const QString& channel) {
    Television& television = Television::Instance();
    if (channel == QLatin1String("next")) {
        return Answered(television.ViewerSelectsNext());
    }
    if (channel == QLatin1String("previous")) {
        return Answered(television.ViewerSelectsPrevious());
    }
    if (const auto service = FindService(television.Services(), channel)) {
        return Answered(television.ViewerSelects(service->id));
    }
    return QStringLiteral("There is no channel \"%1\".").arg(channel);
}

// The viewer reads it too.
Session::Failure Session::Answered(const std::optional<std::string>& refusal) {
    if (!refusal) {
        return std::nullopt;
    }
    const QString sentence = QString::fromStdString(*refusal);
    ShowNotice(sentence);
    return sentence;
}

Session::Failure Session::WriteScreenshot(const QString& file) {
    if (!m_window->Composed().save(file, QFileInfo(file).suffix().isEmpty() ? "PNG" : nullptr)) {
        return QStringLiteral("The screenshot cannot be written to %1: name a .png or .jpg file in a folder that can "
                              "be written to.").arg(file);
    }
    return std::nullopt;
}

QString Session::EvaluateScript(const QString& script) {
    return JsonText(m_page->Evaluate(script));
}

QJsonObject Session::Status() {
    QJsonObject status = TelevisionStatus();
    status.insert(QStringLiteral("page"), m_page->mainFrame()->url().toDisplayString());
    return status;
}

QJsonArray Session::Services() {
    return TelevisionServices();
}

std::optional<QJsonArray> Session::Programmes(const QString& wanted) {
    Television& television = Television::Instance();
    const auto service = wanted.isEmpty() ? television.CurrentService() : FindService(television.Services(), wanted);
    if (!service) {
        return std::nullopt;
    }
    QJsonArray programmes;
    for (const auto& programme : television.Programmes(service->id)) {
        programmes += ToJson(programme);
    }
    return programmes;
}

std::vector<television::StimulusUse> Session::Stimuli() {
    return Television::Stimuli();
}

Session::Failure Session::Stimulate(const QString& line) {
    const auto failure = Television::Instance().Stimulate(line.toStdString());
    return failure ? Failure(QString::fromStdString(*failure)) : std::nullopt;
}

void Session::ShowChannel() {
    const auto service = Television::Instance().CurrentService();
    if (!service) {
        return;
    }
    const QString name = QString::fromStdString(service->name);
    m_log.Add(QStringLiteral("channel"),
              {{QStringLiteral("id"), double(service->id)}, {QStringLiteral("name"), name}});
    ShowNotice(QStringLiteral("%1  %2").arg(service->number).arg(name));
}

void Session::ShowNotice(const QString& text) {
    m_helpShown = false;
    m_window->SetNotice(text);
    m_noticeTimer.start(kNoticeTime);
}

void Session::ToggleHelp() {
    const bool show = !m_helpShown;
    m_noticeTimer.stop();
    m_window->SetNotice(show ? KeyboardHelp() : QString());
    m_helpShown = show;
}

void Session::ShowInspector() {
    if (!m_inspector) {
        auto inspector = std::make_unique<QWebInspector>();
        inspector->setPage(m_page.get());
        m_inspector = std::move(inspector);
    }
    m_inspector->show();
}

void Session::AddShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, m_window.get()), &QShortcut::activated, this, action);
    };
    add(Qt::Key_F1, [this] { ToggleHelp(); });
    add(Qt::Key_F11, [this] { m_window->setWindowState(m_window->windowState() ^ Qt::WindowFullScreen); });
    add(Qt::Key_F12, [this] { ShowInspector(); });
    add(QKeySequence(QStringLiteral("Ctrl+R")), [this] { m_page->triggerAction(QWebPage::Reload); });
    add(QKeySequence(QStringLiteral("Ctrl+Q")), [this] { Quit(0); });
    for (const StimulusKey& key : StimulusKeys()) {
        add(key.key, [this, &key] {
            ShowNotice(m_stimulusCycle.Press(key, [this](const QString& line) { return Stimulate(line); }));
        });
    }
}

}  // namespace browser
