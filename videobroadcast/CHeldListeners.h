// The references that an object takes on its stream event listeners.
#pragma once

#include <map>

#include "npapi/npfunctions.h"

namespace OipfVideoBroadcast {

class CHeldListeners {
public:
    explicit CHeldListeners(NPNetscapeFuncs* funcs) : m_funcs(funcs) {}
    // Gives back whatever is still held.
    ~CHeldListeners();
    CHeldListeners(const CHeldListeners&) = delete;
    CHeldListeners& operator=(const CHeldListeners&) = delete;

    // Takes one more reference.
    void Hold(NPObject* listener);
    // Gives back every reference that was taken on the listener.
    void Release(NPObject* listener);

private:
    NPNetscapeFuncs* m_funcs;
    std::map<NPObject*, unsigned int> m_references;
};

}  // namespace OipfVideoBroadcast
