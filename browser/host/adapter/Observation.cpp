#include "browser/host/adapter/Observation.h"

#include <string>
#include <vector>

#include "browser/host/adapter/PluginLibrary.h"

namespace adapter {

namespace {

TrafficObserver s_observer = nullptr;
void* s_context = nullptr;

// What an event object of the plug-in can carry besides its type.
constexpr const char* kEventMembers[] = {"state",      "error",  "channel",     "errorState",      "rating",
                                         "contentID",  "name",   "data",        "text",            "status",
                                         "DRMSystemID", "rightsIssuerURL"};

std::string NameOf(NPIdentifier identifier) {
    if (identifier == nullptr) {
        return "more than one";
    }
    NPUTF8* text = Browser().utf8fromidentifier(identifier);
    const std::string name = text != nullptr ? text : "";
    Browser().memfree(text);
    return name;
}

void Tell(const char* kind, const std::string& name, const std::vector<TrafficValue>& values) {
    s_observer(s_context, {kind, name.c_str(), values.data(), std::uint32_t(values.size())});
}

std::vector<TrafficValue> Positional(const NPVariant* arguments, std::uint32_t count) {
    std::vector<TrafficValue> values;
    for (std::uint32_t i = 0; i < count; ++i) {
        values.push_back({nullptr, arguments[i]});
    }
    return values;
}

// A member of an object of the plug-in's own: asked past the browser, so that no script runs. Void when it has none.
NPVariant MemberOf(NPObject* object, const char* name) {
    const NPIdentifier identifier = Browser().getstringidentifier(name);
    NPVariant value{NPVariantType_Void, {}};
    if (object->_class->hasProperty(object, identifier)) {
        object->_class->getProperty(object, identifier, &value);
    }
    return value;
}

// The plug-in's event objects tell their type; objects of the page are of the browser's class, which tells nothing
// here.
bool IsEvent(const NPVariant& value, NPClass* classOfPageObjects) {
    if (value.type != NPVariantType_Object || value.value.objectValue == nullptr) {
        return false;
    }
    const NPClass* itsClass = value.value.objectValue->_class;
    return itsClass != classOfPageObjects && itsClass->hasProperty != nullptr && itsClass->getProperty != nullptr;
}

void TellEvent(NPObject* event) {
    std::vector<TrafficValue> values;
    for (const char* name : kEventMembers) {
        const NPVariant value = MemberOf(event, name);
        if (value.type != NPVariantType_Void) {
            values.push_back({name, value});
        }
    }
    NPVariant type = MemberOf(event, "type");
    const bool isText = type.type == NPVariantType_String;
    Tell("listener", isText ? std::string(type.value.stringValue.UTF8Characters, type.value.stringValue.UTF8Length) : "",
         values);
    Browser().releasevariantvalue(&type);
    for (TrafficValue& value : values) {
        Browser().releasevariantvalue(&value.value);
    }
}

}  // namespace

void SetObserver(TrafficObserver observer, void* context) {
    s_observer = observer;
    s_context = context;
}

void ReportCall(NPIdentifier method, const NPVariant* arguments, std::uint32_t count) {
    if (s_observer != nullptr) {
        Tell("call", NameOf(method), Positional(arguments, count));
    }
}

void ReportDelivery(NPIdentifier property, NPClass* classOfPageObjects, const NPVariant* arguments,
                    std::uint32_t count) {
    if (s_observer == nullptr) {
        return;
    }
    if (count == 1 && IsEvent(arguments[0], classOfPageObjects)) {
        TellEvent(arguments[0].value.objectValue);
    } else {
        Tell("handler", NameOf(property), Positional(arguments, count));
    }
}

}  // namespace adapter
