// The NPN_ functions of the fake browser.
#pragma once

#include <string>

#include "tests/support/Npapi.h"

namespace support {

class FakeBrowser;

class BrowserFunctions {
public:
    static NPNetscapeFuncs Table();
    static NPClass* HandleClass();  // the class of the page's objects

    // The current browser, after counting a use; null when there is none, the thread is wrong or the use must fail.
    static FakeBrowser* Enter(const char* function);
    // The same for a function that is given an instance: another pointer fails the test.
    static FakeBrowser* Enter(const char* function, NPP npp);

private:
    friend class FakeBrowser;

    static void FillRefusing(NPNetscapeFuncs& table);
    static void FillMemoryAndNames(NPNetscapeFuncs& table);
    static void FillObjects(NPNetscapeFuncs& table);
    static void FillInstance(NPNetscapeFuncs& table);

    static void* MemAlloc(std::uint32_t size);
    static void MemFree(void* block);
    static NPIdentifier GetStringIdentifier(const NPUTF8* name);
    static void GetStringIdentifiers(const NPUTF8** names, std::int32_t count, NPIdentifier* identifiers);
    static NPIdentifier GetIntIdentifier(std::int32_t number);
    static bool IdentifierIsString(NPIdentifier identifier);
    static NPUTF8* UTF8FromIdentifier(NPIdentifier identifier);
    static std::int32_t IntFromIdentifier(NPIdentifier identifier);

    static NPObject* CreateObject(NPP npp, NPClass* objectClass);
    static NPObject* RetainObject(NPObject* object);
    static void ReleaseObject(NPObject* object);
    static void ReleaseVariantValue(NPVariant* variant);
    static bool Invoke(NPP npp, NPObject* object, NPIdentifier method, const NPVariant* args, std::uint32_t count,
                       NPVariant* result);
    static bool InvokeDefault(NPP npp, NPObject* object, const NPVariant* args, std::uint32_t count, NPVariant* result);
    static bool Evaluate(NPP npp, NPObject* object, NPString* script, NPVariant* result);
    static bool GetProperty(NPP npp, NPObject* object, NPIdentifier name, NPVariant* result);
    static bool SetProperty(NPP npp, NPObject* object, NPIdentifier name, const NPVariant* value);
    static bool RemoveProperty(NPP npp, NPObject* object, NPIdentifier name);
    static bool HasProperty(NPP npp, NPObject* object, NPIdentifier name);
    static bool HasMethod(NPP npp, NPObject* object, NPIdentifier name);
    static bool Enumerate(NPP npp, NPObject* object, NPIdentifier** identifiers, std::uint32_t* count);

    static void SetException(NPObject* object, const NPUTF8* message);
    static NPError GetValue(NPP npp, NPNVariable variable, void* value);
    static NPError SetValue(NPP npp, NPPVariable variable, void* value);
    static void ForceRedraw(NPP npp);
    static void PluginThreadAsyncCall(NPP npp, void (*function)(void*), void* data);
};

// Identifiers are for ever, as in browsers: the plug-in may keep them across tests.
NPIdentifier IdentifierOf(const std::string& name);
std::string NameOfIdentifier(NPIdentifier identifier);

}  // namespace support
