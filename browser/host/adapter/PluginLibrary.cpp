#include "browser/host/adapter/PluginLibrary.h"

#include <dlfcn.h>

#include <cstdlib>

#include "browser/host/adapter/Contract.h"

namespace adapter {

namespace {

template <class Function>
void Find(void* library, const char* symbol, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, symbol));
}

const EntryPoints* Load() {
    const char* file = std::getenv(kPluginVariable);
    void* library = file != nullptr ? dlopen(file, RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (library == nullptr) {
        return nullptr;
    }
    static EntryPoints entryPoints;
    Find(library, "NP_Initialize", entryPoints.initialize);
    Find(library, "NP_Shutdown", entryPoints.shutdown);
    Find(library, "NP_GetValue", entryPoints.getValue);
    Find(library, "NP_GetMIMEDescription", entryPoints.mimeDescription);
    const bool complete = entryPoints.initialize && entryPoints.shutdown && entryPoints.getValue &&
                          entryPoints.mimeDescription;
    return complete ? &entryPoints : nullptr;
}

}  // namespace

const EntryPoints* Plugin() {
    static const EntryPoints* const s_plugin = Load();
    return s_plugin;
}

NPNetscapeFuncs& Browser() {
    static NPNetscapeFuncs s_browser{};
    return s_browser;
}

NPPluginFuncs& PluginFunctions() {
    static NPPluginFuncs s_functions{};
    return s_functions;
}

}  // namespace adapter
