// The least browser in which the plug-in and the floor run: what it does itself is as little as can be, so that what is
// measured is theirs.
#pragma once

#include <cstddef>
#include <string>

#include "npapi/npfunctions.h"

namespace benchmarks {

class BareBrowser {
public:
    // The table for NP_Initialize.
    static NPNetscapeFuncs& Functions();
    static NPIdentifier Name(const std::string& name);

    // A new script function with one reference, the caller's. It does nothing.
    static NPObject* NewFunction();
    // Runs the calls that were asked for by NPN_PluginThreadAsyncCall, or forgets them.
    static void RunAsyncCalls();
    static void DropAsyncCalls();
};

// An instance of the plug-in or of the floor.
class Instance {
public:
    Instance(const NPPluginFuncs& plugin, const std::string& type);
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;
    ~Instance();

    NPObject* Object() const { return m_object; }
    void* Data() const { return m_npp.pdata; }

    // Script's use of the object, straight through its class.
    void Get(NPIdentifier name) const;
    void Set(NPIdentifier name, const NPVariant& value) const;
    void Call(NPIdentifier name, const NPVariant* args, std::uint32_t count) const;

private:
    const NPPluginFuncs& m_plugin;
    _NPP m_npp{};
    NPObject* m_object = nullptr;
};

NPVariant MakeVariant(NPVariantType type);
NPVariant MakeBool(bool value);
NPVariant MakeInt(int value);
NPVariant MakeObject(NPObject* object);
// The text must stay where it is.
NPVariant MakeString(const std::string& text);

}  // namespace benchmarks
