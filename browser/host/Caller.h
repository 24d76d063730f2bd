// Tells whether a call came out of the Qt WebKit library: the cures that replace a library function act on its calls only.
#pragma once

#include <dlfcn.h>

#include <cstring>

namespace browser {

inline bool CalledByWebKit(const void* returnAddress) {
    Dl_info caller{};
    return dladdr(returnAddress, &caller) != 0 && caller.dli_fname != nullptr &&
           std::strstr(caller.dli_fname, "libQt5WebKit.so") != nullptr;
}

}  // namespace browser
