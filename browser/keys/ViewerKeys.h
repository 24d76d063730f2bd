// The viewer's keys: those that the page asked for go to the page, the digits, the channel keys and the
// volume else to the television.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QTimer>
#include <optional>
#include <string>

#include "browser/keys/KeyDelivery.h"

namespace browser {

class ViewerKeys : public QObject {
    Q_OBJECT

public:
    explicit ViewerKeys(Page& page, QObject* parent = nullptr);

    void SetKeyset(unsigned int mask) { m_keyset = mask; }

    // A key of the remote control.
    void Act(const RemoteKey& key, KeyAction action);
    // A key of the keyboard: one of the remote control, or else the page's as it is.
    void KeyboardPressed(QKeyEvent& event);
    void KeyboardReleased(QKeyEvent& event);

Q_SIGNALS:
    void acted(const QString& key, const QString& receiver);
    // A text for the viewer, such as the number that is being entered.
    void notice(const QString& text);

private:
    void Keyboard(QKeyEvent& event, KeyAction action);
    void ActOnTelevision(const RemoteKey& key);
    void ChangeSound(const char* stimulus);
    // What the television answers to a change of the channel.
    void Answered(const std::optional<std::string>& refusal);
    void EnterDigit(int digit);
    void NumberEntered();

    Page& m_page;
    unsigned int m_keyset = kInitialKeyset;
    QString m_digits;
    QTimer m_digitTimer;
};

}  // namespace browser
