// What the TV browser and its adapter plug-in agree on.
#pragma once

#include <cstdint>

#include "npapi/npruntime.h"

namespace adapter {

// The environment variable with the file name of the real plug-in.
inline constexpr char kPluginVariable[] = "TV_BROWSER_PLUGIN";

// Exported by the adapter: invalidates the script objects of all instances, for a page that is going away. Qt WebKit
// may destroy the instances themselves a turn of the event loop later.
inline constexpr char kInvalidateAllSymbol[] = "TvInvalidateAllInstances";
using InvalidateAll = void (*)();

// What passes between a page and its objects, told to an observer. Values without a name are positional arguments; the
// record and all in it live for the call only.
struct TrafficValue {
    const char* name;
    NPVariant value;
};
struct Traffic {
    const char* kind;  // "call" (a method of the object), "handler" or "listener" (a function of the page)
    const char* name;  // of the method, of the handler's property, or of the event
    const TrafficValue* values;
    std::uint32_t count;
};
using TrafficObserver = void (*)(void* context, const Traffic& traffic);

// Exported by the adapter: sets the one observer; null: none.
inline constexpr char kObserveSymbol[] = "TvObserveTraffic";
using Observe = void (*)(TrafficObserver observer, void* context);

// The function in each window that keeps the page's functions for the adapter, and what it can be told to do.
inline constexpr char kFunctionTable[] = "__tvFunctions";
enum FunctionTableOperation { kKeepFunction = 0, kGetFunction = 1, kDropFunction = 2, kCallFunction = 3 };

}  // namespace adapter
