// The records, codes and variables of NPAPI on Unix with X11, as published.
#pragma once

#include <X11/Xlib.h>

#include <cstdint>

#include "npapi/npruntime.h"

using NPBool = unsigned char;
using NPError = std::int16_t;
using NPReason = std::int16_t;
using NPMIMEType = char*;
using NPEvent = XEvent;

struct _NPP {
    void* pdata;  // the plug-in's
    void* ndata;  // the browser's
};

struct NPStream {
    void* pdata;
    void* ndata;
    const char* url;
    std::uint32_t end;
    std::uint32_t lastmodified;
    void* notifyData;
    const char* headers;
};

struct NPByteRange {
    std::int32_t offset;
    std::uint32_t length;
    NPByteRange* next;
};

struct NPSavedData {
    std::int32_t len;
    void* buf;
};

struct NPRect {
    std::uint16_t top;
    std::uint16_t left;
    std::uint16_t bottom;
    std::uint16_t right;
};

enum NPWindowType : std::int32_t { NPWindowTypeWindow = 1, NPWindowTypeDrawable = 2 };

struct NPWindow {
    void* window;
    std::int32_t x;
    std::int32_t y;
    std::uint32_t width;
    std::uint32_t height;
    NPRect clipRect;
    void* ws_info;  // an NPSetWindowCallbackStruct, may be null
    NPWindowType type;
};

struct NPSetWindowCallbackStruct {
    std::int32_t type;
    Display* display;
    Visual* visual;
    Colormap colormap;
    unsigned int depth;
};

struct NPFullPrint;
struct NPPrint;

// The values that foreign tables and hosts put into these are compared as integers, hence the fixed underlying types.
enum NPPVariable : std::uint32_t {
    NPPVpluginNameString = 1,
    NPPVpluginDescriptionString = 2,
    NPPVpluginWindowBool = 3,
    NPPVpluginTransparentBool = 4,
    NPPVjavaClass = 5,
    NPPVpluginWindowSize = 6,
    NPPVpluginTimerInterval = 7,
    NPPVpluginScriptableInstance = 10 | 0x10000000,
    NPPVpluginScriptableIID = 11,
    NPPVjavascriptPushCallerBool = 12,
    NPPVpluginKeepLibraryInMemory = 13,
    NPPVpluginNeedsXEmbed = 14,
    NPPVpluginScriptableNPObject = 15,
    NPPVformValue = 16,
    NPPVpluginUrlRequestsDisplayedBool = 17,
    NPPVpluginWantsAllNetworkStreams = 18,
    NPPVpluginNativeAccessibleAtkPlugId = 19,
    NPPVpluginCancelSrcStream = 20
};

enum NPNVariable : std::uint32_t {
    NPNVxDisplay = 1,
    NPNVxtAppContext = 2,
    NPNVnetscapeWindow = 3,
    NPNVjavascriptEnabledBool = 4,
    NPNVasdEnabledBool = 5,
    NPNVisOfflineBool = 6,
    NPNVToolkit = 13 | 0x10000000,
    NPNVSupportsXEmbedBool = 14,
    NPNVWindowNPObject = 15,
    NPNVPluginElementNPObject = 16,
    NPNVSupportsWindowless = 17,
    NPNVprivateModeBool = 18
};

enum NPNURLVariable : std::int32_t { NPNURLVCookie = 501, NPNURLVProxy = 502 };

enum NPCoordinateSpace : std::int32_t {
    NPCoordinateSpacePlugin = 1,
    NPCoordinateSpaceWindow,
    NPCoordinateSpaceFlippedWindow,
    NPCoordinateSpaceScreen,
    NPCoordinateSpaceFlippedScreen
};

constexpr NPError NPERR_NO_ERROR = 0;
constexpr NPError NPERR_GENERIC_ERROR = 1;
constexpr NPError NPERR_INVALID_INSTANCE_ERROR = 2;
constexpr NPError NPERR_INVALID_FUNCTABLE_ERROR = 3;
constexpr NPError NPERR_MODULE_LOAD_FAILED_ERROR = 4;
constexpr NPError NPERR_OUT_OF_MEMORY_ERROR = 5;
constexpr NPError NPERR_INVALID_PLUGIN_ERROR = 6;
constexpr NPError NPERR_INVALID_PLUGIN_DIR_ERROR = 7;
constexpr NPError NPERR_INCOMPATIBLE_VERSION_ERROR = 8;
constexpr NPError NPERR_INVALID_PARAM = 9;
constexpr NPError NPERR_INVALID_URL = 10;
constexpr NPError NPERR_FILE_NOT_FOUND = 11;
constexpr NPError NPERR_NO_DATA = 12;
constexpr NPError NPERR_STREAM_NOT_SEEKABLE = 13;

constexpr std::uint16_t NP_EMBED = 1;
constexpr std::uint16_t NP_FULL = 2;
