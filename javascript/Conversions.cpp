// Script values to native values and back.
#include <cmath>
#include <cstring>
#include <limits>

#include "debug/Log.h"
#include "javascript/JSNPObject.h"
#include "javascript/Variants.h"

namespace OipfJavaScript {

namespace {

template <class Integer>
Integer Saturate(double value) {
    if (std::isnan(value)) return 0;
    const double truncated = std::trunc(value);
    if (truncated <= static_cast<double>(std::numeric_limits<Integer>::min())) return std::numeric_limits<Integer>::min();
    if (truncated >= static_cast<double>(std::numeric_limits<Integer>::max())) return std::numeric_limits<Integer>::max();
    return static_cast<Integer>(truncated);
}

template <class Integer>
bool ToInteger(const NPVariant& variant, Integer& value) {
    if (variant.type == NPVariantType_Int32)
        value = static_cast<Integer>(variant.value.intValue);
    else if (variant.type == NPVariantType_Double)
        value = Saturate<Integer>(variant.value.doubleValue);
    else
        return false;
    return true;
}

std::string_view TextOf(const NPVariant& variant) {
    const NPString& text = variant.value.stringValue;
    return text.UTF8Characters ? std::string_view(text.UTF8Characters, text.UTF8Length) : std::string_view();
}

void AppendUtf8(std::string_view text, std::string& out) {
    for (const char byte : text) {
        LOG_DETAIL("UTF8 char 0x%02X", static_cast<unsigned char>(byte));
        out.push_back(byte);
    }
}

// UTF-8 needs the two lead bytes 0xC2 and 0xC3 for U+0080 to U+00FF and no other.
bool AppendLatin1(std::string_view text, std::string& out) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        unsigned char point = byte;
        if (byte >= 0x80) {
            if ((byte != 0xC2 && byte != 0xC3) || i + 1 == text.size()) {
                LOG_WARNING("Invalid UTF8 to convert to code point (0-255), got 0x%02X", byte);
                return false;
            }
            point = static_cast<unsigned char>((byte << 6) + (static_cast<unsigned char>(text[++i]) & 0x3F));
        }
        LOG_DETAIL("code point char 0x%02X", point);
        out.push_back(static_cast<char>(point));
    }
    return true;
}

}  // namespace

bool JSNPObject::t_NPVariantToInt(const NPVariant& variant, int& value) { return ToInteger(variant, value); }

bool JSNPObject::t_NPVariantToInt(const NPVariant& variant, unsigned int& value) { return ToInteger(variant, value); }

bool JSNPObject::t_NPVariantToDouble(const NPVariant& variant, double& value) {
    if (variant.type == NPVariantType_Double)
        value = variant.value.doubleValue;
    else if (variant.type == NPVariantType_Int32)
        value = variant.value.intValue;
    else
        return false;
    return true;
}

bool JSNPObject::t_NPVariantToString(const NPVariant& variant, std::string& text, bool latin1) {
    if (!IsString(variant)) return false;
    if (latin1) return AppendLatin1(TextOf(variant), text);
    AppendUtf8(TextOf(variant), text);
    return true;
}

bool JSNPObject::t_StringToNPVariant(const std::string& text, NPVariant& variant) {
    if (text.empty()) {
        variant = NullVariant();
        return true;
    }
    if (!t_BytesToNPVariant(text.data(), text.size(), variant)) return false;
    NPString& copy = variant.value.stringValue;
    copy.UTF8Length = static_cast<std::uint32_t>(std::strlen(copy.UTF8Characters));
    return true;
}

bool JSNPObject::t_BytesToNPVariant(const char* bytes, std::size_t length, NPVariant& variant) {
    if (length >= std::numeric_limits<std::uint32_t>::max()) return false;
    const auto size = static_cast<std::uint32_t>(length);
    auto* copy = static_cast<char*>(m_pNPNFuncs->memalloc(size + 1));
    if (!copy) return false;
    if (size > 0) std::memcpy(copy, bytes, size);
    copy[size] = '\0';
    variant = StringVariant(copy, size);
    return true;
}

bool JSNPObject::t_ReadProperty(const std::string& name, NPObject& object, NPVariant& value) {
    if (!m_npp) {
        t_LogInvalidated("t_GetProperty");
        return false;
    }
    const NPIdentifier id = m_pNPNFuncs->getstringidentifier(name.c_str());
    return id && m_pNPNFuncs->getproperty(m_npp, &object, id, &value);
}

bool JSNPObject::t_GetProperty(const std::string& name, NPObject& object, int& value) {
    NPVariant read = VoidVariant();
    if (!t_ReadProperty(name, object, read)) return false;
    const bool converted = t_NPVariantToInt(read, value);
    ReleaseVariant(*m_pNPNFuncs, read);
    return converted;
}

bool JSNPObject::t_GetProperty(const std::string& name, NPObject& object, unsigned int& value) {
    NPVariant read = VoidVariant();
    if (!t_ReadProperty(name, object, read)) return false;
    const bool converted = t_NPVariantToInt(read, value);
    ReleaseVariant(*m_pNPNFuncs, read);
    return converted;
}

bool JSNPObject::t_GetProperty(const std::string& name, NPObject& object, std::string& value) {
    NPVariant read = VoidVariant();
    if (!t_ReadProperty(name, object, read)) return false;
    const bool converted = t_NPVariantToString(read, value, true);
    ReleaseVariant(*m_pNPNFuncs, read);
    return converted;
}

}  // namespace OipfJavaScript
