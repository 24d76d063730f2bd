// No applications beside the browser, so no recorder either.
#include "platform/CTaskManager.h"

CTaskManager* g_pTaskManager = nullptr;
