// The two function tables of NPAPI and the types of their members, as published (version 0.27).
#pragma once

#include <cstdint>

#include "npapi/npapi.h"

using NPN_GetURLProcPtr = NPError (*)(NPP instance, const char* url, const char* window);
using NPN_PostURLProcPtr = NPError (*)(NPP instance, const char* url, const char* window, std::uint32_t len,
                                       const char* buf, NPBool file);
using NPN_RequestReadProcPtr = NPError (*)(NPStream* stream, NPByteRange* rangeList);
using NPN_NewStreamProcPtr = NPError (*)(NPP instance, NPMIMEType type, const char* window, NPStream** stream);
using NPN_WriteProcPtr = std::int32_t (*)(NPP instance, NPStream* stream, std::int32_t len, void* buffer);
using NPN_DestroyStreamProcPtr = NPError (*)(NPP instance, NPStream* stream, NPReason reason);
using NPN_StatusProcPtr = void (*)(NPP instance, const char* message);
using NPN_UserAgentProcPtr = const char* (*)(NPP instance);
using NPN_MemAllocProcPtr = void* (*)(std::uint32_t size);
using NPN_MemFreeProcPtr = void (*)(void* ptr);
using NPN_MemFlushProcPtr = std::uint32_t (*)(std::uint32_t size);
using NPN_ReloadPluginsProcPtr = void (*)(NPBool reloadPages);
using NPN_GetJavaEnvProcPtr = void* (*)();
using NPN_GetJavaPeerProcPtr = void* (*)(NPP instance);
using NPN_GetURLNotifyProcPtr = NPError (*)(NPP instance, const char* url, const char* window, void* notifyData);
using NPN_PostURLNotifyProcPtr = NPError (*)(NPP instance, const char* url, const char* window, std::uint32_t len,
                                             const char* buf, NPBool file, void* notifyData);
using NPN_GetValueProcPtr = NPError (*)(NPP instance, NPNVariable variable, void* value);
using NPN_SetValueProcPtr = NPError (*)(NPP instance, NPPVariable variable, void* value);
using NPN_InvalidateRectProcPtr = void (*)(NPP instance, NPRect* rect);
using NPN_InvalidateRegionProcPtr = void (*)(NPP instance, void* region);
using NPN_ForceRedrawProcPtr = void (*)(NPP instance);
using NPN_GetStringIdentifierProcPtr = NPIdentifier (*)(const NPUTF8* name);
using NPN_GetStringIdentifiersProcPtr = void (*)(const NPUTF8** names, std::int32_t nameCount,
                                                 NPIdentifier* identifiers);
using NPN_GetIntIdentifierProcPtr = NPIdentifier (*)(std::int32_t intid);
using NPN_IdentifierIsStringProcPtr = bool (*)(NPIdentifier identifier);
using NPN_UTF8FromIdentifierProcPtr = NPUTF8* (*)(NPIdentifier identifier);
using NPN_IntFromIdentifierProcPtr = std::int32_t (*)(NPIdentifier identifier);
using NPN_CreateObjectProcPtr = NPObject* (*)(NPP npp, NPClass* aClass);
using NPN_RetainObjectProcPtr = NPObject* (*)(NPObject* obj);
using NPN_ReleaseObjectProcPtr = void (*)(NPObject* obj);
using NPN_InvokeProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier methodName, const NPVariant* args,
                                   std::uint32_t argCount, NPVariant* result);
using NPN_InvokeDefaultProcPtr = bool (*)(NPP npp, NPObject* obj, const NPVariant* args, std::uint32_t argCount,
                                          NPVariant* result);
using NPN_EvaluateProcPtr = bool (*)(NPP npp, NPObject* obj, NPString* script, NPVariant* result);
using NPN_GetPropertyProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier propertyName, NPVariant* result);
using NPN_SetPropertyProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier propertyName, const NPVariant* value);
using NPN_RemovePropertyProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier propertyName);
using NPN_HasPropertyProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier propertyName);
using NPN_HasMethodProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier methodName);
using NPN_ReleaseVariantValueProcPtr = void (*)(NPVariant* variant);
using NPN_SetExceptionProcPtr = void (*)(NPObject* obj, const NPUTF8* message);
using NPN_PushPopupsEnabledStateProcPtr = void (*)(NPP npp, NPBool enabled);
using NPN_PopPopupsEnabledStateProcPtr = void (*)(NPP npp);
using NPN_EnumerateProcPtr = bool (*)(NPP npp, NPObject* obj, NPIdentifier** identifiers, std::uint32_t* count);
using NPN_PluginThreadAsyncCallProcPtr = void (*)(NPP instance, void (*func)(void*), void* userData);
using NPN_ConstructProcPtr = bool (*)(NPP npp, NPObject* obj, const NPVariant* args, std::uint32_t argCount,
                                      NPVariant* result);
