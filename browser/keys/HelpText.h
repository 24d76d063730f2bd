// The keys, told to people.
#pragma once

#include <QString>

namespace browser {

// The names of the remote's keys, for one line.
QString KeyNames();

// What the keyboard does, one line a key.
QString KeyboardHelp();

}  // namespace browser
