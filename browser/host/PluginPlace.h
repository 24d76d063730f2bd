// Puts the adapter plug-in, and behind it the real one, where Qt WebKit finds them.
#pragma once

#include <QString>
#include <optional>

namespace browser {

// Before Qt WebKit looks for plug-ins. `plugin` is the real plug-in's file, empty for the one of this build. One
// sentence when it cannot be loaded.
std::optional<QString> OfferPlugin(const QString& plugin);

// Invalidates the script objects of all plug-in instances: the page is going away.
void InvalidatePluginObjects();

}  // namespace browser
