// The keys by which the page's classes know that a script object is made by the plug-in.
#pragma once

#include <string>

#include "platform/visibility.h"

class TVPLATFORM_API IJSObjCreation {
public:
    // The one instance, never null; it must live in the platform library itself.
    static IJSObjCreation* Instance();

    // The key for the object with the given id ("__OIPF_VBO_" and a number, or "__OIPF_DEFAULT_"). It is written
    // between double quotes into a script text, so it must hold no quote, backslash or line end. Called on the
    // browser's main thread, once for each object that is made.
    virtual std::string GetKey(const std::string& objectId) = 0;

protected:
    virtual ~IJSObjCreation();
};
