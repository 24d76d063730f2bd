#include "browser/remote/RemotePath.h"

#include <unistd.h>

namespace browser {

QString UsualRemotePath() {
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? QStringLiteral("/tmp/tv-browser-%1.remote").arg(getuid())
                            : folder + QStringLiteral("/tv-browser.remote");
}

}  // namespace browser
