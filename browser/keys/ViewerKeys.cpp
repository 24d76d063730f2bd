#include "browser/keys/ViewerKeys.h"

#include "television/Television.h"

namespace browser {

using television::Television;

namespace {

constexpr int kDigitPause = 1500;  // milliseconds after which a number counts as entered
constexpr int kDigitsOfANumber = 4;

// Keys that a text field needs for itself: characters, and Backspace.
bool IsTyping(const Page& page, const QKeyEvent& event) {
    const bool types = event.key() == Qt::Key_Backspace || (!event.text().isEmpty() && event.text().at(0).isPrint());
    return types && page.HasTextFocus();
}

}  // namespace

ViewerKeys::ViewerKeys(Page& page, QObject* parent) : QObject(parent), m_page(page) {
    m_digitTimer.setSingleShot(true);
    m_digitTimer.setInterval(kDigitPause);
    connect(&m_digitTimer, &QTimer::timeout, this, &ViewerKeys::NumberEntered);
}

void ViewerKeys::Act(const RemoteKey& key, KeyAction action) {
    const bool forPage = (key.group & m_keyset) != 0;
    if (action != KeyAction::Release) {
        Q_EMIT acted(QString::fromLatin1(key.name), forPage ? QStringLiteral("page") : QStringLiteral("television"));
    }
    if (forPage) {
        DeliverKey(m_page, key, action);
    } else if (action != KeyAction::Release) {
        ActOnTelevision(key);
    }
}

void ViewerKeys::Keyboard(QKeyEvent& event, KeyAction action) {
    const RemoteKey* key = FindKey(Qt::Key(event.key()));
    if (key == nullptr || (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) || IsTyping(m_page, event)) {
        m_page.event(&event);
        return;
    }
    Act(*key, action);
}

void ViewerKeys::KeyboardPressed(QKeyEvent& event) {
    Keyboard(event, KeyAction::Press);
}

void ViewerKeys::KeyboardReleased(QKeyEvent& event) {
    if (!event.isAutoRepeat()) {
        Keyboard(event, KeyAction::Release);
    }
}

void ViewerKeys::ActOnTelevision(const RemoteKey& key) {
    if (const int digit = DigitOf(key); digit >= 0) {
        EnterDigit(digit);
    } else if (key.code == FindKey(QStringLiteral("CHANNEL_UP"))->code) {
        Answered(Television::Instance().ViewerSelectsNext());
    } else if (key.code == FindKey(QStringLiteral("CHANNEL_DOWN"))->code) {
        Answered(Television::Instance().ViewerSelectsPrevious());
    } else if (key.code == FindKey(QStringLiteral("VOLUME_UP"))->code) {
        ChangeSound("volume up");
    } else if (key.code == FindKey(QStringLiteral("VOLUME_DOWN"))->code) {
        ChangeSound("volume down");
    } else if (key.code == FindKey(QStringLiteral("MUTE"))->code) {
        ChangeSound(Television::Instance().TheCondition().muted ? "mute off" : "mute on");
    }
}

void ViewerKeys::Answered(const std::optional<std::string>& refusal) {
    if (refusal) {
        Q_EMIT notice(QString::fromStdString(*refusal));
    }
}

void ViewerKeys::ChangeSound(const char* stimulus) {
    Television::Instance().Stimulate(stimulus);
    const television::Condition condition = Television::Instance().TheCondition();
    Q_EMIT notice(condition.muted ? QStringLiteral("Mute") : QStringLiteral("Volume %1").arg(condition.volume));
}

void ViewerKeys::EnterDigit(int digit) {
    m_digits += QString::number(digit);
    Q_EMIT notice(m_digits + QLatin1Char('_'));
    m_digitTimer.start();
    if (m_digits.size() == kDigitsOfANumber) {
        NumberEntered();
    }
}

void ViewerKeys::NumberEntered() {
    m_digitTimer.stop();
    const QString digits = std::exchange(m_digits, QString());
    for (const auto& service : Television::Instance().Services()) {
        if (service.number == digits.toInt() && !service.hidden) {
            Q_EMIT notice(QString());
            return Answered(Television::Instance().ViewerSelects(service.id));
        }
    }
    Q_EMIT notice(QStringLiteral("There is no channel %1.").arg(digits));
}

}  // namespace browser
