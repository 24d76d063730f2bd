// Where the remote control's socket is.
#pragma once

#include <QString>

namespace browser {

// Unless --remote says otherwise.
QString UsualRemotePath();

}  // namespace browser
