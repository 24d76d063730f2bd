// The one logging entry and its two modules.
#include "debug/CCDebugCommon.h"
#include "platform/CCDebug.h"

namespace {

// The module of the last line, for a debugger to look at.
std::atomic<CCDebug*> printModule{nullptr};

// The modules are never destroyed: lines may be written while the library's statics are.
template <class Module>
CCDebug* InstanceOf() {
    if (Module* existing = CCDebug::m_Instance<Module>.load(std::memory_order_acquire)) return existing;
    auto* made = new Module;
    Module* first = nullptr;
    if (CCDebug::m_Instance<Module>.compare_exchange_strong(first, made)) return made;
    delete made;  // another thread was faster
    return first;
}

}  // namespace

template <class Module>
std::atomic<Module*> CCDebug::m_Instance{nullptr};

template <class Module>
void CCDebug::Print(unsigned long module, unsigned long level, const char* format, ...) {
    CCDebug* target = module == 0 ? InstanceOf<CCDebugCommon>() : InstanceOf<Module>();
    printModule.store(target, std::memory_order_relaxed);
    va_list arguments;
    va_start(arguments, format);
    target->t_Print(module, level, format, &arguments);
    va_end(arguments);
}

template std::atomic<CCDebugCommon*> CCDebug::m_Instance<CCDebugCommon>;
template std::atomic<CCDebugDAEPlugin*> CCDebug::m_Instance<CCDebugDAEPlugin>;
template void CCDebug::Print<CCDebugDAEPlugin>(unsigned long, unsigned long, const char*, ...);
