// The shared debug module: prints everything that it is given.
#pragma once

#include "platform/CCDebug.h"

class CCDebugCommon : public CCDebug {
protected:
    void t_Print(unsigned long module, unsigned long level, const char* format, va_list* arguments) override;
    void t_PrintR(unsigned long module, unsigned long level, const char* format, va_list* arguments) override;
    void t_InitModule() override;
    bool t_IsCommonModule() override;
};
