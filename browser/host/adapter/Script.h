// Script objects and values of the browser that give themselves back.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "npapi/npapi.h"

namespace adapter {

// One reference to an object of the browser's; may be empty.
class ScriptObject {
public:
    ScriptObject() = default;
    // Takes over a reference that the caller owns.
    ScriptObject(NPP npp, NPObject* object) : m_npp(npp), m_object(object) {}
    ScriptObject(ScriptObject&& other) noexcept
        : m_npp(other.m_npp), m_object(std::exchange(other.m_object, nullptr)) {}
    ScriptObject& operator=(ScriptObject&& other) noexcept;
    ~ScriptObject() { Release(); }

    explicit operator bool() const { return m_object != nullptr; }
    NPObject* Get() const { return m_object; }

    // Members by name; empty, or nothing, where the member is missing or of another kind.
    ScriptObject Member(const char* name) const;
    std::optional<double> Number(const char* name) const;
    std::string Text(const char* name) const;
    ScriptObject Call(const char* method, const NPVariant* arguments = nullptr, std::uint32_t count = 0) const;

private:
    NPVariant Read(const char* name) const;
    void Release();

    NPP m_npp = nullptr;
    NPObject* m_object = nullptr;
};

// The object element of an instance.
ScriptObject ElementOf(NPP npp);

}  // namespace adapter
