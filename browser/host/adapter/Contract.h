// What the TV browser and its adapter plug-in agree on.
#pragma once

namespace adapter {

// The environment variable with the file name of the real plug-in.
inline constexpr char kPluginVariable[] = "TV_BROWSER_PLUGIN";

// Exported by the adapter: invalidates the script objects of all instances, for a page that is going away. Qt WebKit
// may destroy the instances themselves a turn of the event loop later.
inline constexpr char kInvalidateAllSymbol[] = "TvInvalidateAllInstances";
using InvalidateAll = void (*)();

// The function in each window that keeps the page's functions for the adapter, and what it can be told to do.
inline constexpr char kFunctionTable[] = "__tvFunctions";
enum FunctionTableOperation { kKeepFunction = 0, kGetFunction = 1, kDropFunction = 2, kCallFunction = 3 };

}  // namespace adapter
