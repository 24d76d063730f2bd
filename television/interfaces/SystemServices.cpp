// The platform's applications and its screen settings: there is a recorder, and a panel, which only tells what it was
// set to.
#include <map>
#include <string>
#include <utility>

#include "platform/CAppScreen.h"
#include "platform/CTaskManager.h"
#include "television/Core.h"
#include "television/Log.h"

namespace television {
namespace {

class Recorder : public CPvrWrapper {
public:
    bool IsPvrOperating() override {
        const auto set = Core::Instance().Set();
        return set && set->TheResources().IsRecording();
    }
};

class Applications : public CWrapperManager {
public:
    CWrapper* GetWrapperInstance(DTV_APPLICATION application) override {
        return application == DTV_APPLICATION_PVR ? &m_recorder : nullptr;
    }

private:
    Recorder m_recorder;
};

class TaskManager : public CTaskManager {
public:
    CWrapperManager* GetWrapperManager() override { return &m_applications; }
    void GetActiveApplication(DTV_APPLICATION* application) override { *application = DTV_APPLICATION_NONE; }

private:
    Applications m_applications;
};

class AppScreen : public CAppScreen {
public:
    void SetDynamicContrast(int item, int value) override {
        if (std::exchange(m_settings[item], value) != value)
            Log("Picture setting " + std::to_string(item) + " is " + std::to_string(value) + " now.");
    }

private:
    std::map<int, int> m_settings;  // the browser's main thread alone
};

}  // namespace
}  // namespace television

CTaskManager* g_pTaskManager = new television::TaskManager;
CAppScreen* g_pAppScreen = new television::AppScreen;
