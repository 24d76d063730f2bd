// Script values of tests.
#include "tests/support/Value.h"

#include <charconv>
#include <cmath>

#include "tests/support/FakeBrowser.h"
#include "tests/support/FakeObject.h"

namespace support {
namespace {

std::string ShowDouble(double number) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, number).ptr;
    std::string shown(text, end);
    return std::isfinite(number) && shown.find_first_of(".e") == std::string::npos ? shown + ".0" : shown;
}

}  // namespace

Value::Value(const FakeObject& object) : m_value(object.Pointer()) {}

Value::Value(const NPVariant& variant) {
    switch (variant.type) {
        case NPVariantType_Void:
            break;
        case NPVariantType_Null:
            m_value = nullptr;
            break;
        case NPVariantType_Bool:
            m_value = variant.value.boolValue;
            break;
        case NPVariantType_Int32:
            m_value = variant.value.intValue;
            break;
        case NPVariantType_Double:
            m_value = variant.value.doubleValue;
            break;
        case NPVariantType_Object:
            m_value = variant.value.objectValue;
            break;
        case NPVariantType_String: {
            const NPString& text = variant.value.stringValue;
            m_value = text.UTF8Length == 0 ? std::string() : std::string(text.UTF8Characters, text.UTF8Length);
            break;
        }
    }
}

NPVariantType Value::Type() const {
    static_assert(std::variant_size_v<decltype(m_value)> == NPVariantType_Object + 1);
    return static_cast<NPVariantType>(m_value.index());
}

template <class T>
T Value::As() const {
    const T* value = std::get_if<T>(&m_value);
    return value != nullptr ? *value : T{};
}

NPObject* Value::Object() const { return As<NPObject*>(); }

std::string Value::Text() const { return As<std::string>(); }

std::int32_t Value::Int() const { return As<std::int32_t>(); }

double Value::Double() const { return As<double>(); }

bool Value::Boolean() const { return As<bool>(); }

std::string Value::Show() const {
    switch (Type()) {
        case NPVariantType_Void:
            return "undefined";
        case NPVariantType_Null:
            return "null";
        case NPVariantType_Bool:
            return Boolean() ? "true" : "false";
        case NPVariantType_Int32:
            return std::to_string(Int());
        case NPVariantType_Double:
            return ShowDouble(Double());
        case NPVariantType_String:
            return '"' + Text() + '"';
        case NPVariantType_Object:
            break;
    }
    return FakeBrowser::NameOf(Object());
}

std::string Show(const Values& values) {
    std::string text;
    for (const Value& value : values) {
        text += (text.empty() ? "" : ", ") + value.Show();
    }
    return text;
}

}  // namespace support
