#include "videobroadcast/CHeldListeners.h"

namespace OipfVideoBroadcast {

CHeldListeners::~CHeldListeners() {
    while (!m_references.empty()) Release(m_references.begin()->first);
}

void CHeldListeners::Hold(NPObject* listener) {
    m_funcs->retainobject(listener);
    ++m_references[listener];
}

void CHeldListeners::Release(NPObject* listener) {
    const auto held = m_references.extract(listener);
    if (held.empty()) return;
    for (unsigned int i = 0; i < held.mapped(); ++i) m_funcs->releaseobject(listener);
}

}  // namespace OipfVideoBroadcast
