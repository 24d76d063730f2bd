// The adapter plug-in: the one plug-in that Qt WebKit finds. It forwards everything to the real plug-in and makes the
// four calls in which Qt WebKit differs from a television's browser right on the way: NPP_New, NPP_Destroy,
// NPP_SetWindow and NPP_HandleEvent.
#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "browser/host/adapter/ElementPlace.h"
#include "browser/host/adapter/HeldFunctions.h"
#include "browser/host/adapter/Observation.h"
#include "browser/host/adapter/PluginLibrary.h"
#include "browser/host/adapter/RootObject.h"

namespace adapter {

namespace {

struct Instance {
    RootObject root;
    NPWindow window{};  // as Qt WebKit gave it; what it points to lives as long as the instance
    Place place;
};

std::map<NPP, Instance>& Instances() {
    static auto* s_instances = new std::map<NPP, Instance>;  // hosts end without unloading: never destroyed
    return *s_instances;
}

// Whose place is to be asked for.
std::set<NPP>& Unplaced() {
    static auto* s_unplaced = new std::set<NPP>;
    return *s_unplaced;
}

NPError New(NPMIMEType type, NPP npp, std::uint16_t mode, std::int16_t count, char* names[], char* values[],
            NPSavedData* saved) {
    Instances()[npp] = Instance{};
    const NPError error = PluginFunctions().newp(type, npp, mode, count, names, values, saved);
    if (error == NPERR_NO_ERROR) {
        Instances()[npp].root = RootObject(npp);
    } else {
        Instances().erase(npp);
    }
    return error;
}

NPError Destroy(NPP npp, NPSavedData** saved) {
    if (auto instance = Instances().extract(npp)) {
        instance.mapped().root.Invalidate();
    }
    Unplaced().erase(npp);
    const NPError error = PluginFunctions().destroy(npp, saved);
    DropLetGo();
    return error;
}

NPError GiveWindow(NPP npp, const Instance& instance) {
    NPWindow placed = instance.window;
    placed.x = instance.place.x;
    placed.y = instance.place.y;
    return PluginFunctions().setwindow(npp, &placed);
}

// Asking may bring a newer NPP_SetWindow for the same instance, or its end.
void PlaceAll(void*) {
    for (NPP npp : std::exchange(Unplaced(), {})) {
        const std::optional<Place> place = Instances().contains(npp) ? PlaceOnPage(npp) : std::nullopt;
        const auto instance = Instances().find(npp);
        if (place && instance != Instances().end() && *place != instance->second.place) {
            instance->second.place = *place;
            GiveWindow(npp, instance->second);
        }
    }
}

// Asking the document for the place lays it out, and Qt WebKit comes here in the midst of laying it out, where that
// ends in a crash. So the window is passed on with the last known place, and the place is asked for a turn later.
NPError SetWindow(NPP npp, NPWindow* window) {
    const auto instance = Instances().find(npp);
    if (window == nullptr || instance == Instances().end()) {
        return PluginFunctions().setwindow(npp, window);
    }
    instance->second.window = *window;
    if (Unplaced().insert(npp).second) {
        Browser().pluginthreadasynccall(npp, PlaceAll, nullptr);
    }
    return GiveWindow(npp, instance->second);
}

// In NPAPI 1 says that the event was handled. Qt WebKit reads it the other way round (and then swallows the keys that
// the plug-in left alone). Expose events keep Qt's right and bottom edge in width and height: painting more than asked
// is harmless, and the plug-in paints from 0, 0.
std::int16_t HandleEvent(NPP npp, void* event) {
    return PluginFunctions().event(npp, event) != 0 ? 0 : 1;
}

template <class Table>
void CopyTable(Table& to, const Table& from) {
    const std::uint16_t size = std::min<std::uint16_t>(from.size, sizeof(Table));
    std::memcpy(&to, &from, size);
    to.size = size;
}

void FillTable(NPPluginFuncs& table) {
    const std::uint16_t size = table.size;
    NPPluginFuncs ours = PluginFunctions();
    ours.newp = New;
    ours.destroy = Destroy;
    ours.setwindow = SetWindow;
    ours.event = HandleEvent;
    ours.size = size;
    std::memcpy(&table, &ours, std::min<std::size_t>(size, sizeof ours));
}

NPError Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
    if (Plugin() == nullptr || browser == nullptr || plugin == nullptr) {
        return NPERR_MODULE_LOAD_FAILED_ERROR;
    }
    CopyTable(Browser(), *browser);
    CopyTable(PluginFunctions(), *plugin);
    const NPError error = Plugin()->initialize(&Browser(), &PluginFunctions());
    if (error == NPERR_NO_ERROR) {
        FillTable(*plugin);
    }
    return error;
}

void InvalidateAllInstances() {
    std::vector<NPP> all;
    for (const auto& [npp, instance] : Instances()) {
        all.push_back(npp);
    }
    for (NPP npp : all) {
        if (const auto instance = Instances().find(npp); instance != Instances().end()) {
            instance->second.root.Invalidate();
        }
    }
}

}  // namespace

}  // namespace adapter

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
    return adapter::Initialize(browser, plugin);
}

EXPORTED NPError NP_Shutdown() {
    return adapter::Plugin() != nullptr ? adapter::Plugin()->shutdown() : NPERR_NO_ERROR;
}

EXPORTED NPError NP_GetValue(void* future, NPPVariable variable, void* value) {
    return adapter::Plugin() != nullptr ? adapter::Plugin()->getValue(future, variable, value) : NPERR_GENERIC_ERROR;
}

EXPORTED const char* NP_GetMIMEDescription() {
    return adapter::Plugin() != nullptr ? adapter::Plugin()->mimeDescription() : "";
}

EXPORTED void TvInvalidateAllInstances() {
    adapter::InvalidateAllInstances();
}

EXPORTED void TvObserveTraffic(adapter::TrafficObserver observer, void* context) {
    adapter::SetObserver(observer, context);
}
