// Script objects of the fake browser's page.
#include "tests/support/FakeObject.h"

#include "tests/support/CallList.h"
#include "tests/support/FakeBrowser.h"

namespace support {

bool FakeObject::IsAlive() const { return FakeBrowser::Current()->GetLedger().IsAlive(m_pointer); }

unsigned FakeObject::HeldByPlugin() const { return FakeBrowser::Current()->GetLedger().HeldByPlugin(m_pointer); }

FakeObject& FakeObject::Set(const std::string& name, Value value) {
    return SetGetter(name, [value] { return value; });
}

FakeObject& FakeObject::SetGetter(const std::string& name, std::function<Value()> getter) {
    m_properties[name] = std::move(getter);
    return *this;
}

Value FakeObject::Get(const std::string& name) const {
    const auto found = m_properties.find(name);
    return found == m_properties.end() ? Value() : found->second();
}

std::vector<std::string> FakeObject::Names() const {
    std::vector<std::string> names;
    for (const auto& property : m_properties) {
        names.push_back(property.first);
    }
    return names;
}

Value FakeObject::Read(const std::string& name) {
    m_reads.push_back(name);
    return Get(name);
}

std::optional<Value> FakeObject::Call(const Values& arguments) {
    CallList::Instance().Add("script." + m_name + "(" + Show(arguments) + ")");
    m_calls.push_back(arguments);
    return m_function ? Function(m_function)(arguments) : std::nullopt;
}

std::optional<Value> FakeObject::CallMethod(const std::string& name, const Values& arguments) {
    CallList::Instance().Add("script." + m_name + "." + name + "(" + Show(arguments) + ")");
    m_methodCalls[name].push_back(arguments);
    const auto found = m_methods.find(name);
    return found != m_methods.end() ? Function(found->second)(arguments) : std::nullopt;
}

std::optional<Value> FakeObject::Push(const Values& items) {
    for (const Value& item : items) {
        FakeBrowser::Current()->Hold(item);
        m_items.push_back(item);
    }
    return Value(m_items.size());
}

}  // namespace support