using NPN_GetValueForURLPtr = NPError (*)(NPP instance, NPNURLVariable variable, const char* url, char** value,
                                          std::uint32_t* len);
using NPN_SetValueForURLPtr = NPError (*)(NPP instance, NPNURLVariable variable, const char* url, const char* value,
                                          std::uint32_t len);
using NPN_GetAuthenticationInfoPtr = NPError (*)(NPP instance, const char* protocol, const char* host,
                                                 std::int32_t port, const char* scheme, const char* realm,
                                                 char** username, std::uint32_t* ulen, char** password,
                                                 std::uint32_t* plen);
using NPN_ScheduleTimerPtr = std::uint32_t (*)(NPP instance, std::uint32_t interval, NPBool repeat,
                                               void (*timerFunc)(NPP npp, std::uint32_t timerID));
using NPN_UnscheduleTimerPtr = void (*)(NPP instance, std::uint32_t timerID);
using NPN_PopUpContextMenuPtr = NPError (*)(NPP instance, void* menu);
using NPN_ConvertPointPtr = NPBool (*)(NPP instance, double sourceX, double sourceY, NPCoordinateSpace sourceSpace,
                                       double* destX, double* destY, NPCoordinateSpace destSpace);
using NPN_HandleEventPtr = NPBool (*)(NPP instance, void* event, NPBool handled);
using NPN_UnfocusInstancePtr = NPBool (*)(NPP instance, std::int32_t direction);
using NPN_URLRedirectResponsePtr = void (*)(NPP instance, void* notifyData, NPBool allow);

struct NPNetscapeFuncs {
    std::uint16_t size;
    std::uint16_t version;
    NPN_GetURLProcPtr geturl;
    NPN_PostURLProcPtr posturl;
    NPN_RequestReadProcPtr requestread;
    NPN_NewStreamProcPtr newstream;
    NPN_WriteProcPtr write;
    NPN_DestroyStreamProcPtr destroystream;
    NPN_StatusProcPtr status;
    NPN_UserAgentProcPtr uagent;
    NPN_MemAllocProcPtr memalloc;
    NPN_MemFreeProcPtr memfree;
    NPN_MemFlushProcPtr memflush;
    NPN_ReloadPluginsProcPtr reloadplugins;
    NPN_GetJavaEnvProcPtr getJavaEnv;
    NPN_GetJavaPeerProcPtr getJavaPeer;
    NPN_GetURLNotifyProcPtr geturlnotify;
    NPN_PostURLNotifyProcPtr posturlnotify;
    NPN_GetValueProcPtr getvalue;
    NPN_SetValueProcPtr setvalue;
    NPN_InvalidateRectProcPtr invalidaterect;
    NPN_InvalidateRegionProcPtr invalidateregion;
    NPN_ForceRedrawProcPtr forceredraw;
    NPN_GetStringIdentifierProcPtr getstringidentifier;
    NPN_GetStringIdentifiersProcPtr getstringidentifiers;
    NPN_GetIntIdentifierProcPtr getintidentifier;
    NPN_IdentifierIsStringProcPtr identifierisstring;
    NPN_UTF8FromIdentifierProcPtr utf8fromidentifier;
    NPN_IntFromIdentifierProcPtr intfromidentifier;
    NPN_CreateObjectProcPtr createobject;
    NPN_RetainObjectProcPtr retainobject;
    NPN_ReleaseObjectProcPtr releaseobject;
    NPN_InvokeProcPtr invoke;
    NPN_InvokeDefaultProcPtr invokeDefault;
    NPN_EvaluateProcPtr evaluate;
    NPN_GetPropertyProcPtr getproperty;
    NPN_SetPropertyProcPtr setproperty;
    NPN_RemovePropertyProcPtr removeproperty;
    NPN_HasPropertyProcPtr hasproperty;
    NPN_HasMethodProcPtr hasmethod;
    NPN_ReleaseVariantValueProcPtr releasevariantvalue;
    NPN_SetExceptionProcPtr setexception;
    NPN_PushPopupsEnabledStateProcPtr pushpopupsenabledstate;
    NPN_PopPopupsEnabledStateProcPtr poppopupsenabledstate;
    NPN_EnumerateProcPtr enumerate;
    NPN_PluginThreadAsyncCallProcPtr pluginthreadasynccall;
    NPN_ConstructProcPtr construct;
    NPN_GetValueForURLPtr getvalueforurl;
    NPN_SetValueForURLPtr setvalueforurl;
    NPN_GetAuthenticationInfoPtr getauthenticationinfo;
    NPN_ScheduleTimerPtr scheduletimer;
    NPN_UnscheduleTimerPtr unscheduletimer;
    NPN_PopUpContextMenuPtr popupcontextmenu;
    NPN_ConvertPointPtr convertpoint;
    NPN_HandleEventPtr handleevent;
    NPN_UnfocusInstancePtr unfocusinstance;
    NPN_URLRedirectResponsePtr urlredirectresponse;
};

