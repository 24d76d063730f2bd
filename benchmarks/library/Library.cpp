// The library that the TV browser loads for the benchmark: the plug-in itself, and beside it the floor
// (application/x-floor) and the control (application/x-benchmark). The browser's calls go to the one or the other by
// the type of the instance.
#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "benchmarks/library/Control.h"
#include "benchmarks/library/Floor.h"
#include "benchmarks/library/Instances.h"

namespace benchmarks {

NPNetscapeFuncs& Browser() {
    static NPNetscapeFuncs s_browser{};
    return s_browser;
}

namespace {

// The plug-in of this build lies beside this library's folder.
std::string PluginFile() {
    Dl_info here{};
    dladdr(reinterpret_cast<void*>(&Browser), &here);
    const std::string file = here.dli_fname;
    return file.substr(0, file.rfind('/')) + "/../plugin/npvideobroadcast.so";
}

template <class Function>
Function Find(const char* symbol) {
    static void* const s_library = dlopen(PluginFile().c_str(), RTLD_NOW | RTLD_LOCAL);
    return s_library ? reinterpret_cast<Function>(dlsym(s_library, symbol)) : nullptr;
}

NPPluginFuncs& Plugin() {
    static NPPluginFuncs s_functions{};
    return s_functions;
}

const NPPluginFuncs& FunctionsOfType(const std::string& type) {
    static const NPPluginFuncs s_floor = Instances<Floor>::Functions();
    static const NPPluginFuncs s_control = Instances<Control>::Functions();
    return type == "application/x-floor" ? s_floor : type == "application/x-benchmark" ? s_control : Plugin();
}

std::map<NPP, const NPPluginFuncs*>& Living() {
    static auto* s_living = new std::map<NPP, const NPPluginFuncs*>;
    return *s_living;
}

const NPPluginFuncs& FunctionsOf(NPP npp) { return *Living().at(npp); }

// The first of the page are the ones that are notified.
void Remember(NPP npp, const std::string& type) {
    if (type == "application/x-floor" && !Control::s_floor) Control::s_floor = npp;
    if (type == "video/broadcast" && !Control::s_object) Control::s_object = npp;
}

NPError New(NPMIMEType type, NPP npp, std::uint16_t mode, std::int16_t argc, char* argn[], char* argv[],
            NPSavedData* saved) {
    Living()[npp] = &FunctionsOfType(type);
    Remember(npp, type);
    return FunctionsOf(npp).newp(type, npp, mode, argc, argn, argv, saved);
}

NPError Destroy(NPP npp, NPSavedData** saved) { return Living().extract(npp).mapped()->destroy(npp, saved); }

void FillTable(NPPluginFuncs& table) {
    table = Plugin();
    table.newp = New;
    table.destroy = Destroy;
    table.setwindow = [](NPP npp, NPWindow* window) { return FunctionsOf(npp).setwindow(npp, window); };
    table.event = [](NPP npp, void* event) { return FunctionsOf(npp).event(npp, event); };
    table.getvalue = [](NPP npp, NPPVariable variable, void* value) {
        return FunctionsOf(npp).getvalue(npp, variable, value);
    };
}

}  // namespace

}  // namespace benchmarks

#define EXPORTED extern "C" __attribute__((visibility("default")))

using namespace benchmarks;

EXPORTED NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
    const auto initialize = Find<NP_InitializeFunc>("NP_Initialize");
    if (!initialize) return NPERR_MODULE_LOAD_FAILED_ERROR;
    Browser() = *browser;
    Plugin().size = sizeof(NPPluginFuncs);
    const NPError error = initialize(browser, &Plugin());
    if (error == NPERR_NO_ERROR) FillTable(*plugin);
    return error;
}

EXPORTED NPError NP_Shutdown() { return NPERR_NO_ERROR; }

EXPORTED NPError NP_GetValue(void* future, NPPVariable variable, void* value) {
    const auto getValue = Find<NP_GetValueFunc>("NP_GetValue");
    return getValue ? getValue(future, variable, value) : NPERR_GENERIC_ERROR;
}

EXPORTED const char* NP_GetMIMEDescription() {
    return "video/broadcast::video/broadcast;application/x-floor::floor;application/x-benchmark::control";
}
