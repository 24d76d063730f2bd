// The plug-in functions of NPAPI, as far as they are needed, for instances that each are one script object of class T.
#pragma once

#include "npapi/npfunctions.h"

namespace benchmarks {

// The browser's functions, as NP_Initialize got them.
NPNetscapeFuncs& Browser();

// T derives from NPObject and has a static NPClass s_class.
template <class T>
class Instances {
public:
    static NPPluginFuncs Functions() {
        NPPluginFuncs functions{};
        functions.size = sizeof functions;
        functions.newp = New;
        functions.destroy = Destroy;
        functions.setwindow = [](NPP, NPWindow*) -> NPError { return NPERR_NO_ERROR; };
        functions.event = [](NPP, void*) -> std::int16_t { return 0; };
        functions.getvalue = GetValue;
        return functions;
    }

private:
    static NPError New(NPMIMEType, NPP npp, std::uint16_t, std::int16_t, char**, char**, NPSavedData*) {
        Browser().setvalue(npp, NPPVpluginWindowBool, nullptr);
        npp->pdata = static_cast<T*>(Browser().createobject(npp, &T::s_class));
        return NPERR_NO_ERROR;
    }

    static NPError Destroy(NPP npp, NPSavedData**) {
        Browser().releaseobject(static_cast<T*>(npp->pdata));
        return NPERR_NO_ERROR;
    }

    static NPError GetValue(NPP npp, NPPVariable variable, void* value) {
        if (variable != NPPVpluginScriptableNPObject) return NPERR_GENERIC_ERROR;
        *static_cast<NPObject**>(value) = Browser().retainobject(static_cast<T*>(npp->pdata));
        return NPERR_NO_ERROR;
    }
};

}  // namespace benchmarks
