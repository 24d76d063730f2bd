// The floor: the least code with which a plug-in's object can have a property, a method and an asynchronous call in a
// browser. What the video/broadcast object costs is told as a multiple of what this costs in the same place.
#pragma once

#include <array>
#include <vector>

#include "npapi/npfunctions.h"

namespace benchmarks {

// Its members are called like those of the video/broadcast object that they are compared with, because browsers take
// longer over longer names: the properties "playState" and "width" (numbers) and "onFocus" (a function or null), and
// the methods toString(), setFullScreen() and getVolume(), which do nothing, addEventListener(), which ignores the
// type, and removeEventListener(), which removes all.
struct Floor : NPObject {
    explicit Floor(NPP instance) : NPObject{}, npp(instance) {}

    static NPClass s_class;

    // What the browser's main thread does about one asynchronous call; `data` is the Floor.
    static void CallHandler(void* data);    // the handler with two arguments
    static void CallListeners(void* data);  // the listeners with a new object
    static void ReportChannel(void* data);  // the handler with an object that the page makes

    NPP npp;
    int playState = 0;
    int width = 0;
    NPObject* handler = nullptr;
    std::vector<NPObject*> listeners;
};

}  // namespace benchmarks
