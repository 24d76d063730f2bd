// A script value as tests write it, compare it and read it in failures.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "npapi/npruntime.h"

namespace support {

class FakeObject;

struct Undefined {
    friend bool operator==(Undefined, Undefined) { return true; }
};

// Value() is undefined, Value(nullptr) null, Value(7) an Int32, Value(7.0) a Double. Strings may hold zero bytes.
// An object is a pointer only: who holds it, the ledger knows. Equal means: of the same type with the same value.
class Value {
public:
    Value() = default;
    Value(std::nullptr_t) : m_value(nullptr) {}
    Value(std::same_as<bool> auto value) : m_value(value) {}
    template <std::integral T>
    requires(!std::same_as<T, bool>) Value(T value) : m_value(static_cast<std::int32_t>(value)) {}
    Value(double value) : m_value(value) {}
    Value(const char* text) : m_value(std::string(text)) {}
    Value(std::string text) : m_value(std::move(text)) {}
    Value(NPObject* object) : m_value(object) {}
    Value(const FakeObject& object);
    explicit Value(const NPVariant& variant);  // copies; the variant keeps what it holds

    NPVariantType Type() const;
    bool IsUndefined() const { return std::holds_alternative<Undefined>(m_value); }
    bool IsNull() const { return std::holds_alternative<std::nullptr_t>(m_value); }
    // Null, empty or 0 when the value is of another type.
    NPObject* Object() const;
    std::string Text() const;
    std::int32_t Int() const;
    double Double() const;
    bool Boolean() const;

    // As in the list of calls: undefined, null, true, 7, 7.0, "text", or the object's name.
    std::string Show() const;

    friend bool operator==(const Value&, const Value&) = default;
    friend void PrintTo(const Value& value, std::ostream* out) { *out << value.Show(); }

private:
    template <class T>
    T As() const;

    std::variant<Undefined, std::nullptr_t, bool, std::int32_t, double, std::string, NPObject*> m_value;
};

using Values = std::vector<Value>;

// "1, undefined"
std::string Show(const Values& values);

// What a script function does: its result, or nothing when the call fails.
using Function = std::function<std::optional<Value>(const Values& arguments)>;

// Makes a Function of anything callable, with or without the arguments, with or without a result.
template <class F>
Function MakeFunction(F function) {
    return [function = std::move(function)](const Values& arguments) mutable -> std::optional<Value> {
        auto call = [&]() -> decltype(auto) {
            if constexpr (std::is_invocable_v<F&, const Values&>) {
                return function(arguments);
            } else {
                return function();
            }
        };
        if constexpr (std::is_void_v<decltype(call())>) {
            call();
            return Value();
        } else {
            return call();
        }
    };
}

}  // namespace support
