// Cures at the script object of an instance (the one that the page sees as the element).
//
// Invalidation: Qt WebKit never calls NPClass::invalidate, with which a television's browser tells an object that its
// page is gone. The adapter calls it once, before the instance is destroyed.
//
// Functions that the page gives to the object or takes from it: see HeldFunctions.h.
//
// The third argument of addEventListener and removeEventListener: pages leave it out, and it is the browser that binds
// DOM calls and supplies the missing false. The plug-in stays strict and gets three arguments.
#pragma once

#include "npapi/npapi.h"

namespace adapter {

class RootObject {
public:
    RootObject() = default;
    // Asks the plug-in for the instance's object and keeps a reference to it until Invalidate.
    explicit RootObject(NPP npp);

    // Once; a second call does nothing.
    void Invalidate();

private:
    NPObject* m_object = nullptr;
};

}  // namespace adapter
