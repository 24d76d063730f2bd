// The plug-in functions of NPAPI for a plug-in whose instances each own one script object of class T.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <typeinfo>

#include "debug/Log.h"
#include "javascript/JSNpapiObject.h"
#include "npapi/npfunctions.h"

// What is used of the browser's table: through `convertpoint`. Tables may be longer; nothing behind it is read.
constexpr std::size_t kBrowserTableSize = offsetof(NPNetscapeFuncs, handleevent);
constexpr std::size_t kPluginTableSize = sizeof(NPPluginFuncs);
constexpr std::uint16_t kPluginTableVersion = 24;

// T derives from JSNPObject, has a static PluginDescription() and is made by JSNpapiObject<T>. NPP::pdata holds the T
// of the instance, or null when it could not be made. All functions are called on the browser's main thread.
template <class T>
class CNPAPIPlugin {
public:
    CNPAPIPlugin() = delete;

    static NPError Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
    static void Shutdown() { LOG_ENTRY("CNPAPIPlugin<%s>::Shutdown()", Name()); }
    static NPError GetValue(NPP instance, NPPVariable variable, void* value);

    // The private copy of the browser's table, kept until the process ends; null before the first Initialize.
    static NPNetscapeFuncs* s_pNPNFuncs;

private:
    using Class = OipfJavaScript::JSNpapiObject<T>;

    static const char* Name() { return typeid(T).name(); }
    static T* ObjectOf(NPP instance) { return instance ? static_cast<T*>(instance->pdata) : nullptr; }
    static const char* UrlOf(const NPStream* stream) { return stream && stream->url ? stream->url : ""; }

    // Calls the instance's object, which lives until the end of the call; `absent` is the answer without one.
    template <class Result, class Operation>
    static Result WithObject(NPP instance, Result absent, Operation operation) noexcept {
        T* object = ObjectOf(instance);
        if (!object) return absent;
        try {
            OipfJavaScript::CSelfHold hold(*object);
            return operation(*object);
        } catch (...) {
            return absent;
        }
    }

    static bool TablesFit(const NPNetscapeFuncs& browser, const NPPluginFuncs& plugin);
    static void FillTable(NPPluginFuncs& plugin);
    static NPError GetScriptableObject(NPP instance, void* value);

    static NPError CreateInstance(NPMIMEType type, NPP instance, std::uint16_t mode, std::int16_t argc, char* argn[],
                                  char* argv[], NPSavedData* saved);
    static NPError DestroyInstance(NPP instance, NPSavedData** save);
    static NPError SetWindow(NPP instance, NPWindow* window);
    static std::int16_t HandleEvent(NPP instance, void* event);
    static NPError NewStream(NPP instance, NPMIMEType type, NPStream* stream, NPBool seekable, std::uint16_t* stype);
    static NPError DestroyStream(NPP instance, NPStream* stream, NPReason reason);
    static std::int32_t WriteReady(NPP instance, NPStream* stream);
    static std::int32_t Write(NPP instance, NPStream* stream, std::int32_t offset, std::int32_t len, void* buffer);
    static NPError SetValue(NPP instance, NPNVariable variable, void* value);
};

template <class T>
NPNetscapeFuncs* CNPAPIPlugin<T>::s_pNPNFuncs = nullptr;

template <class T>
bool CNPAPIPlugin<T>::TablesFit(const NPNetscapeFuncs& browser, const NPPluginFuncs& plugin) {
    return browser.size >= kBrowserTableSize && plugin.size >= kPluginTableSize;
}

