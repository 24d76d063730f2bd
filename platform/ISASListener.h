// Messages of the platform's conditional-access module.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/visibility.h"

// One item of a message. The record crosses libraries with its vector: both sides must use the same C++ library.
struct SASMessageItem {
    std::int32_t tag;
    std::vector<unsigned char> data;
};

// On 32 bits the fields lie at 0, 4, 8 and 12, and an item is 16 bytes long.
struct SASMessage {
    std::uint32_t type;
    std::uint16_t caSystemId;  // ETSI TS 101 162
    std::uint32_t reserved;    // the platform's own, not read by the listener
    std::vector<SASMessageItem> items;
};

// Implemented by the plug-in, called by the platform on any thread of its own. Nobody registers it: the platform
// reaches it by dynamic_cast from the IBroadcastPlayerListener that its player was given.
class TVPLATFORM_API ISASListener {
public:
    virtual ~ISASListener();

    // `message` is made with `new` by the platform; the listener takes it and deletes it.
    virtual void OnSASMessageReceived(SASMessage* message);
    // A session with the module was opened or closed. Optional for both sides.
    virtual void OnSASSession(bool opened);
};
