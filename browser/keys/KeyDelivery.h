// Brings keys to the page.
#pragma once

#include <QStringList>

#include "browser/keys/KeyTable.h"
#include "browser/page/Page.h"

namespace browser {

enum class KeyAction { Press, Release, Stroke };  // a stroke is both

// The page's focused element hears keydown, keypress and keyup with the key's code.
void DeliverKey(Page& page, const RemoteKey& key, KeyAction action);

}  // namespace browser
