#include "browser/page/Environment.h"

#include <QDir>

#include "browser/Resource.h"

namespace browser {

namespace {

std::vector<EnvironmentScript> ReadScripts() {
    std::vector<EnvironmentScript> scripts;
    const QDir folder(QStringLiteral(":/environment"));
    for (const QString& name : folder.entryList({QStringLiteral("*.js")}, QDir::Files, QDir::Name)) {
        scripts.push_back({name, ReadResource(QStringLiteral("environment/") + name)});
    }
    return scripts;
}

}  // namespace

const std::vector<EnvironmentScript>& EnvironmentScripts() {
    static const std::vector<EnvironmentScript> s_scripts = ReadScripts();
    return s_scripts;
}

void InstallEnvironment(QWebFrame& frame, QObject& bridge) {
    const QString name = QLatin1String(kBridgeName);
    frame.addToJavaScriptWindowObject(name, &bridge);
    for (const EnvironmentScript& script : EnvironmentScripts()) {
        // Errors and the inspector show the script's own name; the lines keep their numbers.
        frame.evaluateJavaScript(script.text + QStringLiteral("\n//# sourceURL=environment/") + script.name);
    }
    frame.evaluateJavaScript(QStringLiteral("delete window.%1").arg(name));
}

}  // namespace browser