using NPP_NewProcPtr = NPError (*)(NPMIMEType pluginType, NPP instance, std::uint16_t mode, std::int16_t argc,
                                   char* argn[], char* argv[], NPSavedData* saved);
using NPP_DestroyProcPtr = NPError (*)(NPP instance, NPSavedData** save);
using NPP_SetWindowProcPtr = NPError (*)(NPP instance, NPWindow* window);
using NPP_NewStreamProcPtr = NPError (*)(NPP instance, NPMIMEType type, NPStream* stream, NPBool seekable,
                                         std::uint16_t* stype);
using NPP_DestroyStreamProcPtr = NPError (*)(NPP instance, NPStream* stream, NPReason reason);
using NPP_StreamAsFileProcPtr = void (*)(NPP instance, NPStream* stream, const char* fname);
using NPP_WriteReadyProcPtr = std::int32_t (*)(NPP instance, NPStream* stream);
using NPP_WriteProcPtr = std::int32_t (*)(NPP instance, NPStream* stream, std::int32_t offset, std::int32_t len,
                                          void* buffer);
using NPP_PrintProcPtr = void (*)(NPP instance, NPPrint* platformPrint);
using NPP_HandleEventProcPtr = std::int16_t (*)(NPP instance, void* event);
using NPP_URLNotifyProcPtr = void (*)(NPP instance, const char* url, NPReason reason, void* notifyData);
using NPP_GetValueProcPtr = NPError (*)(NPP instance, NPPVariable variable, void* value);
using NPP_SetValueProcPtr = NPError (*)(NPP instance, NPNVariable variable, void* value);
using NPP_GotFocusPtr = NPBool (*)(NPP instance, std::int32_t direction);
using NPP_LostFocusPtr = void (*)(NPP instance);
using NPP_URLRedirectNotifyPtr = void (*)(NPP instance, const char* url, std::int32_t status, void* notifyData);
using NPP_ClearSiteDataPtr = NPError (*)(const char* site, std::uint64_t flags, std::uint64_t maxAge);
using NPP_GetSitesWithDataPtr = char** (*)();

struct NPPluginFuncs {
    std::uint16_t size;
    std::uint16_t version;
    NPP_NewProcPtr newp;
    NPP_DestroyProcPtr destroy;
    NPP_SetWindowProcPtr setwindow;
    NPP_NewStreamProcPtr newstream;
    NPP_DestroyStreamProcPtr destroystream;
    NPP_StreamAsFileProcPtr asfile;
    NPP_WriteReadyProcPtr writeready;
    NPP_WriteProcPtr write;
    NPP_PrintProcPtr print;
    NPP_HandleEventProcPtr event;
    NPP_URLNotifyProcPtr urlnotify;
    void* javaClass;
    NPP_GetValueProcPtr getvalue;
    NPP_SetValueProcPtr setvalue;
    NPP_GotFocusPtr gotfocus;
    NPP_LostFocusPtr lostfocus;
    NPP_URLRedirectNotifyPtr urlredirectnotify;
    NPP_ClearSiteDataPtr clearsitedata;
    NPP_GetSitesWithDataPtr getsiteswithdata;
};

using NP_InitializeFunc = NPError (*)(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
using NP_ShutdownFunc = NPError (*)();
using NP_GetValueFunc = NPError (*)(void* future, NPPVariable variable, void* value);
using NP_GetMIMEDescriptionFunc = const char* (*)();
