// Sizes and offsets of the records that cross libraries. They are written as on a 32-bit television and as on a 64-bit
// desktop, side by side: compiling is the test.
#include <cstddef>
#include <vector>

#include "npapi/npfunctions.h"
#include "platform/DSMCCProtocol.h"
#include "platform/ISASListener.h"
#include "platform/TPTRect.h"

namespace {

constexpr bool kIs32 = sizeof(void*) == 4;
static_assert(kIs32 || sizeof(void*) == 8, "Only 32-bit and 64-bit layouts are known.");

constexpr std::size_t On(std::size_t on32, std::size_t on64) { return kIs32 ? on32 : on64; }

#define SIZE(type, on32, on64) static_assert(sizeof(type) == On(on32, on64))
#define AT(type, member, on32, on64) static_assert(offsetof(type, member) == On(on32, on64))
// From a type's start to the end of a member.
#define THROUGH(type, member, on32, on64) static_assert(offsetof(type, member) + sizeof(type::member) == On(on32, on64))
// The n-th pointer of a function table.
#define SLOT(type, member, n) AT(type, member, 4 + 4 * (n), 8 + 8 * (n))

// Script values and objects.
SIZE(bool, 1, 1);
SIZE(NPVariantType, 4, 4);
SIZE(NPVariant, 12, 24);
AT(NPVariant, type, 0, 0);
AT(NPVariant, value, 4, 8);
static_assert(alignof(NPVariant) == On(4, 8));
SIZE(NPString, 8, 16);
AT(NPString, UTF8Characters, 0, 0);
AT(NPString, UTF8Length, 4, 8);
SIZE(NPObject, 8, 16);
AT(NPObject, _class, 0, 0);
AT(NPObject, referenceCount, 4, 8);
static_assert(NPVariantType_Void == 0 && NPVariantType_Null == 1 && NPVariantType_Bool == 2);
static_assert(NPVariantType_Int32 == 3 && NPVariantType_Double == 4);
static_assert(NPVariantType_String == 5 && NPVariantType_Object == 6);

SIZE(NPClass, 52, 104);
AT(NPClass, structVersion, 0, 0);
SLOT(NPClass, allocate, 0);
SLOT(NPClass, deallocate, 1);
SLOT(NPClass, invalidate, 2);
SLOT(NPClass, hasMethod, 3);
SLOT(NPClass, invoke, 4);
SLOT(NPClass, invokeDefault, 5);
SLOT(NPClass, hasProperty, 6);
SLOT(NPClass, getProperty, 7);
SLOT(NPClass, setProperty, 8);
SLOT(NPClass, removeProperty, 9);
SLOT(NPClass, enumerate, 10);
SLOT(NPClass, construct, 11);

// Instances, streams, windows.
SIZE(NPBool, 1, 1);
SIZE(NPError, 2, 2);
SIZE(NPReason, 2, 2);
SIZE(_NPP, 8, 16);
AT(_NPP, pdata, 0, 0);
AT(_NPP, ndata, 4, 8);
SIZE(NPStream, 28, 48);
AT(NPStream, pdata, 0, 0);
AT(NPStream, ndata, 4, 8);
AT(NPStream, url, 8, 16);
AT(NPStream, end, 12, 24);
AT(NPStream, lastmodified, 16, 28);
AT(NPStream, notifyData, 20, 32);
AT(NPStream, headers, 24, 40);
SIZE(NPByteRange, 12, 16);
AT(NPByteRange, offset, 0, 0);
AT(NPByteRange, length, 4, 4);
AT(NPByteRange, next, 8, 8);
SIZE(NPSavedData, 8, 16);
AT(NPSavedData, len, 0, 0);
AT(NPSavedData, buf, 4, 8);
SIZE(NPRect, 8, 8);
AT(NPRect, top, 0, 0);
AT(NPRect, left, 2, 2);
AT(NPRect, bottom, 4, 4);
AT(NPRect, right, 6, 6);
SIZE(NPWindow, 36, 48);
AT(NPWindow, window, 0, 0);
AT(NPWindow, x, 4, 8);
AT(NPWindow, y, 8, 12);
AT(NPWindow, width, 12, 16);
AT(NPWindow, height, 16, 20);
AT(NPWindow, clipRect, 20, 24);
AT(NPWindow, ws_info, 28, 32);
AT(NPWindow, type, 32, 40);
SIZE(NPSetWindowCallbackStruct, 20, 40);
AT(NPSetWindowCallbackStruct, type, 0, 0);
AT(NPSetWindowCallbackStruct, display, 4, 8);
AT(NPSetWindowCallbackStruct, visual, 8, 16);
AT(NPSetWindowCallbackStruct, colormap, 12, 24);
AT(NPSetWindowCallbackStruct, depth, 16, 32);

// Events are X events.
SIZE(NPEvent, 96, 192);
AT(XGraphicsExposeEvent, drawable, 16, 32);
AT(XGraphicsExposeEvent, x, 20, 40);
AT(XGraphicsExposeEvent, y, 24, 44);
AT(XGraphicsExposeEvent, width, 28, 48);
AT(XGraphicsExposeEvent, height, 32, 52);
static_assert(GraphicsExpose == 13);

// The browser's table.
THROUGH(NPNetscapeFuncs, convertpoint, 212, 424);
THROUGH(NPNetscapeFuncs, urlredirectresponse, 224, 448);
AT(NPNetscapeFuncs, size, 0, 0);
AT(NPNetscapeFuncs, version, 2, 2);
static_assert(sizeof(NPNetscapeFuncs::size) == 2 && sizeof(NPNetscapeFuncs::version) == 2);
SLOT(NPNetscapeFuncs, geturl, 0);
SLOT(NPNetscapeFuncs, posturl, 1);
SLOT(NPNetscapeFuncs, requestread, 2);
SLOT(NPNetscapeFuncs, newstream, 3);
SLOT(NPNetscapeFuncs, write, 4);
SLOT(NPNetscapeFuncs, destroystream, 5);
SLOT(NPNetscapeFuncs, status, 6);
SLOT(NPNetscapeFuncs, uagent, 7);
SLOT(NPNetscapeFuncs, memalloc, 8);
SLOT(NPNetscapeFuncs, memfree, 9);
SLOT(NPNetscapeFuncs, memflush, 10);
SLOT(NPNetscapeFuncs, reloadplugins, 11);
SLOT(NPNetscapeFuncs, getJavaEnv, 12);
SLOT(NPNetscapeFuncs, getJavaPeer, 13);
SLOT(NPNetscapeFuncs, geturlnotify, 14);
SLOT(NPNetscapeFuncs, posturlnotify, 15);
SLOT(NPNetscapeFuncs, getvalue, 16);
SLOT(NPNetscapeFuncs, setvalue, 17);
SLOT(NPNetscapeFuncs, invalidaterect, 18);
SLOT(NPNetscapeFuncs, invalidateregion, 19);
SLOT(NPNetscapeFuncs, forceredraw, 20);
SLOT(NPNetscapeFuncs, getstringidentifier, 21);
SLOT(NPNetscapeFuncs, getstringidentifiers, 22);
SLOT(NPNetscapeFuncs, getintidentifier, 23);
SLOT(NPNetscapeFuncs, identifierisstring, 24);
SLOT(NPNetscapeFuncs, utf8fromidentifier, 25);
SLOT(NPNetscapeFuncs, intfromidentifier, 26);
SLOT(NPNetscapeFuncs, createobject, 27);
SLOT(NPNetscapeFuncs, retainobject, 28);
SLOT(NPNetscapeFuncs, releaseobject, 29);
SLOT(NPNetscapeFuncs, invoke, 30);
SLOT(NPNetscapeFuncs, invokeDefault, 31);
SLOT(NPNetscapeFuncs, evaluate, 32);
SLOT(NPNetscapeFuncs, getproperty, 33);
SLOT(NPNetscapeFuncs, setproperty, 34);
SLOT(NPNetscapeFuncs, removeproperty, 35);
SLOT(NPNetscapeFuncs, hasproperty, 36);
SLOT(NPNetscapeFuncs, hasmethod, 37);
SLOT(NPNetscapeFuncs, releasevariantvalue, 38);
SLOT(NPNetscapeFuncs, setexception, 39);
SLOT(NPNetscapeFuncs, pushpopupsenabledstate, 40);
SLOT(NPNetscapeFuncs, poppopupsenabledstate, 41);
SLOT(NPNetscapeFuncs, enumerate, 42);
SLOT(NPNetscapeFuncs, pluginthreadasynccall, 43);
SLOT(NPNetscapeFuncs, construct, 44);
SLOT(NPNetscapeFuncs, getvalueforurl, 45);
SLOT(NPNetscapeFuncs, setvalueforurl, 46);
SLOT(NPNetscapeFuncs, getauthenticationinfo, 47);
SLOT(NPNetscapeFuncs, scheduletimer, 48);
SLOT(NPNetscapeFuncs, unscheduletimer, 49);
SLOT(NPNetscapeFuncs, popupcontextmenu, 50);
SLOT(NPNetscapeFuncs, convertpoint, 51);
SLOT(NPNetscapeFuncs, handleevent, 52);
SLOT(NPNetscapeFuncs, unfocusinstance, 53);
SLOT(NPNetscapeFuncs, urlredirectresponse, 54);

// The plug-in's table.
THROUGH(NPPluginFuncs, getsiteswithdata, 80, 160);
AT(NPPluginFuncs, size, 0, 0);
AT(NPPluginFuncs, version, 2, 2);
static_assert(sizeof(NPPluginFuncs::size) == 2 && sizeof(NPPluginFuncs::version) == 2);
SLOT(NPPluginFuncs, newp, 0);
SLOT(NPPluginFuncs, destroy, 1);
SLOT(NPPluginFuncs, setwindow, 2);
SLOT(NPPluginFuncs, newstream, 3);
SLOT(NPPluginFuncs, destroystream, 4);
SLOT(NPPluginFuncs, asfile, 5);
SLOT(NPPluginFuncs, writeready, 6);
SLOT(NPPluginFuncs, write, 7);
SLOT(NPPluginFuncs, print, 8);
SLOT(NPPluginFuncs, event, 9);
SLOT(NPPluginFuncs, urlnotify, 10);
SLOT(NPPluginFuncs, javaClass, 11);
SLOT(NPPluginFuncs, getvalue, 12);
SLOT(NPPluginFuncs, setvalue, 13);
SLOT(NPPluginFuncs, gotfocus, 14);
SLOT(NPPluginFuncs, lostfocus, 15);
SLOT(NPPluginFuncs, urlredirectnotify, 16);
SLOT(NPPluginFuncs, clearsitedata, 17);
SLOT(NPPluginFuncs, getsiteswithdata, 18);

// Codes and variables.
static_assert(NPERR_NO_ERROR == 0 && NPERR_GENERIC_ERROR == 1 && NPERR_INVALID_INSTANCE_ERROR == 2);
static_assert(NPERR_INVALID_FUNCTABLE_ERROR == 3 && NPERR_MODULE_LOAD_FAILED_ERROR == 4);
static_assert(NPERR_OUT_OF_MEMORY_ERROR == 5 && NPERR_INVALID_PLUGIN_ERROR == 6);
static_assert(NPERR_INVALID_PLUGIN_DIR_ERROR == 7 && NPERR_INCOMPATIBLE_VERSION_ERROR == 8);
static_assert(NPERR_INVALID_PARAM == 9 && NPERR_INVALID_URL == 10 && NPERR_FILE_NOT_FOUND == 11);
static_assert(NPERR_NO_DATA == 12 && NPERR_STREAM_NOT_SEEKABLE == 13);
static_assert(NPPVpluginNameString == 1 && NPPVpluginDescriptionString == 2 && NPPVpluginWindowBool == 3);
static_assert(NPPVpluginTransparentBool == 4 && NPPVpluginNeedsXEmbed == 14 && NPPVpluginScriptableNPObject == 15);
static_assert(NPPVpluginScriptableInstance == 0x1000000A && NPPVpluginCancelSrcStream == 20);
static_assert(NPNVWindowNPObject == 15 && NPNVPluginElementNPObject == 16 && NPNVSupportsWindowless == 17);

// The platform's records. A vector is three pointers; where the string of an event lies, its library says.
SIZE(TPTRect, 16, 16);
AT(TPTRect, x, 0, 0);
AT(TPTRect, y, 4, 4);
AT(TPTRect, width, 8, 8);
AT(TPTRect, height, 12, 12);
SIZE(std::vector<unsigned char>, 12, 24);
SIZE(SASMessageItem, 16, 32);
AT(SASMessageItem, tag, 0, 0);
AT(SASMessageItem, data, 4, 8);
SIZE(SASMessage, 24, 40);
AT(SASMessage, type, 0, 0);
AT(SASMessage, caSystemId, 4, 4);
AT(SASMessage, reserved, 8, 8);
AT(SASMessage, items, 12, 16);
AT(CDSMCCStreamEventData, status, 0, 0);
AT(CDSMCCStreamEventData, eventId, 4, 4);
AT(CDSMCCStreamEventData, name, 8, 8);
AT(CDSMCCStreamEventData, data, 8 + sizeof(std::string), 8 + sizeof(std::string));
AT(CDSMCCStreamEventData, jobId, 20 + sizeof(std::string), 32 + sizeof(std::string));
AT(CDSMCCStreamEventData, reserved, 24 + sizeof(std::string), 40 + sizeof(std::string));
static_assert(CDSMCCStreamEventData::E_STATUS_TRIGGER == 0 && CDSMCCStreamEventData::E_STATUS_ERROR == 1);

}  // namespace

int main() {}
