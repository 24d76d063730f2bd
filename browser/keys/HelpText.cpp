#include "browser/keys/HelpText.h"

#include <QStringList>

#include "browser/keys/KeyTable.h"
#include "browser/keys/StimulusKeys.h"

namespace browser {

QString KeyNames() {
    QStringList names;
    for (const RemoteKey& key : RemoteKeys()) {
        names += QLatin1String(key.name);
    }
    return names.join(QStringLiteral(", "));
}

QString KeyboardHelp() {
    QString text = QStringLiteral(
        "Arrows, Enter\tmove, OK\n"
        "Escape, Backspace\tback\n"
        "F5 F6 F7 F8  or  R G Y B\tred, green, yellow, blue\n"
        "0 to 9\tdigits (a channel number, unless the page wants them)\n"
        "Page up, page down\tnext, previous channel\n"
        "Plus, minus, X\tlouder, softer, mute\n"
        "P, Space, S, comma, full stop\tplay, pause, stop, rewind, fast forward\n"
        "I, E, T, U, M\tinfo, guide, teletext, subtitles, menu\n"
        "F1\tthis help\n"
        "F11\tfull screen\n"
        "F12\tweb inspector\n"
        "Ctrl+R, Ctrl+Q\treload the page, quit");
    for (const StimulusKey& key : StimulusKeys()) {
        text += QStringLiteral("\n%1\t%2").arg(QLatin1String(key.keyName), QLatin1String(key.help));
    }
    return text;
}

}  // namespace browser