template <class T>
NPError CNPAPIPlugin<T>::Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
    LOG_ENTRY("CNPAPIPlugin<%s>::Initialize(d)", Name());
    if (!browser || !plugin) {
        LOG_ERROR("NPERR_INVALID_FUNCTABLE_ERROR (NULL pointers)");
        return NPERR_INVALID_FUNCTABLE_ERROR;
    }
    if (!TablesFit(*browser, *plugin)) {
        LOG_ERROR("NPERR_INVALID_FUNCTABLE_ERROR (sizes)");
        return NPERR_INVALID_FUNCTABLE_ERROR;
    }
    if (browser->version >> 8 != 0) {
        LOG_ERROR("NPERR_INCOMPATIBLE_VERSION_ERROR");
        return NPERR_INCOMPATIBLE_VERSION_ERROR;
    }
    if (!s_pNPNFuncs) s_pNPNFuncs = static_cast<NPNetscapeFuncs*>(std::malloc(kBrowserTableSize));
    if (!s_pNPNFuncs) {
        LOG_ERROR("Out of memory!");
        return NPERR_OUT_OF_MEMORY_ERROR;
    }
    std::memcpy(static_cast<void*>(s_pNPNFuncs), browser, kBrowserTableSize);
    FillTable(*plugin);
    return NPERR_NO_ERROR;
}

template <class T>
void CNPAPIPlugin<T>::FillTable(NPPluginFuncs& plugin) {
    plugin.size = kPluginTableSize;
    plugin.version = kPluginTableVersion;
    plugin.newp = CreateInstance;
    plugin.destroy = DestroyInstance;
    plugin.setwindow = SetWindow;
    plugin.newstream = NewStream;
    plugin.destroystream = DestroyStream;
    plugin.asfile = nullptr;
    plugin.writeready = WriteReady;
    plugin.write = Write;
    plugin.print = nullptr;
    plugin.event = HandleEvent;
    plugin.urlnotify = nullptr;
    plugin.javaClass = nullptr;
    plugin.getvalue = GetValue;
    plugin.setvalue = SetValue;
}

// An object that cannot be made is no error: the instance then lives without one.
template <class T>
NPError CNPAPIPlugin<T>::CreateInstance(NPMIMEType type, NPP instance, std::uint16_t, std::int16_t argc, char* argn[],
                                        char* argv[], NPSavedData*) {
    if (!instance) return NPERR_INVALID_INSTANCE_ERROR;
    LOG_ENTRY("CNPAPIPlugin<%s>::CreateInstance()", Name());
    if (!Class::s_pNPNFuncs) Class::s_pNPNFuncs = s_pNPNFuncs;
    instance->pdata = nullptr;  // the object's constructor may run script that calls back in here
    NPObject* created = s_pNPNFuncs ? s_pNPNFuncs->createobject(instance, &Class::s_npclass) : nullptr;
    if (!created) return NPERR_NO_ERROR;
    instance->pdata = static_cast<T*>(created);
    return WithObject(instance, NPERR_NO_ERROR, [=](T& object) {
        object.SetMimeType(type);
        object.SetAttributes(argc, argn, argv);
        return NPERR_NO_ERROR;
    });
}

template <class T>
NPError CNPAPIPlugin<T>::DestroyInstance(NPP instance, NPSavedData**) {
    LOG_ENTRY("CNPAPIPlugin<%s>::DestroyInstance()", Name());
    T* object = ObjectOf(instance);
    if (!object) return NPERR_NO_DATA;
    instance->pdata = nullptr;
    s_pNPNFuncs->releaseobject(object);
    return NPERR_NO_ERROR;
}

template <class T>
NPError CNPAPIPlugin<T>::SetWindow(NPP instance, NPWindow* window) {
    return WithObject(instance, NPERR_NO_ERROR, [=](T& object) {
        object.SetWindow(window);
        return NPERR_NO_ERROR;
    });
}

template <class T>
std::int16_t CNPAPIPlugin<T>::HandleEvent(NPP instance, void* event) {
    return WithObject<std::int16_t>(instance, 0, [=](T& object) { return object.HandleEvent(event); });
}

// Without an object the stream functions answer 2, also where the browser reads that as a byte count.
template <class T>
NPError CNPAPIPlugin<T>::NewStream(NPP instance, NPMIMEType, NPStream* stream, NPBool, std::uint16_t*) {
    LOG_ENTRY("CNPAPIPlugin<%s>::NewStream(%s)", Name(), UrlOf(stream));
    return WithObject(instance, NPERR_INVALID_INSTANCE_ERROR, [=](T& object) { return object.NewStream(stream); });
}

