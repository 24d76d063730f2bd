// The platform's debug framework: modules that print lines, and the output behind them.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstddef>

#include "platform/visibility.h"

// Where debug text goes. May be called on any thread; a call's text must come out in one piece.
class TVPLATFORM_API IDebugIO {
public:
    // Writes `length` bytes as they are: they are data, never a format.
    virtual void Print(const char* text, std::size_t length) = 0;

protected:
    virtual ~IDebugIO();
};

// A debug module. The order of the virtual operations is the order of their slots.
class TVPLATFORM_API CCDebug {
public:
    CCDebug();
    CCDebug(const CCDebug&) = delete;
    CCDebug& operator=(const CCDebug&) = delete;
    virtual ~CCDebug();

    virtual void Reset();

    // The plug-in's one logging entry, printf style: module 0 prints through the plug-in's common module, any other
    // through the one `Module` of the process, made at first use. Any thread. The level is 0 error, 2 warning, 3 trace
    // or 4 detail; which levels are printed is the module's business. Defined in debug/.
    template <class Module>
    __attribute__((visibility("hidden"), format(printf, 3, 4))) static void Print(unsigned long module,
                                                                                  unsigned long level,
                                                                                  const char* format, ...);

    // The module of each class, null until its first line. One for each plug-in library, never destroyed.
    template <class Module>
    __attribute__((visibility("hidden"))) static std::atomic<Module*> m_Instance;

    // The output; null while there is none.
    static IDebugIO* DebugIO;

protected:
    // Prints a line, and the same without the line's end. Called on any thread. The arguments may be needed for more
    // than one pass: va_copy them.
    virtual void t_Print(unsigned long module, unsigned long level, const char* format, va_list* arguments) = 0;
    virtual void t_PrintR(unsigned long module, unsigned long level, const char* format, va_list* arguments) = 0;
    // Registers the module with t_AddModule.
    virtual void t_InitModule();
    virtual void t_ShowDebugSubMenu();
    virtual void t_SelectDebugSubMenu(int item);
    virtual void t_SetDebugLevel(unsigned int level);
    virtual void t_SetDebugModule(unsigned long module, bool on);
    virtual bool t_IsCommonModule();

    // Adds this module to the framework's list under a name.
    void t_AddModule(const char* name, int count);
};

// The plug-in's own module: prints the lines whose level is switched on. It must test the level before it formats, so
// that a line that is not wanted costs next to nothing.
class TVPLATFORM_API CCDebugDAEPlugin : public CCDebug {
public:
    CCDebugDAEPlugin();
    ~CCDebugDAEPlugin() override;

protected:
    void t_Print(unsigned long module, unsigned long level, const char* format, va_list* arguments) override;
    void t_PrintR(unsigned long module, unsigned long level, const char* format, va_list* arguments) override;
};
