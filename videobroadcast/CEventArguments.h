// The arguments of one script event.
#pragma once

#include <vector>

#include "javascript/Variants.h"
#include "npapi/npfunctions.h"

namespace OipfVideoBroadcast {

// Owns the heap holders that m_OnEvent is given; those that an Event object took are null in the list by then. What is
// left is released and deleted at the end.
class CEventArguments {
public:
    explicit CEventArguments(NPNetscapeFuncs* funcs) : m_funcs(funcs) {}
    ~CEventArguments() {
        for (NPVariant* holder : m_list) {
            if (!holder) continue;
            if (holder->type != NPVariantType_Void) OipfJavaScript::ReleaseVariant(*m_funcs, *holder);
            delete holder;
        }
    }
    CEventArguments(const CEventArguments&) = delete;
    CEventArguments& operator=(const CEventArguments&) = delete;

    void Add(const NPVariant& value) { m_list.push_back(new NPVariant(value)); }
    std::vector<NPVariant*>& List() { return m_list; }

private:
    NPNetscapeFuncs* m_funcs;
    std::vector<NPVariant*> m_list;
};

}  // namespace OipfVideoBroadcast
