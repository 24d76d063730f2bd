// Making and telling apart script values.
#pragma once

#include <cstring>

#include "npapi/npfunctions.h"

namespace OipfJavaScript {

// The union is zeroed too: browsers are known to look at it whatever the type says.
inline NPVariant VoidVariant() {
    NPVariant variant;
    std::memset(&variant, 0, sizeof variant);
    return variant;
}

inline NPVariant NullVariant() {
    NPVariant variant = VoidVariant();
    variant.type = NPVariantType_Null;
    return variant;
}

inline NPVariant BoolVariant(bool value) {
    NPVariant variant = VoidVariant();
    variant.type = NPVariantType_Bool;
    variant.value.boolValue = value;
    return variant;
}

inline NPVariant Int32Variant(std::int32_t value) {
    NPVariant variant = VoidVariant();
    variant.type = NPVariantType_Int32;
    variant.value.intValue = value;
    return variant;
}

inline NPVariant ObjectVariant(NPObject* object) {
    NPVariant variant = VoidVariant();
    variant.type = NPVariantType_Object;
    variant.value.objectValue = object;
    return variant;
}

// `characters` must be the browser's memory (NPN_MemAlloc).
inline NPVariant StringVariant(const NPUTF8* characters, std::uint32_t length) {
    NPVariant variant = VoidVariant();
    variant.type = NPVariantType_String;
    variant.value.stringValue = {characters, length};
    return variant;
}

// A variant of type Object with a null pointer is no object: it is never retained, released or looked into.
inline bool IsObject(const NPVariant& variant) {
    return variant.type == NPVariantType_Object && variant.value.objectValue;
}

// Gives a value back to the browser.
inline void ReleaseVariant(const NPNetscapeFuncs& funcs, NPVariant& variant) {
    if (variant.type != NPVariantType_Object || variant.value.objectValue) funcs.releasevariantvalue(&variant);
}

inline bool IsString(const NPVariant& variant) { return variant.type == NPVariantType_String; }

}  // namespace OipfJavaScript
