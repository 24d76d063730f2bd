// A script object or function of the fake browser's page.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "npapi/npruntime.h"
#include "tests/support/Value.h"

namespace support {

// Made by FakeBrowser and kept by it until the test ends, also when the script object behind it has died.
class FakeObject {
public:
    FakeObject(std::string name, NPObject* pointer) : m_name(std::move(name)), m_pointer(pointer) {}
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    const std::string& Name() const { return m_name; }
    // What the plug-in sees. Dangles when the object is dead: compare it only.
    NPObject* Pointer() const { return m_pointer; }
    bool IsAlive() const;
    unsigned HeldByPlugin() const;  // how many references

    // What the page gives it. A getter is the page's code and may do anything. No function: it cannot be called.
    FakeObject& Set(const std::string& name, Value value);
    FakeObject& SetGetter(const std::string& name, std::function<Value()> getter);
    template <class F>
    FakeObject& SetMethod(const std::string& name, F function) {
        m_methods[name] = MakeFunction(std::move(function));
        return *this;
    }
    template <class F>
    FakeObject& SetFunction(F function) {
        m_function = MakeFunction(std::move(function));
        return *this;
    }

    bool Has(const std::string& name) const { return m_properties.contains(name); }
    Value Get(const std::string& name) const;  // undefined when there is none
    bool Remove(const std::string& name) { return m_properties.erase(name) != 0; }
    bool HasMethod(const std::string& name) const { return m_methods.contains(name); }
    std::vector<std::string> Names() const;

    // Of an object that an evaluated `new X(text);` made: X and the text. Empty for all others.
    const std::string& ClassName() const { return m_className; }
    const std::string& ConstructorText() const { return m_constructorText; }

    // What the plug-in did to it: the arguments of each call of the function and of each call of a method, the names
    // of the properties that it read, and what it pushed (arrays).
    const std::vector<Values>& Calls() const { return m_calls; }
    const std::vector<Values>& CallsOf(const std::string& method) { return m_methodCalls[method]; }
    const std::vector<std::string>& Reads() const { return m_reads; }
    const Values& Items() const { return m_items; }

private:
    friend class FakeBrowser;
    friend class BrowserFunctions;

    Value Read(const std::string& name);
    std::optional<Value> Call(const Values& arguments);
    std::optional<Value> CallMethod(const std::string& name, const Values& arguments);
    std::optional<Value> Push(const Values& items);

    std::string m_name;
    NPObject* m_pointer;
    std::string m_className;
    std::string m_constructorText;
    std::map<std::string, std::function<Value()>> m_properties;
    std::map<std::string, Function> m_methods;
    Function m_function;
    std::vector<Values> m_calls;
    std::map<std::string, std::vector<Values>> m_methodCalls;
    std::vector<std::string> m_reads;
    Values m_items;
};

}  // namespace support
