// The script values and script objects of NPAPI, as published.
#pragma once

#include <cstdint>

using NPUTF8 = char;
using NPIdentifier = void*;

struct NPObject;
struct NPClass;
struct _NPP;
using NPP = _NPP*;

struct NPString {
    const NPUTF8* UTF8Characters;  // not terminated, may contain zero bytes
    std::uint32_t UTF8Length;
};

enum NPVariantType : std::int32_t {
    NPVariantType_Void,
    NPVariantType_Null,
    NPVariantType_Bool,
    NPVariantType_Int32,
    NPVariantType_Double,
    NPVariantType_String,
    NPVariantType_Object
};

struct NPVariant {
    NPVariantType type;
    union {
        bool boolValue;
        std::int32_t intValue;
        double doubleValue;
        NPString stringValue;
        NPObject* objectValue;
    } value;
};

struct NPObject {
    NPClass* _class;
    std::uint32_t referenceCount;
};

using NPAllocateFunctionPtr = NPObject* (*)(NPP npp, NPClass* aClass);
using NPDeallocateFunctionPtr = void (*)(NPObject* npobj);
using NPInvalidateFunctionPtr = void (*)(NPObject* npobj);
using NPHasMethodFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier name);
using NPInvokeFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier name, const NPVariant* args, std::uint32_t argCount,
                                     NPVariant* result);
using NPInvokeDefaultFunctionPtr = bool (*)(NPObject* npobj, const NPVariant* args, std::uint32_t argCount,
                                            NPVariant* result);
using NPHasPropertyFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier name);
using NPGetPropertyFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier name, NPVariant* result);
using NPSetPropertyFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier name, const NPVariant* value);
using NPRemovePropertyFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier name);
using NPEnumerationFunctionPtr = bool (*)(NPObject* npobj, NPIdentifier** value, std::uint32_t* count);
using NPConstructFunctionPtr = bool (*)(NPObject* npobj, const NPVariant* args, std::uint32_t argCount,
                                        NPVariant* result);

// structVersion: 2 and up have `enumerate`, 3 and up have `construct`.
constexpr std::uint32_t NP_CLASS_STRUCT_VERSION_CTOR = 3;

struct NPClass {
    std::uint32_t structVersion;
    NPAllocateFunctionPtr allocate;
    NPDeallocateFunctionPtr deallocate;
    NPInvalidateFunctionPtr invalidate;
    NPHasMethodFunctionPtr hasMethod;
    NPInvokeFunctionPtr invoke;
    NPInvokeDefaultFunctionPtr invokeDefault;
    NPHasPropertyFunctionPtr hasProperty;
    NPGetPropertyFunctionPtr getProperty;
    NPSetPropertyFunctionPtr setProperty;
    NPRemovePropertyFunctionPtr removeProperty;
    NPEnumerationFunctionPtr enumerate;
    NPConstructFunctionPtr construct;
};
