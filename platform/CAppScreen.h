// The platform's screen service.
#pragma once

#include "platform/visibility.h"

class TVPLATFORM_API CAppScreen {
public:
    // Sets a picture setting of the panel. Asked for item 24, the dynamic contrast, with 0 when the video has the full
    // height of the panel and 1 otherwise. Called on the browser's main thread after each layout.
    virtual void SetDynamicContrast(int item, int value) = 0;

protected:
    virtual ~CAppScreen();
};

// Set by the platform library before the browser loads the plug-in; null on a platform without such a setting.
extern TVPLATFORM_API CAppScreen* g_pAppScreen;
