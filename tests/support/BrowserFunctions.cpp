// The NPN_ functions of the fake browser: memory, names, the instance, and the table that holds all.
#include "tests/support/BrowserFunctions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <thread>

#include "tests/support/CallList.h"
#include "tests/support/FakeBrowser.h"

namespace support {
namespace {

struct Identifier {
    bool isString;
    std::string name;
    std::int32_t number;
};

NPIdentifier Intern(const Identifier& identifier) {
    using Key = std::pair<std::string, std::int32_t>;
    static auto& identifiers = *new std::map<Key, Identifier>;
    return &identifiers.emplace(Key{identifier.name, identifier.number}, identifier).first->second;
}

const Identifier& Of(NPIdentifier identifier) { return *static_cast<const Identifier*>(identifier); }

template <class R>
R Refusal() {
    if constexpr (std::is_same_v<R, NPError>) {
        return NPERR_GENERIC_ERROR;
    } else if constexpr (!std::is_void_v<R>) {
        return R{};
    }
}

template <class R, class... A>
R Refuse(A...) {
    return Refusal<R>();
}

template <class R, class... A>
void Fill(R (*&member)(A...)) {
    member = &Refuse<R, A...>;
}

}  // namespace

NPIdentifier IdentifierOf(const std::string& name) { return Intern({true, name, -1}); }

std::string NameOfIdentifier(NPIdentifier identifier) { return identifier != nullptr ? Of(identifier).name : ""; }

FakeBrowser* BrowserFunctions::Enter(const char* function) {
    FakeBrowser* browser = FakeBrowser::Current();
    if (browser == nullptr) {
        ADD_FAILURE() << "NPN function \"" << function << "\" was called although there is no browser.";
        return nullptr;
    }
    if (std::this_thread::get_id() != browser->m_mainThread) {
        ADD_FAILURE() << "NPN function \"" << function << "\" was called on a thread that is not the main thread.";
        return nullptr;
    }
    return browser->m_faults.Use(function) ? nullptr : browser;
}

FakeBrowser* BrowserFunctions::Enter(const char* function, NPP npp) {
    FakeBrowser* browser = Enter(function);
    if (browser != nullptr && !browser->IsInstance(npp)) {
        ADD_FAILURE() << "NPN function \"" << function << "\" was not given an instance of the plug-in.";
        return nullptr;
    }
    return browser;
}

void BrowserFunctions::FillRefusing(NPNetscapeFuncs& table) {
    Fill(table.geturl), Fill(table.posturl), Fill(table.requestread), Fill(table.newstream), Fill(table.write);
    Fill(table.destroystream), Fill(table.status), Fill(table.uagent), Fill(table.memflush);
    Fill(table.reloadplugins), Fill(table.getJavaEnv), Fill(table.getJavaPeer), Fill(table.geturlnotify);
    Fill(table.posturlnotify), Fill(table.invalidaterect), Fill(table.invalidateregion);
    Fill(table.pushpopupsenabledstate), Fill(table.poppopupsenabledstate), Fill(table.construct);
    Fill(table.getvalueforurl), Fill(table.setvalueforurl), Fill(table.getauthenticationinfo);
    Fill(table.scheduletimer), Fill(table.unscheduletimer), Fill(table.popupcontextmenu), Fill(table.convertpoint);
    Fill(table.handleevent), Fill(table.unfocusinstance), Fill(table.urlredirectresponse);
}

void BrowserFunctions::FillMemoryAndNames(NPNetscapeFuncs& table) {
    table.memalloc = MemAlloc;
    table.memfree = MemFree;
    table.getstringidentifier = GetStringIdentifier;
    table.getstringidentifiers = GetStringIdentifiers;
    table.getintidentifier = GetIntIdentifier;
    table.identifierisstring = IdentifierIsString;
    table.utf8fromidentifier = UTF8FromIdentifier;
    table.intfromidentifier = IntFromIdentifier;
}

void BrowserFunctions::FillObjects(NPNetscapeFuncs& table) {
    table.createobject = CreateObject;
    table.retainobject = RetainObject;
    table.releaseobject = ReleaseObject;
    table.releasevariantvalue = ReleaseVariantValue;
    table.invoke = Invoke;
    table.invokeDefault = InvokeDefault;
    table.evaluate = Evaluate;
    table.getproperty = GetProperty;
    table.setproperty = SetProperty;
    table.removeproperty = RemoveProperty;
    table.hasproperty = HasProperty;
    table.hasmethod = HasMethod;
    table.enumerate = Enumerate;
}

void BrowserFunctions::FillInstance(NPNetscapeFuncs& table) {
    table.setexception = SetException;
    table.getvalue = GetValue;
    table.setvalue = SetValue;
    table.forceredraw = ForceRedraw;
    table.pluginthreadasynccall = PluginThreadAsyncCall;
}

NPNetscapeFuncs BrowserFunctions::Table() {
    NPNetscapeFuncs table{};
    table.size = FakeBrowser::kThroughConvertPoint;
    table.version = 26;
    FillRefusing(table);
    FillMemoryAndNames(table);
    FillObjects(table);
    FillInstance(table);
    return table;
}

void* BrowserFunctions::MemAlloc(std::uint32_t size) {
    FakeBrowser* browser = Enter("memalloc");
    return browser != nullptr ? browser->m_ledger.Allocate(size) : nullptr;
}

void BrowserFunctions::MemFree(void* block) {
    FakeBrowser* browser = Enter("memfree");
    if (browser != nullptr && block != nullptr) {
        browser->m_ledger.Free("NPN_MemFree", block);
    }
}

NPIdentifier BrowserFunctions::GetStringIdentifier(const NPUTF8* name) {
    return Enter("getstringidentifier") != nullptr && name != nullptr ? IdentifierOf(name) : nullptr;
}

void BrowserFunctions::GetStringIdentifiers(const NPUTF8** names, std::int32_t count, NPIdentifier* identifiers) {
    const bool given = Enter("getstringidentifiers") != nullptr;
    for (std::int32_t i = 0; i < count; ++i) {
        identifiers[i] = given ? IdentifierOf(names[i]) : nullptr;
    }
}

NPIdentifier BrowserFunctions::GetIntIdentifier(std::int32_t number) {
    return Enter("getintidentifier") != nullptr ? Intern({false, {}, number}) : nullptr;
}

bool BrowserFunctions::IdentifierIsString(NPIdentifier identifier) {
    return Enter("identifierisstring") != nullptr && Of(identifier).isString;
}

NPUTF8* BrowserFunctions::UTF8FromIdentifier(NPIdentifier identifier) {
    FakeBrowser* browser = Enter("utf8fromidentifier");
    if (browser == nullptr || !Of(identifier).isString) {
        return nullptr;
    }
    const std::string& name = Of(identifier).name;
    return std::strcpy(static_cast<char*>(browser->m_ledger.Allocate(name.size() + 1)), name.c_str());
}

std::int32_t BrowserFunctions::IntFromIdentifier(NPIdentifier identifier) {
    return Enter("intfromidentifier") != nullptr ? Of(identifier).number : 0;
}

void BrowserFunctions::SetException(NPObject* object, const NPUTF8* message) {
    FakeBrowser* browser = Enter("setexception");
    if (browser == nullptr || (object != nullptr && !browser->m_ledger.Check("NPN_SetException", object))) {
        return;
    }
    browser->m_exceptions.emplace_back(message);
    CallList::Instance().Add("exception " + browser->m_exceptions.back());
}

NPError BrowserFunctions::GetValue(NPP npp, NPNVariable variable, void* value) {
    FakeBrowser* browser = Enter("getvalue", npp);
    if (browser == nullptr || variable != NPNVWindowNPObject) {
        return NPERR_GENERIC_ERROR;
    }
    NPObject* window = browser->windowIsNull ? nullptr : browser->Window().Pointer();
    if (window != nullptr) {
        browser->m_ledger.Retain("NPN_GetValue", window);
    }
    *static_cast<NPObject**>(value) = window;
    return NPERR_NO_ERROR;
}

NPError BrowserFunctions::SetValue(NPP npp, NPPVariable variable, void* value) {
    FakeBrowser* browser = Enter("setvalue", npp);
    if (browser == nullptr) {
        return NPERR_GENERIC_ERROR;
    }
    const auto number = reinterpret_cast<std::intptr_t>(value);
    browser->m_setValues.emplace_back(variable, number);
    CallList::Instance().Add("setvalue " + std::to_string(variable) + ", " + std::to_string(number));
    return NPERR_NO_ERROR;
}

void BrowserFunctions::ForceRedraw(NPP npp) {
    if (Enter("forceredraw", npp) != nullptr) {
        CallList::Instance().Add("forceredraw");
    }
}

void BrowserFunctions::PluginThreadAsyncCall(NPP npp, void (*function)(void*), void* data) {
    FakeBrowser* browser = FakeBrowser::Current();
    if (browser == nullptr) {
        ADD_FAILURE() << "An asynchronous call was asked for although there is no browser.";
    } else if (npp == nullptr) {
        ADD_FAILURE() << "An asynchronous call was asked for without an instance.";
    } else if (!browser->m_faults.Use("pluginthreadasynccall")) {
        browser->m_async.Add(npp, function, data);
    }
}

}  // namespace support