template <class T>
NPError CNPAPIPlugin<T>::DestroyStream(NPP instance, NPStream* stream, NPReason reason) {
    LOG_ENTRY("CNPAPIPlugin<%s>::DestroyStream(%s)", Name(), UrlOf(stream));
    return WithObject(instance, NPERR_INVALID_INSTANCE_ERROR,
                      [=](T& object) { return object.DestroyStream(stream, reason); });
}

template <class T>
std::int32_t CNPAPIPlugin<T>::WriteReady(NPP instance, NPStream* stream) {
    LOG_ENTRY("CNPAPIPlugin<%s>::WriteReady(%s)", Name(), UrlOf(stream));
    return WithObject<std::int32_t>(instance, NPERR_INVALID_INSTANCE_ERROR,
                                    [=](T& object) { return object.WriteReady(stream); });
}

template <class T>
std::int32_t CNPAPIPlugin<T>::Write(NPP instance, NPStream* stream, std::int32_t offset, std::int32_t len,
                                    void* buffer) {
    LOG_ENTRY("CNPAPIPlugin<%s>::Write(%s, offset %d, length %d)", Name(), UrlOf(stream), offset, len);
    return WithObject<std::int32_t>(instance, NPERR_INVALID_INSTANCE_ERROR,
                                    [=](T& object) { return object.Write(stream, offset, len, buffer); });
}

template <class T>
NPError CNPAPIPlugin<T>::SetValue(NPP, NPNVariable, void*) {
    LOG_ENTRY("CNPAPIPlugin<%s>::SetValue()", Name());
    return NPERR_NO_ERROR;
}

template <class T>
NPError CNPAPIPlugin<T>::GetValue(NPP instance, NPPVariable variable, void* value) {
    switch (static_cast<std::uint32_t>(variable)) {
        case NPPVpluginNameString:
            if (!value) return NPERR_GENERIC_ERROR;
            *static_cast<const char**>(value) = "OIPF video/broadcast plugin";
            return NPERR_NO_ERROR;
        case NPPVpluginDescriptionString:
            if (!value) return NPERR_GENERIC_ERROR;
            *static_cast<const char**>(value) = T::PluginDescription();
            return NPERR_NO_ERROR;
        case NPPVpluginNeedsXEmbed:
            if (!value) return NPERR_GENERIC_ERROR;
            *static_cast<NPBool*>(value) = false;
            return NPERR_NO_ERROR;
        case NPPVpluginScriptableNPObject:
            return GetScriptableObject(instance, value);
        case NPPVpluginWindowBool:
        case NPPVpluginTransparentBool:
        case NPPVjavaClass:
        case NPPVpluginWindowSize:
        case NPPVpluginTimerInterval:
        case NPPVpluginScriptableIID:
        case NPPVjavascriptPushCallerBool:
        case NPPVpluginKeepLibraryInMemory:
        case NPPVformValue:
        case NPPVpluginUrlRequestsDisplayedBool:
        case NPPVpluginWantsAllNetworkStreams:
        case NPPVpluginCancelSrcStream:
        case NPPVpluginScriptableInstance:
            return NPERR_GENERIC_ERROR;
    }
    LOG_WARNING("%d", static_cast<int>(variable));
    return NPERR_GENERIC_ERROR;
}

template <class T>
NPError CNPAPIPlugin<T>::GetScriptableObject(NPP instance, void* value) {
    if (!instance) {
        LOG_ERROR("NULL instance!");
        return NPERR_GENERIC_ERROR;
    }
    T* object = ObjectOf(instance);
    if (!object) {
        LOG_ERROR("NULL instance->pdata!");
        return NPERR_GENERIC_ERROR;
    }
    if (!value) return NPERR_GENERIC_ERROR;
    s_pNPNFuncs->retainobject(object);
    *static_cast<NPObject**>(value) = object;
    return NPERR_NO_ERROR;
}
