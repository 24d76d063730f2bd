// The base of every native object that script can use: named members, event listeners, and what the object may ask of
// the page around it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "javascript/Functors.h"
#include "npapi/npfunctions.h"

class CDAEBrowserAPI;

namespace OipfJavaScript {

class CJSEvent;

// Everything runs on the browser's main thread. A failure is a false result and a log line, never a C++ exception; a
// result or output parameter is left as it was then. The polymorphic object begins with its virtual-table pointer and
// the NPObject header follows directly, which is what static_cast between the two shifts by.
//
// An object is made by NPN_CreateObject through JSNpapiObject<T>::s_npclass and deleted by that class's deallocate
// hook. Invalidate leaves it alive without a plug-in instance; what needs the browser then refuses.
class JSNPObject : public NPObject {
public:
    // `className` is what "toString" returns. `funcs` must outlive the object.
    JSNPObject(const std::string& className, NPP npp, NPNetscapeFuncs* funcs);
    JSNPObject(const JSNPObject&) = delete;
    JSNPObject& operator=(const JSNPObject&) = delete;

    // The order of the virtual operations is the order of their slots.
    virtual ~JSNPObject();
    virtual void Invalidate();
    virtual bool InvokeDefault(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    virtual bool SetProperty(NPIdentifier name, const NPVariant* value);
    virtual bool RemoveProperty(NPIdentifier name);
    virtual bool Enumerate(NPIdentifier** names, std::uint32_t* count);
    virtual bool Construct(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    // What the browser tells the object of a plug-in instance. The base refuses streams and events.
    virtual void SetWindow(NPWindow* window);
    virtual void SetAttributes(std::int16_t argc, char** argn, char** argv);
    virtual void SetMimeType(char* mimeType);
    virtual std::int16_t HandleEvent(void* event);
    virtual NPError NewStream(NPStream* stream);
    virtual NPError DestroyStream(NPStream* stream, NPReason reason);
    virtual std::int32_t WriteReady(NPStream* stream);
    virtual std::int32_t Write(NPStream* stream, std::int32_t offset, std::int32_t len, void* buffer);

protected:
    // Asked before a listener is added or removed; false refuses silently.
    virtual bool t_AllowEventListener();

public:
    bool HasMethod(NPIdentifier name);
    bool Invoke(NPIdentifier name, const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool HasProperty(NPIdentifier name);
    // A String or Object value is the caller's to release.
    bool GetProperty(NPIdentifier name, NPVariant* result);

    // Adds a read-only value. The object takes the heap variant and releases its value at its end; an earlier value of
    // that name is replaced without being released.
    void AddCustomProperty(std::string_view name, NPVariant* value);

protected:
    // Registration; the object takes the functor. A later one of the same name wins.
    void t_RegisterProperty(std::string_view name, IPropertyFunctor* functor);
    void t_RegisterMethod(std::string_view name, IMethodFunctor* functor);
    void t_RegisterConstant(std::string_view name, int value);

    // Conversions: only the types that stand there, no coercion. Doubles are truncated toward zero; outside the range
    // they become the nearest limit, NaN 0.
    bool t_NPVariantToInt(const NPVariant& variant, int& value);
    bool t_NPVariantToInt(const NPVariant& variant, unsigned int& value);
    bool t_NPVariantToDouble(const NPVariant& variant, double& value);
    // Appends to `text`. With `latin1` the UTF-8 text becomes one byte a character, and characters above U+00FF fail;
    // what came before them stays appended.
    bool t_NPVariantToString(const NPVariant& variant, std::string& text, bool latin1);
    // A String in the browser's memory, or Null for an empty text.
    bool t_StringToNPVariant(const std::string& text, NPVariant& variant);
    // A String in the browser's memory with exactly these bytes, zero bytes included.
    bool t_BytesToNPVariant(const char* bytes, std::size_t length, NPVariant& variant);
    // object[name], converted.
    bool t_GetProperty(const std::string& name, NPObject& object, int& value);
    bool t_GetProperty(const std::string& name, NPObject& object, unsigned int& value);
    bool t_GetProperty(const std::string& name, NPObject& object, std::string& value);

    // A DOM Event with one reference, the caller's; null on failure. The target is not retained.
    CJSEvent* t_CreateEventObject(const std::string& type, NPObject* target);
    // Calls the listeners of `type` as they were at the start, in the order they were added.
    void t_CallEventListeners(const std::string& type, NPObject* eventObject);
    // Calls one script function with copies of the arguments; the caller keeps its own.
    void t_CallEventHandler(NPObject* handler, std::vector<NPVariant*>& args);

    // The document's URL up to its last slash (excluded).
    bool t_GetDocumentLocation(std::string& location);
    // Joins a relative path to the document's directory.
    bool t_MakeAbsolutePath(std::string& path);
    // Whether the page's origin lies inside the application boundary.
    bool t_IsCurrentPageTrusted();
    // Evaluates "new className(key, params);" in the page; the reference to the new object is the caller's.
    bool t_CreateJSObject(const std::string& className, const std::string& params, bool withKey, NPObject** object);

    // The page's window, with a reference for the caller, or null.
    NPObject* t_GetWindow();
    // Runs script in the window. The result is the caller's to release; false leaves it Void.
    bool t_Evaluate(NPObject* window, const std::string& script, NPVariant& result);

    // Raises a script exception on this object.
    void t_SetException(const char* text);
    void t_LogInvalidated(const char* operation);

    NPNetscapeFuncs* m_pNPNFuncs;
    NPP m_npp;  // null once invalidated
    std::string m_defaultPrefix;
    CDAEBrowserAPI* m_pBrowserAPI;

    // Copies handed to script functions live until the outermost of these is left.
    class CDelivery {
    public:
        explicit CDelivery(JSNPObject& object) : m_object(object) { ++m_object.m_deliveries; }
        ~CDelivery();
        CDelivery(const CDelivery&) = delete;
        CDelivery& operator=(const CDelivery&) = delete;

    private:
        JSNPObject& m_object;
    };

private:
    friend class CJSEvent;
    friend class CSelfHold;

    bool m_AddEventListenter(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_RemoveEventListener(const NPVariant* args, std::uint32_t argCount, NPVariant* result);
    bool m_ToString(const NPVariant* args, std::uint32_t argCount, NPVariant* result);

    NPIdentifier t_IdentifierOf(std::string_view name);
    bool t_CopyCustomProperty(const NPVariant& stored, NPVariant* result);
    bool t_ListenerArguments(const char* method, const NPVariant* args, std::uint32_t argCount, std::string& type);
    NPVariant t_CopyArgument(const NPVariant& argument);
    bool t_ReadProperty(const std::string& name, NPObject& object, NPVariant& value);
    bool t_GetDocumentUrl(NPObject* window, std::string& url, unsigned long level);
    void t_ReleaseArgumentCopies();

    std::map<NPIdentifier, std::string> m_methodNames;
    std::map<NPIdentifier, std::string> m_propertyNames;
    std::map<NPIdentifier, IPropertyFunctor*> m_properties;
    std::map<NPIdentifier, IMethodFunctor*> m_methods;
    std::map<NPIdentifier, NPVariant*> m_customProperties;
    std::multimap<std::string, NPObject*> m_listeners;  // each entry holds one reference
    std::string m_className;

    std::vector<NPVariant*> m_unnamedValues;  // owned too: the browser had no identifier for their names
    std::set<CJSEvent*> m_livingEvents;  // those whose target is this object
    std::vector<NPVariant> m_argumentCopies;
    unsigned int m_deliveries = 0;
};

// Keeps an object alive while it may call script, which may destroy it. To be taken in the outermost frame, by the
// functions that the browser calls; an object without an instance (one in its destructor, too) is not held.
class CSelfHold {
public:
    explicit CSelfHold(JSNPObject& object);
    ~CSelfHold();
    CSelfHold(const CSelfHold&) = delete;
    CSelfHold& operator=(const CSelfHold&) = delete;

private:
    NPNetscapeFuncs* m_funcs;
    NPObject* m_object;
};

}  // namespace OipfJavaScript
