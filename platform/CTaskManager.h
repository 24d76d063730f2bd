// The platform's applications, as far as the plug-in asks about them. Called on the browser's main thread.
#pragma once

#include "platform/visibility.h"

// The platform's application numbers; only the one that is asked for has a name here.
enum DTV_APPLICATION : int { DTV_APPLICATION_NONE = 0, DTV_APPLICATION_PVR = 59 };

// An application that the platform runs.
class TVPLATFORM_API CWrapper {
public:
    virtual ~CWrapper();
};

// The personal video recorder. The application that stands under DTV_APPLICATION_PVR must be one.
class TVPLATFORM_API CPvrWrapper : public CWrapper {
public:
    ~CPvrWrapper() override;
    // True while a recording runs that must not be disturbed by a change of channel.
    virtual bool IsPvrOperating() = 0;
};

class TVPLATFORM_API CWrapperManager {
public:
    // The application with this number, which stays the platform's, or null when the platform has none.
    virtual CWrapper* GetWrapperInstance(DTV_APPLICATION application) = 0;

protected:
    virtual ~CWrapperManager();
};

class TVPLATFORM_API CTaskManager {
public:
    // Null on a platform without such applications.
    virtual CWrapperManager* GetWrapperManager() = 0;
    // Writes the number of the application in front.
    virtual void GetActiveApplication(DTV_APPLICATION* application) = 0;

protected:
    virtual ~CTaskManager();
};

// Set by the platform library before the browser loads the plug-in; may be null: no recorder is operating then.
extern TVPLATFORM_API CTaskManager* g_pTaskManager;
