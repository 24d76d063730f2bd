// The fake browser's page, its values and its books.
#include "tests/support/FakeBrowser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "tests/support/BrowserFunctions.h"

namespace support {
namespace {

std::atomic<FakeBrowser*> s_current = nullptr;
constexpr int kGarbageByte = 0xEE;

// The block that Functions() gives, for the life of the process.
NPNetscapeFuncs* ProcessFunctions() {
    static auto* block = static_cast<NPNetscapeFuncs*>(std::malloc(FakeBrowser::kThroughConvertPoint));
    return block;
}

// "Channel(7)" for `new Channel("key", 7);`: the key is the platform's and of no interest in a name.
std::string ShortName(const std::string& className, std::string arguments) {
    if (arguments.starts_with('"')) {
        const auto end = arguments.find('"', 1);
        arguments.erase(0, std::min(arguments.size(), end + 1));
        arguments.erase(0, arguments.starts_with(", ") ? 2 : 0);
    }
    return className + "(" + arguments + ")";
}

}  // namespace

FakeBrowser* FakeBrowser::Current() { return s_current; }

FakeBrowser::FakeBrowser() : m_functions(BrowserFunctions::Table()) {
    EXPECT_EQ(s_current.load(), nullptr) << "There is a FakeBrowser already.";
    s_current = this;
    WriteFunctions();
    m_window = &MakeObject("window");
    SetDefaultRules();
}

FakeBrowser::~FakeBrowser() {
    CollectGarbage();
    for (NPP instance : m_instances) {
        delete instance;
    }
    for (void* table : m_tables) {
        std::free(table);
    }
    s_current = nullptr;
}

NPNetscapeFuncs* FakeBrowser::Functions() { return ProcessFunctions(); }

void FakeBrowser::WriteFunctions() {
    std::memcpy(static_cast<void*>(ProcessFunctions()), &m_functions, kThroughConvertPoint);
}

NPNetscapeFuncs* FakeBrowser::Table(std::size_t size, std::uint16_t version) {
    void* block = std::malloc(size);
    m_tables.push_back(block);
    std::memset(block, kGarbageByte, size);
    std::memcpy(block, &m_functions, std::min(size, sizeof m_functions));
    auto* table = static_cast<NPNetscapeFuncs*>(block);
    table->size = static_cast<std::uint16_t>(size);
    table->version = version;
    return table;
}

void FakeBrowser::LeaveOutOptionalFunctions() {
    LeaveOut(&NPNetscapeFuncs::forceredraw);
    LeaveOut(&NPNetscapeFuncs::getJavaEnv);
    LeaveOut(&NPNetscapeFuncs::getJavaPeer);
    LeaveOut(&NPNetscapeFuncs::getvalueforurl);
    LeaveOut(&NPNetscapeFuncs::setvalueforurl);
    LeaveOut(&NPNetscapeFuncs::getauthenticationinfo);
    LeaveOut(&NPNetscapeFuncs::scheduletimer);
    LeaveOut(&NPNetscapeFuncs::unscheduletimer);
    LeaveOut(&NPNetscapeFuncs::popupcontextmenu);
    LeaveOut(&NPNetscapeFuncs::convertpoint);
}

FakeObject& FakeBrowser::Enter(const std::string& name) {
    NPObject* handle = Ledger::MakeHandle(BrowserFunctions::HandleClass());
    m_ledger.AddObject(handle, name, false);
    FakeObject& object = m_fakes.emplace_back(m_ledger.NameOf(handle), handle);
    m_fakesByPointer[handle] = &object;
    return object;
}

FakeObject& FakeBrowser::MakeObject(const std::string& name) {
    FakeObject& object = Enter(name);
    m_ledger.TakeOver("The page", object.Pointer());
    return object;
}

FakeObject& FakeBrowser::MakeResult(const std::string& name) {
    FakeObject& object = MakeObject(name);
    m_fresh.insert(object.Pointer());
    return object;
}

FakeObject& FakeBrowser::MakeArray(const std::string& name) {
    FakeObject& array = MakeObject(name);
    return array.SetMethod("push", [&array](const Values& items) { return array.Push(items); });
}

void FakeBrowser::Forget(const FakeObject& object) { m_ledger.Drop(object.Pointer()); }

std::vector<FakeObject*> FakeBrowser::Created(const std::string& className) {
    std::vector<FakeObject*> created;
    for (FakeObject& fake : m_fakes) {
        if (fake.ClassName() == className) {
            created.push_back(&fake);
        }
    }
    return created;
}

FakeObject* FakeBrowser::Fake(NPObject* object) {
    const auto found = m_fakesByPointer.find(object);
    return found == m_fakesByPointer.end() ? nullptr : found->second;
}

std::string FakeBrowser::NameOf(NPObject* object) {
    return s_current.load() != nullptr ? s_current.load()->m_ledger.NameOf(object) : "object without a browser";
}

NPP FakeBrowser::MakeInstance() {
    NPP instance = m_instances.emplace_back(new _NPP{});
    m_async.InstanceBegins(instance);
    return instance;
}

void FakeBrowser::EndInstance(NPP instance) { m_async.InstanceEnds(instance, pendingCallsEndWithInstance); }

bool FakeBrowser::IsInstance(NPP instance) const {
    return std::find(m_instances.begin(), m_instances.end(), instance) != m_instances.end();
}

void FakeBrowser::Hold(const Value& value) {
    if (value.Type() == NPVariantType_Object) {
        m_ledger.Hold(value.Object());
        m_garbage.push_back(value.Object());
    }
}

void FakeBrowser::CollectGarbage() {
    m_garbage.insert(m_garbage.end(), m_fresh.begin(), m_fresh.end());
    m_fresh.clear();
    while (!m_garbage.empty()) {
        NPObject* object = m_garbage.back();
        m_garbage.pop_back();
        m_ledger.Drop(object);
    }
}

void FakeBrowser::AnswerEvaluate(const std::string& text, Answer answer) {
    m_rules.push_front({text, false, std::move(answer)});
}

void FakeBrowser::AnswerEvaluateOf(const std::string& prefix, Answer answer) {
    m_rules.push_front({prefix, true, std::move(answer)});
}

void FakeBrowser::SetDefaultRules() {
    AnswerEvaluate("document.location.href", [this](const std::string&) { return Value(location); });
    AnswerEvaluateOf("new ", [this](const std::string& script) { return Construct(script); });
    AnswerEvaluateOf("window.", [this](const std::string& script) -> std::optional<Value> {
        const std::string assignment = " = true;";
        if (!script.ends_with(assignment)) {
            return std::nullopt;
        }
        m_window->Set(script.substr(7, script.size() - 7 - assignment.size()), true);
        return Value(true);
    });
}

Value FakeBrowser::Construct(const std::string& script) {
    const auto open = script.find('(');
    const auto close = script.rfind(");");
    if (open == std::string::npos || close == std::string::npos) {
        ADD_FAILURE() << "\"" << script << "\" is no constructor call.";
        return {};
    }
    const std::string className = script.substr(4, open - 4);
    const std::string arguments = script.substr(open + 1, close - open - 1);
    const std::string name = ShortName(className, arguments);
    FakeObject& object = className == "Array" ? MakeArray(name) : MakeObject(name);
    m_fresh.insert(object.Pointer());
    object.m_className = className;
    object.m_constructorText = arguments;
    return object;
}

std::optional<Value> FakeBrowser::Evaluate(const std::string& script) {
    for (const Rule& rule : m_rules) {
        if (rule.isPrefix ? script.starts_with(rule.text) : script == rule.text) {
            return Answer(rule.answer)(script);
        }
    }
    ADD_FAILURE() << "No rule answers the evaluated text \"" << script << "\".";
    return std::nullopt;
}

NPVariant FakeBrowser::HandOut(const Value& value) {
    NPVariant variant{};
    variant.type = value.Type();
    switch (value.Type()) {
        case NPVariantType_Void:
        case NPVariantType_Null:
            break;
        case NPVariantType_Bool:
            variant.value.boolValue = value.Boolean();
            break;
        case NPVariantType_Int32:
            variant.value.intValue = value.Int();
            break;
        case NPVariantType_Double:
            variant.value.doubleValue = value.Double();
            break;
        case NPVariantType_Object:
            variant.value.objectValue = value.Object();
            if (value.Object() != nullptr) {
                m_ledger.Retain("The page", value.Object());
            }
            if (m_fresh.erase(value.Object()) != 0) {
                m_ledger.Drop(value.Object());
            }
            break;
        case NPVariantType_String:
            if (!value.Text().empty() || !emptyStringsAreNull) {
                variant.value.stringValue = {m_ledger.AllocateText(value.Text()),
                                             static_cast<std::uint32_t>(value.Text().size())};
            }
            break;
    }
    if (numbersAreDoubles && value.Type() == NPVariantType_Int32) {
        variant.type = NPVariantType_Double;
        variant.value.doubleValue = value.Int();
    }
    return variant;
}

Value FakeBrowser::TakeResult(const std::string& function, NPVariant& result) {
    const Value value(result);
    if (value.Type() == NPVariantType_Object) {
        m_ledger.TakeOver(function, value.Object());
        m_garbage.push_back(value.Object());
    } else if (value.Type() == NPVariantType_String && result.value.stringValue.UTF8Characters != nullptr) {
        m_ledger.Free(function, const_cast<NPUTF8*>(result.value.stringValue.UTF8Characters));
    }
    return value;
}

void FakeBrowser::MayKeep(const FakeObject& object, unsigned references) {
    m_ledger.MayKeep(object.Pointer(), references);
}

void FakeBrowser::ExpectBalanced() {
    CollectGarbage();
    m_ledger.ExpectBalanced();
}

PassedValues::PassedValues(FakeBrowser& browser, const Values& values)
    : m_variants(values.empty() ? nullptr : new NPVariant[values.size()]), m_texts(values.size()), m_browser(browser) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        m_variants[i] = Pass(browser, values[i], i);
    }
}

PassedValues::~PassedValues() {
    for (NPObject* object : m_held) {
        m_browser.m_ledger.Drop(object);
    }
}

NPVariant PassedValues::Pass(FakeBrowser& browser, const Value& value, std::size_t position) {
    if (value.Type() == NPVariantType_String) {
        const std::string text = value.Text();
        NPVariant variant{};
        variant.type = NPVariantType_String;
        if (!text.empty() || !browser.emptyStringsAreNull) {
            m_texts[position].reset(new char[text.size()]);
            text.copy(m_texts[position].get(), text.size());
            variant.value.stringValue = {m_texts[position].get(), static_cast<std::uint32_t>(text.size())};
        }
        return variant;
    }
    if (value.Type() == NPVariantType_Object) {
        NPVariant variant{};
        variant.type = NPVariantType_Object;
        variant.value.objectValue = value.Object();
        if (value.Object() != nullptr) {
            browser.m_ledger.Hold(value.Object());
            m_held.push_back(value.Object());
        }
        return variant;
    }
    return browser.HandOut(value);
}

}  // namespace support
