// Cure: libraries load without RTLD_DEEPBIND when a sanitizer is built in.
//
// Qt WebKit loads plug-ins with RTLD_DEEPBIND, which lets a plug-in's calls to malloc and its kin pass by the
// sanitizer's; the sanitizer ends the process rather than see that.
#include <dlfcn.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

extern "C" __attribute__((visibility("default"))) void* dlopen(const char* file, int mode) {
    static const auto next = reinterpret_cast<void* (*)(const char*, int)>(dlsym(RTLD_NEXT, "dlopen"));
    return next(file, mode & ~RTLD_DEEPBIND);
}

#endif
