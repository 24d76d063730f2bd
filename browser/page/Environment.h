// The page environment: the scripts that give a page the classes and objects of interactive TV.
#pragma once

#include <QObject>
#include <QString>
#include <QWebFrame>
#include <vector>

namespace browser {

struct EnvironmentScript {
    QString name;
    QString text;
};

// The scripts that are built into the program, in the order of their names.
const std::vector<EnvironmentScript>& EnvironmentScripts();

// Runs the scripts in a frame whose window is new, before the page's own. They find `bridge` in one global, kBridgeName,
// which is gone when the page's scripts run.
void InstallEnvironment(QWebFrame& frame, QObject& bridge);

inline constexpr char kBridgeName[] = "__tv";

}  // namespace browser
