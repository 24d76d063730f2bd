// The four functions that the plug-in library exports (NPAPI on Unix).
#include "plugin/CNPAPIPlugin.h"
#include "videobroadcast/COipfVideoBroadcast.h"

#define NP_EXPORT extern "C" __attribute__((visibility("default")))

using OipfVideoBroadcast::COipfVideoBroadcast;
using Plugin = CNPAPIPlugin<COipfVideoBroadcast>;

// Called once before the first instance, and again after NP_Shutdown by hosts that unload plug-ins in name only.
NP_EXPORT NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
    LOG_ENTRY("NP_Initialize()");
    return Plugin::Initialize(browser, plugin);
}

NP_EXPORT NPError NP_GetValue(void*, NPPVariable variable, void* value) {
    LOG_ENTRY("NP_GetValue()");
    return Plugin::GetValue(nullptr, variable, value);
}

// May be called before NP_Initialize.
NP_EXPORT const char* NP_GetMIMEDescription() {
    const char* description = COipfVideoBroadcast::PluginDescription();
    LOG_ENTRY("%s():%s", "NP_GetMIMEDescription", description);
    return description;
}

NP_EXPORT NPError NP_Shutdown() {
    LOG_ENTRY("NP_Shutdown()");
    Plugin::Shutdown();
    return NPERR_NO_ERROR;
}
