#include "browser/host/FunctionTable.h"

#include "browser/Resource.h"
#include "browser/host/adapter/Contract.h"

namespace browser {

void InstallFunctionTable(QWebFrame& frame) {
    static const QString s_script = ReadResource(QStringLiteral("host/held-functions.js"));
    frame.evaluateJavaScript(QStringLiteral("%1(this, \"%2\")").arg(s_script, QLatin1String(adapter::kFunctionTable)));
}

}  // namespace browser
