#include "benchmarks/library/Floor.h"

#include <cstring>
#include <string>

#include "benchmarks/library/Instances.h"
#include "platform/IJSObjCreation.h"

namespace benchmarks {

namespace {

// As long as what toString() of the video/broadcast object returns.
constexpr char kText[] = "[the floor's own text]";

struct Names {
    NPIdentifier playState = Browser().getstringidentifier("playState");
    NPIdentifier width = Browser().getstringidentifier("width");
    NPIdentifier onFocus = Browser().getstringidentifier("onFocus");
    NPIdentifier toString = Browser().getstringidentifier("toString");
    NPIdentifier setFullScreen = Browser().getstringidentifier("setFullScreen");
    NPIdentifier getVolume = Browser().getstringidentifier("getVolume");
    NPIdentifier addEventListener = Browser().getstringidentifier("addEventListener");
    NPIdentifier removeEventListener = Browser().getstringidentifier("removeEventListener");
};

const Names& Name() {
    static const Names s_names;
    return s_names;
}

// Makes a Channel object; the page's constructors want a key of the platform's.
NPString ChannelScript() {
    IJSObjCreation* keys = IJSObjCreation::Instance();
    static const std::string s_script = "new Channel(\"" + (keys ? keys->GetKey("floor") : "") + "\", 1);";
    return {s_script.data(), static_cast<std::uint32_t>(s_script.size())};
}

Floor& FloorOf(NPObject* object) { return *static_cast<Floor*>(object); }

NPVariant Variant(NPVariantType type) {
    NPVariant variant;
    std::memset(&variant, 0, sizeof variant);
    variant.type = type;
    return variant;
}

NPVariant Variant(int number) {
    NPVariant variant = Variant(NPVariantType_Int32);
    variant.value.intValue = number;
    return variant;
}

NPVariant Variant(NPObject* object) {
    NPVariant variant = Variant(NPVariantType_Object);
    variant.value.objectValue = object;
    return variant;
}

NPObject* Allocate(NPP npp, NPClass*) { return new Floor(npp); }

void Deallocate(NPObject* object) {
    Floor& floor = FloorOf(object);
    if (floor.handler) Browser().releaseobject(floor.handler);
    for (NPObject* listener : floor.listeners) Browser().releaseobject(listener);
    delete &floor;
}

bool HasMethod(NPObject*, NPIdentifier name) {
    return name == Name().toString || name == Name().setFullScreen || name == Name().getVolume ||
           name == Name().addEventListener || name == Name().removeEventListener;
}

bool HasProperty(NPObject*, NPIdentifier name) {
    return name == Name().playState || name == Name().width || name == Name().onFocus;
}

bool ReturnText(NPVariant* result) {
    auto* copy = static_cast<char*>(Browser().memalloc(sizeof kText));
    std::memcpy(copy, kText, sizeof kText);
    *result = Variant(NPVariantType_String);
    result->value.stringValue = {copy, sizeof kText - 1};
    return true;
}

void ForgetListeners(Floor& floor) {
    for (NPObject* listener : floor.listeners) Browser().releaseobject(listener);
    floor.listeners.clear();
}

bool Invoke(NPObject* object, NPIdentifier name, const NPVariant* args, std::uint32_t, NPVariant* result) {
    if (name == Name().toString) return ReturnText(result);
    *result = Variant(NPVariantType_Void);
    if (name == Name().setFullScreen || name == Name().getVolume) return true;
    Floor& floor = FloorOf(object);
    if (name == Name().addEventListener)
        floor.listeners.push_back(Browser().retainobject(args[1].value.objectValue));
    else
        ForgetListeners(floor);
    return true;
}

bool GetProperty(NPObject* object, NPIdentifier name, NPVariant* result) {
    Floor& floor = FloorOf(object);
    if (name == Name().playState || name == Name().width) {
        *result = Variant(name == Name().playState ? floor.playState : floor.width);
        return true;
    }
    if (!floor.handler) return false;
    *result = Variant(Browser().retainobject(floor.handler));
    return true;
}

bool SetProperty(NPObject* object, NPIdentifier name, const NPVariant* value) {
    Floor& floor = FloorOf(object);
    if (name != Name().onFocus) {
        floor.width =
            value->type == NPVariantType_Double ? static_cast<int>(value->value.doubleValue) : value->value.intValue;
        return true;
    }
    if (floor.handler) Browser().releaseobject(floor.handler);
    floor.handler = nullptr;
    if (value->type == NPVariantType_Object) floor.handler = Browser().retainobject(value->value.objectValue);
    return true;
}

void Call(const Floor& floor, NPObject* function, const NPVariant* args, std::uint32_t count) {
    NPVariant result = Variant(NPVariantType_Void);
    Browser().invokeDefault(floor.npp, function, args, count, &result);
    Browser().releasevariantvalue(&result);
}

bool HasNoMember(NPObject*, NPIdentifier) { return false; }

// The class of what listeners get: an object without members.
NPClass s_eventClass{NP_CLASS_STRUCT_VERSION_CTOR,
                     [](NPP, NPClass*) { return new NPObject; },
                     [](NPObject* object) { delete object; },
                     nullptr,
                     HasNoMember,
                     nullptr,
                     nullptr,
                     HasNoMember,
                     nullptr,
                     nullptr,
                     nullptr,
                     nullptr,
                     nullptr};

}  // namespace

NPClass Floor::s_class{NP_CLASS_STRUCT_VERSION_CTOR,
                       Allocate,
                       Deallocate,
                       nullptr,
                       HasMethod,
                       Invoke,
                       nullptr,
                       HasProperty,
                       GetProperty,
                       SetProperty,
                       nullptr,
                       nullptr,
                       nullptr};

void Floor::CallHandler(void* data) {
    const auto& floor = *static_cast<Floor*>(data);
    const NPVariant args[] = {Variant(1), Variant(NPVariantType_Void)};
    if (floor.handler) Call(floor, floor.handler, args, 2);
}

void Floor::CallListeners(void* data) {
    const auto& floor = *static_cast<Floor*>(data);
    NPObject* event = Browser().createobject(floor.npp, &s_eventClass);
    const NPVariant arg = Variant(event);
    for (NPObject* listener : floor.listeners) Call(floor, listener, &arg, 1);
    Browser().releaseobject(event);
}

void Floor::ReportChannel(void* data) {
    const auto& floor = *static_cast<Floor*>(data);
    NPObject* window = nullptr;
    Browser().getvalue(floor.npp, NPNVWindowNPObject, &window);
    NPString script = ChannelScript();
    NPVariant channel = Variant(NPVariantType_Void);
    Browser().evaluate(floor.npp, window, &script, &channel);
    Browser().releaseobject(window);
    if (floor.handler) Call(floor, floor.handler, &channel, 1);
    Browser().releasevariantvalue(&channel);
}

}  // namespace benchmarks
