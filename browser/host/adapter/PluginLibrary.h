// The real plug-in behind the adapter: its entry points and its function table.
#pragma once

#include "npapi/npfunctions.h"

namespace adapter {

struct EntryPoints {
    NP_InitializeFunc initialize = nullptr;
    NP_ShutdownFunc shutdown = nullptr;
    NP_GetValueFunc getValue = nullptr;
    NP_GetMIMEDescriptionFunc mimeDescription = nullptr;
};

// The entry points of the library that the environment variable kPluginVariable names, loaded at the first call; null
// when it cannot be loaded.
const EntryPoints* Plugin();

// The browser's functions as the real plug-in got them, and the real plug-in's own.
NPNetscapeFuncs& Browser();
NPPluginFuncs& PluginFunctions();

}  // namespace adapter
