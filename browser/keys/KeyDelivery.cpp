#include "browser/keys/KeyDelivery.h"

#include "browser/Resource.h"

namespace browser {

namespace {

const char* EventTypes(KeyAction action) {
    switch (action) {
    case KeyAction::Press:
        return "['keydown','keypress']";
    case KeyAction::Release:
        return "['keyup']";
    case KeyAction::Stroke:
        return "['keydown','keypress','keyup']";
    }
    return "[]";
}

}  // namespace

void DeliverKey(Page& page, const RemoteKey& key, KeyAction action) {
    static const QString s_script = ReadResource(QStringLiteral("keys/deliver-key.js"));
    page.Evaluate(QStringLiteral("%1(%2, %3)")
                      .arg(s_script, QString::number(key.code), QLatin1String(EventTypes(action))));
}

}  // namespace browser
