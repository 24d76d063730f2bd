// The keys of the remote control: names, the codes that pages get, the group a page asks for them by, and the keyboard.
#pragma once

#include <Qt>
#include <QString>
#include <vector>

namespace browser {

// The constants of the keyset object (OIPF DAE, clause 7.2.5).
enum KeyGroup : unsigned int {
    kRed = 0x1,
    kGreen = 0x2,
    kYellow = 0x4,
    kBlue = 0x8,
    kNavigation = 0x10,
    kVcr = 0x20,
    kScroll = 0x40,
    kInfo = 0x80,
    kNumeric = 0x100,
    kAlpha = 0x200,
    kOther = 0x400
};

// What a page gets until it says which keys it wants: the digits and the channel keys are the television's.
inline constexpr unsigned int kInitialKeyset =
    kRed | kGreen | kYellow | kBlue | kNavigation | kVcr | kScroll | kInfo | kAlpha;

struct RemoteKey {
    const char* name;  // as in VK_...
    int code;
    KeyGroup group;
    std::vector<Qt::Key> keyboard;
};

const std::vector<RemoteKey>& RemoteKeys();

// By name, in any case and with or without "VK_"; by the key on the keyboard; null when there is none.
const RemoteKey* FindKey(const QString& name);
const RemoteKey* FindKey(Qt::Key keyboard);

// The digit of a number key, else -1.
int DigitOf(const RemoteKey& key);

}  // namespace browser
