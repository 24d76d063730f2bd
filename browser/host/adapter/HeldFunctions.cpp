#include "browser/host/adapter/HeldFunctions.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "browser/host/adapter/Contract.h"
#include "browser/host/adapter/Observation.h"
#include "browser/host/adapter/PluginLibrary.h"
#include "browser/host/adapter/Script.h"

namespace adapter {

namespace {

struct HeldFunction : NPObject {
    ScriptObject window;
    std::int32_t index = 0;  // in the window's table
    NPIdentifier property = nullptr;  // set as this handler
    bool hasSeveralNames = false;
};

using Key = std::pair<NPObject*, std::int32_t>;

std::map<Key, HeldFunction*>& Held() {
    static auto* s_held = new std::map<Key, HeldFunction*>;
    return *s_held;
}

NPVariant Number(std::int32_t number) {
    NPVariant value{NPVariantType_Int32, {}};
    value.value.intValue = number;
    return value;
}

bool AskTable(NPObject* window, const std::vector<NPVariant>& arguments, NPVariant& result) {
    static const NPIdentifier s_table = Browser().getstringidentifier(kFunctionTable);
    return Browser().invoke(nullptr, window, s_table, arguments.data(), std::uint32_t(arguments.size()), &result);
}

void Drop(NPObject* window, std::int32_t index) {
    NPVariant nothing{NPVariantType_Void, {}};
    AskTable(window, {Number(kDropFunction), Number(index)}, nothing);
    Browser().releasevariantvalue(&nothing);
}

// What the plug-in has let go, to be dropped from the tables. It may let go while the browser collects garbage, when no
// script can run.
std::vector<std::unique_ptr<HeldFunction>>& LetGo() {
    static auto* s_letGo = new std::vector<std::unique_ptr<HeldFunction>>;
    return *s_letGo;
}

void Deallocate(NPObject* object) {
    auto* held = static_cast<HeldFunction*>(object);
    Held().erase({held->window.Get(), held->index});
    LetGo().emplace_back(held);
}

// The page may let the plug-in drop the function while it runs.
bool InvokeDefault(NPObject* object, const NPVariant* arguments, std::uint32_t count, NPVariant* result) {
    auto* held = static_cast<HeldFunction*>(object);
    ReportDelivery(held->hasSeveralNames ? nullptr : held->property, held->window.Get()->_class, arguments, count);
    Browser().retainobject(object);
    std::vector<NPVariant> all{Number(kCallFunction), Number(held->index)};
    all.insert(all.end(), arguments, arguments + count);
    const bool done = AskTable(held->window.Get(), all, *result);
    Browser().releaseobject(object);
    return done;
}

NPObject* Allocate(NPP, NPClass*) {
    return new HeldFunction;
}

NPClass s_class{NP_CLASS_STRUCT_VERSION_CTOR, Allocate, Deallocate, nullptr, nullptr, nullptr, InvokeDefault, nullptr,
                nullptr, nullptr, nullptr, nullptr, nullptr};

ScriptObject WindowOf(NPP npp) {
    NPObject* window = nullptr;
    return Browser().getvalue(npp, NPNVWindowNPObject, &window) == NPERR_NO_ERROR ? ScriptObject(npp, window)
                                                                                  : ScriptObject();
}

// Its place in the window's table, where it is counted once more; below 0 when it is no function.
std::int32_t Keep(NPObject* window, const NPVariant& function) {
    NPVariant index{NPVariantType_Void, {}};
    AskTable(window, {Number(kKeepFunction), function}, index);
    if (index.type == NPVariantType_Double) {
        return static_cast<std::int32_t>(index.value.doubleValue);
    }
    const bool isNumber = index.type == NPVariantType_Int32;
    const std::int32_t number = isNumber ? index.value.intValue : -1;
    Browser().releasevariantvalue(&index);
    return number;
}

NPObject* HeldAt(NPP npp, ScriptObject window, std::int32_t index) {
    HeldFunction*& held = Held()[{window.Get(), index}];
    if (held != nullptr) {
        Drop(window.Get(), index);  // it is counted already
        return Browser().retainobject(held);
    }
    held = static_cast<HeldFunction*>(Browser().createobject(npp, &s_class));
    held->window = std::move(window);
    held->index = index;
    return held;
}

}  // namespace

void DropLetGo() {
    for (const auto& held : std::exchange(LetGo(), {})) {
        Drop(held->window.Get(), held->index);
    }
}

bool ReplaceByHeld(NPP npp, NPVariant& value) {
    if (value.type != NPVariantType_Object || value.value.objectValue == nullptr) {
        return false;
    }
    DropLetGo();
    ScriptObject window = WindowOf(npp);
    const std::int32_t index = window ? Keep(window.Get(), value) : -1;
    if (index < 0) {
        return false;
    }
    value.value.objectValue = HeldAt(npp, std::move(window), index);
    return true;
}

void NameHandler(const NPVariant& value, NPIdentifier property) {
    auto* held = static_cast<HeldFunction*>(value.value.objectValue);
    held->hasSeveralNames = held->hasSeveralNames || (held->property != nullptr && held->property != property);
    held->property = property;
}

void ReplaceByOriginal(NPVariant& value) {
    if (value.type != NPVariantType_Object || value.value.objectValue == nullptr ||
        value.value.objectValue->_class != &s_class) {
        return;
    }
    auto* held = static_cast<HeldFunction*>(value.value.objectValue);
    NPVariant original{NPVariantType_Void, {}};
    AskTable(held->window.Get(), {Number(kGetFunction), Number(held->index)}, original);
    Browser().releasevariantvalue(&value);
    value = original;
}

}  // namespace adapter
