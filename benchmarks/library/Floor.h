// The floor: the least code with which a plug-in's object can have a property, a method and an asynchronous call in a
// browser. What the video/broadcast object costs is told as a multiple of what this costs in the same place.
#pragma once

#include <array>
#include <vector>

#include "npapi/npfunctions.h"

namespace benchmarks {

// Script sees "value" (a number), "handler" (a function or null), text(), which returns a text, take(), which takes
// anything, addEventListener(), which takes a type that it ignores and a function, and removeEventListener(), which
// removes all.
struct Floor : NPObject {
    explicit Floor(NPP instance) : NPObject{}, npp(instance) {}

    static NPClass s_class;

    // What the browser's main thread does about one asynchronous call; `data` is the Floor.
    static void CallHandler(void* data);    // the handler with two arguments
    static void CallListeners(void* data);  // the listeners with a new object
    static void ReportChannel(void* data);  // the handler with an object that the page makes

    NPP npp;
    int value = 0;
    NPObject* handler = nullptr;
    std::vector<NPObject*> listeners;
};

}  // namespace benchmarks
