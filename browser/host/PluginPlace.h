// Puts the adapter plug-in, and behind it the real one, where Qt WebKit finds them.
#pragma once

#include <QJsonObject>
#include <QString>
#include <functional>
#include <optional>

namespace browser {

// Before Qt WebKit looks for plug-ins. `plugin` is the real plug-in's file, empty for the one of this build. One
// sentence when it cannot be loaded.
std::optional<QString> OfferPlugin(const QString& plugin);

// Invalidates the script objects of all plug-in instances: the page is going away.
void InvalidatePluginObjects();

// From then on `observer` is told, on the main thread, of each method that a page calls on its objects ("call") and of
// each function of the page that an object calls ("handler", "listener"): the name, and the arguments or the members of
// the event.
using TrafficObserver = std::function<void(const QString& kind, const QJsonObject& details)>;
void ObservePlugin(TrafficObserver observer);

}  // namespace browser
