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
    // Gives back those of every listener that is not in use any more.
    template <class InUse>
    void ReleaseUnless(InUse inUse) {
        for (auto held = m_references.begin(); held != m_references.end();) {
            NPObject* listener = held->first;
            if (inUse(listener)) {
                ++held;
                continue;
            }
            Release(listener);  // may run anything
            held = m_references.upper_bound(listener);
        }
    }

private:
    NPNetscapeFuncs* m_funcs;
    std::map<NPObject*, unsigned int> m_references;
};

}  // namespace OipfVideoBroadcast
